// Services of the operating system for tests, which answer as told. Substitute<> puts them in place.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/network_users.h"
#include "platform/printers.h"
#include "platform/processes.h"
#include "platform/user_settings.h"

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

// A printing system; each list that is read is written down by its computer.
class FakePrinters final : public platform::Printers {
  public:
    bool There = true;
    std::map<std::string, platform::PrinterListing> Lists; // "" the workstation's
    std::vector<std::string> Asked;
    std::function<void()> WhileAsked = [] {};

    bool IsThere() override { return There; }
    platform::PrinterListing Installed() override { return Of(""); }
    platform::PrinterListing Of(const std::string& computer) override {
        Asked.push_back(computer);
        WhileAsked();
        return Lists[computer];
    }
    std::vector<std::string> Bins(const std::string& name) override { return {"upper of " + name}; }
    std::vector<std::string> Papers(const std::string& name) override { return {"A4 of " + name}; }
};

// A network with a domain, whose accounts come in pages of two.
class FakeNetworkUsers final : public platform::NetworkUsers {
  public:
    std::vector<platform::NetworkUser> Accounts;
    platform::NetworkReading Outcome;
    std::vector<std::string> Asked;

    std::vector<platform::NetworkDomain> Domains() override { return {{"QUILLNET", "\\\\DC1"}}; }
    platform::NetworkReading Read(const std::string& computer, const Visitor& visit) override {
        Asked.push_back(computer);
        for (std::span rest(Accounts); !rest.empty();) {
            const auto page = rest.first(std::min<std::size_t>(rest.size(), 2));
            if (!visit(page)) return {};
            rest = rest.subspan(page.size());
        }
        return Outcome;
    }
};

// What is remembered for a person, as long as it lives.
struct FakeUserSettings final : platform::UserSettings {
    std::map<std::string, std::string> Texts; // by folder and name

    std::optional<std::string> Read(const std::string& folder, const std::string& name) override {
        const auto found = Texts.find(folder + "\\" + name);
        return found == Texts.end() ? std::nullopt : std::optional(found->second);
    }
    void Write(const std::string& folder, const std::string& name, const std::string& text) override {
        Texts[folder + "\\" + name] = text;
    }
};

} // namespace bv::test
