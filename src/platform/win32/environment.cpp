#include "platform/environment.h"

#include <windows.h>

#include <array>
#include <cstdlib>
#include <vector>

namespace bv::platform {

namespace {

using PathBuffer = std::array<char, 1024>;

// What the system put into the buffer, without a trailing "\"; empty when it failed or the buffer was too small.
std::string DirectoryText(const PathBuffer& buffer, DWORD length) {
    if (length == 0 || length >= buffer.size()) return {};
    std::string text(buffer.data(), length);
    if (text.ends_with('\\')) text.pop_back();
    return text;
}

class WindowsEnvironment final : public Environment {
  public:
    std::optional<std::string> Variable(const std::string& name) override {
        std::vector<char> value(512);
        while (true) {
            SetLastError(ERROR_SUCCESS);
            const DWORD size = static_cast<DWORD>(value.size());
            const DWORD length = GetEnvironmentVariableA(name.c_str(), value.data(), size);
            if (length == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
            if (length < size) return std::string(value.data(), length);
            value.resize(length + 1);
        }
    }

    // The run-time library keeps a copy of its own.
    void SetVariable(const std::string& name, const std::string& value) override {
        SetEnvironmentVariableA(name.c_str(), value.empty() ? nullptr : value.c_str());
        _putenv_s(name.c_str(), value.c_str());
    }

    std::string WindowsDirectory() override {
        PathBuffer buffer{};
        return DirectoryText(buffer, GetWindowsDirectoryA(buffer.data(), static_cast<DWORD>(buffer.size())));
    }

    std::string CurrentDirectory() override {
        PathBuffer buffer{};
        return DirectoryText(buffer, GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data()));
    }

    std::string ProgramDirectory() override {
        PathBuffer buffer{};
        const DWORD length = GetModuleFileNameA(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        const std::string program = DirectoryText(buffer, length);
        const std::size_t name = program.rfind('\\');
        return name == std::string::npos ? std::string() : program.substr(0, name);
    }

    std::optional<std::string> ProfileText(const std::string& section, const std::string& key) override {
        std::array<char, 269> value{};
        const DWORD size = static_cast<DWORD>(value.size());
        const DWORD length = GetProfileStringA(section.c_str(), key.c_str(), "", value.data(), size);
        return std::string(value.data(), length);
    }
};

} // namespace

template <>
Environment& Service<Environment>::System() {
    static WindowsEnvironment environment;
    return environment;
}

} // namespace bv::platform
