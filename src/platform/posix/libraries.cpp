#include "platform/libraries.h"

#include <dlfcn.h>

#include "platform/posix/host_paths.h"

namespace bv::platform {

namespace {

class PosixLibrary final : public Library {
  public:
    explicit PosixLibrary(void* handle) : handle_(handle) {}
    ~PosixLibrary() override { dlclose(handle_); }
    PosixLibrary(const PosixLibrary&) = delete;
    PosixLibrary& operator=(const PosixLibrary&) = delete;

    void (*Entry(const std::string& name))() override {
        return reinterpret_cast<void (*)()>(dlsym(handle_, name.c_str()));
    }

  private:
    void* handle_;
};

class PosixLibraries final : public Libraries {
  public:
    std::unique_ptr<Library> Load(const std::string& name) override {
        const bool searched = name.find_first_of("\\/:") == std::string::npos;
        const HostPath path = searched ? HostPath{name} : ToHostPath(name);
        void* handle = path && !path->empty() ? dlopen(path->c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
        return handle == nullptr ? nullptr : std::make_unique<PosixLibrary>(handle);
    }
};

} // namespace

template <>
Libraries& Service<Libraries>::System() {
    static PosixLibraries libraries;
    return libraries;
}

} // namespace bv::platform
