#include "platform/user_settings.h"

#include <windows.h>

#include <array>

namespace bv::platform {
namespace {

constexpr const char* kProgramKey = "Software\\Brivane\\Setup\\";

class RegistrySettings final : public UserSettings {
  public:
    std::optional<std::string> Read(const std::string& folder, const std::string& name) override {
        std::array<char, 1024> text{};
        DWORD size = text.size();
        const LSTATUS status = RegGetValueA(HKEY_CURRENT_USER, (kProgramKey + folder).c_str(), name.c_str(),
                                            RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (status != ERROR_SUCCESS) return std::nullopt;
        return std::string(text.data());
    }

    void Write(const std::string& folder, const std::string& name, const std::string& text) override {
        RegSetKeyValueA(HKEY_CURRENT_USER, (kProgramKey + folder).c_str(), name.c_str(), REG_SZ, text.c_str(),
                        static_cast<DWORD>(text.size() + 1));
    }
};

} // namespace

template <>
UserSettings& Service<UserSettings>::System() {
    static RegistrySettings settings;
    return settings;
}

} // namespace bv::platform
