// Libraries that are loaded at run time when they are there.
#pragma once

#include <memory>
#include <string>

#include "platform/service.h"

namespace bv::platform {

// A loaded library; destroying it unloads it.
class Library {
  public:
    virtual ~Library() = default;

    // The named entry, to be cast to its real type, or none.
    virtual void (*Entry(const std::string& name))() = 0;
};

class Libraries {
  public:
    virtual ~Libraries() = default;

    // The handle by which the system knows this program's own module; none where it has no such handles.
    virtual void* OwnModule() { return nullptr; }

    // Loads a library by file name or path, without any box of the system's; none when it is missing.
    virtual std::unique_ptr<Library> Load(const std::string& name) = 0;

    // As Load, by the file name of one of the system's own: only where those lie.
    virtual std::unique_ptr<Library> LoadOfSystem(const std::string& name) { return Load(name); }

    // The system's own error number of the last Load that found none; 0 where the system has no numbers for that.
    virtual unsigned long LastError() { return 0; }
};

template <>
Libraries& Service<Libraries>::System();

inline Libraries& TheLibraries() { return Service<Libraries>::InUse(); }

} // namespace bv::platform
