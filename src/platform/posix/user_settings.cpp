#include "platform/user_settings.h"

namespace bv::platform {
namespace {

class NoSettings final : public UserSettings {
  public:
    std::optional<std::string> Read(const std::string&, const std::string&) override { return std::nullopt; }
    void Write(const std::string&, const std::string&, const std::string&) override {}
};

} // namespace

template <>
UserSettings& Service<UserSettings>::System() {
    static NoSettings settings;
    return settings;
}

} // namespace bv::platform
