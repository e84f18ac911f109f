// Services of the operating system for tests, which answer as told. Substitute<> puts them in place.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/processes.h"

namespace bv::test {

// A clock that stands still but for Sleep.
class FakeClock final : public platform::Clock {
  public:
    std::int64_t Milliseconds = 0;
    std::int64_t Now() override { return Milliseconds; }
    std::int64_t Ticks() override { return Milliseconds; }
    void Sleep(std::int64_t milliseconds) override { Milliseconds += milliseconds; }
};

class FakeEnvironment final : public platform::Environment {
  public:
    std::map<std::string, std::string> Variables;
    std::string Windows = "C:\\WINDOWS";
    std::string Current = "F:\\BRIVANE";
    std::string Program = "F:\\BRIVANE";

    std::optional<std::string> Variable(const std::string& name) override {
        const auto found = Variables.find(name);
        return found == Variables.end() ? std::nullopt : std::optional(found->second);
    }
    void SetVariable(const std::string& name, const std::string& value) override { Variables[name] = value; }
    std::string WindowsDirectory() override { return Windows; }
    std::string CurrentDirectory() override { return Current; }
    std::string ProgramDirectory() override { return Program; }
    std::optional<std::string> ProfileText(const std::string&, const std::string&) override { return {}; }
};

// Starts nothing, but writes the command lines down, those to be shown restored with "restored: " before them. A
// program "runs" until it is asked, and is not started at all when there is a SystemError.
class FakeProcesses final : public platform::Processes {
  public:
    unsigned long SystemError = 0;
    std::vector<std::string> Started;

    platform::StartResult Start(const std::string& commandLine) override {
        Started.push_back(commandLine);
        if (SystemError != 0) return {nullptr, SystemError};
        return {std::make_unique<Ended>(), 0};
    }
    platform::StartResult StartRestored(const std::string& commandLine) override {
        return Start("restored: " + commandLine);
    }

  private:
    class Ended final : public platform::Process {
      public:
        bool IsRunning() override { return false; }
    };
};

} // namespace bv::test
