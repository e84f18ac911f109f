#include "platform/libraries.h"

#include <windows.h>

#include <cstdint>

namespace bv::platform {

namespace {

class WindowsLibrary final : public Library {
  public:
    explicit WindowsLibrary(HMODULE module) : module_(module) {}
    ~WindowsLibrary() override { FreeLibrary(module_); }
    WindowsLibrary(const WindowsLibrary&) = delete;
    WindowsLibrary& operator=(const WindowsLibrary&) = delete;

    void (*Entry(const std::string& name))() override {
        return reinterpret_cast<void (*)()>(GetProcAddress(module_, name.c_str()));
    }

  private:
    HMODULE module_;
};

// Old systems gave an error number below 32 in a module's place.
bool IsModule(HMODULE module) { return reinterpret_cast<std::uintptr_t>(module) >= 32; }

class WindowsLibraries final : public Libraries {
  public:
    void* OwnModule() override { return GetModuleHandleA(nullptr); }

    std::unique_ptr<Library> Load(const std::string& name) override { return LoadBy(name, 0); }
    std::unique_ptr<Library> LoadOfSystem(const std::string& name) override {
        return LoadBy(name, LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
    unsigned long LastError() override { return error_; }

  private:
    std::unique_ptr<Library> LoadBy(const std::string& name, DWORD flags) {
        const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
        const HMODULE module = LoadLibraryExA(name.c_str(), nullptr, flags);
        error_ = IsModule(module) ? 0 : GetLastError();
        SetErrorMode(before);
        return IsModule(module) ? std::make_unique<WindowsLibrary>(module) : nullptr;
    }

    DWORD error_ = 0;
};

} // namespace

template <>
Libraries& Service<Libraries>::System() {
    static WindowsLibraries libraries;
    return libraries;
}

} // namespace bv::platform
