// What the process inherits: its variables and directories.
#pragma once

#include <optional>
#include <string>

#include "platform/service.h"

namespace bv::platform {

class Environment {
  public:
    virtual ~Environment() = default;

    virtual std::optional<std::string> Variable(const std::string& name) = 0;

    // Sets a variable for this process, its run-time library included, and the programs it starts; an empty value
    // removes it.
    virtual void SetVariable(const std::string& name, const std::string& value) = 0;

    // Without a trailing "\"; empty where there is none.
    virtual std::string WindowsDirectory() = 0;
    virtual std::string CurrentDirectory() = 0;
    virtual std::string ProgramDirectory() = 0; // where this program's own file lies

    // A value of the user's own WIN.INI profile, of at most 268 characters, empty when there is none: the system may
    // keep parts of it in the registry. None where the system has no such profile.
    virtual std::optional<std::string> ProfileText(const std::string& section, const std::string& key) = 0;
};

template <>
Environment& Service<Environment>::System();

inline Environment& TheEnvironment() { return Service<Environment>::InUse(); }

} // namespace bv::platform
