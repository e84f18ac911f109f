// What a program remembers for the person at this workstation: in the user's own part of the registry. A system without
// one remembers nothing.
#pragma once

#include <optional>
#include <string>

#include "platform/service.h"

namespace bv::platform {

class UserSettings {
  public:
    virtual ~UserSettings() = default;

    // A text of a folder ("Dialogs\\ConfigCovLetBox"); none when there is none, or none that can be read.
    virtual std::optional<std::string> Read(const std::string& folder, const std::string& name) = 0;

    // Passes over what the system refuses: nothing that is kept here is needed.
    virtual void Write(const std::string& folder, const std::string& name, const std::string& text) = 0;
};

template <>
UserSettings& Service<UserSettings>::System();

inline UserSettings& TheUserSettings() { return Service<UserSettings>::InUse(); }

} // namespace bv::platform
