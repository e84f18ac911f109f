#include "platform/environment.h"

#include <cstdlib>
#include <filesystem>

#include "platform/drives.h"

namespace bv::platform {

namespace {

std::string DirectoryText(const std::filesystem::path& directory) {
    std::string text = ToWindowsPath(directory.string());
    if (text.ends_with('\\')) text.pop_back();
    return text;
}

class PosixEnvironment final : public Environment {
  public:
    std::optional<std::string> Variable(const std::string& name) override {
        const char* value = std::getenv(name.c_str());
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }

    void SetVariable(const std::string& name, const std::string& value) override {
        if (value.empty()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }

    std::string WindowsDirectory() override { return {}; }

    std::string CurrentDirectory() override {
        std::error_code error;
        const std::filesystem::path directory = std::filesystem::current_path(error);
        return error ? std::string() : DirectoryText(directory);
    }

    std::string ProgramDirectory() override {
        std::error_code error;
        const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
        return error ? std::string() : DirectoryText(program.parent_path());
    }

    std::optional<std::string> ProfileText(const std::string&, const std::string&) override { return {}; }
};

} // namespace

template <>
Environment& Service<Environment>::System() {
    static PosixEnvironment environment;
    return environment;
}

} // namespace bv::platform
