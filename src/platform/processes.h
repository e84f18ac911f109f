// Starting other programs.
#pragma once

#include <memory>
#include <string>

#include "platform/service.h"

namespace bv::platform {

// A started program. Destroying it forgets the program, which goes on.
class Process {
  public:
    virtual ~Process() = default;
    virtual bool IsRunning() = 0;
};

struct StartResult {
    std::unique_ptr<Process> Started; // none when the program could not be started
    unsigned long SystemError = 0;    // the system's own error number then
};

class Processes {
  public:
    virtual ~Processes() = default;

    // Starts the program named first on the command line (in double quotes when its path has blanks), with this
    // process's start-up settings. A system other than Windows runs the file of that path in its own format.
    virtual StartResult Start(const std::string& commandLine) = 0;

    // The same, its window shown restored whatever this process was started with.
    virtual StartResult StartRestored(const std::string& commandLine) = 0;
};

template <>
Processes& Service<Processes>::System();

inline Processes& TheProcesses() { return Service<Processes>::InUse(); }

} // namespace bv::platform
