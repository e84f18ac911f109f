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

    std::unique_ptr<Library> Load(const std::string& name) override {
        const UINT before = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
        const HMODULE module = LoadLibraryA(name.c_str());
        error_ = IsModule(module) ? 0 : GetLastError();
        SetErrorMode(before);
        return IsModule(module) ? std::make_unique<WindowsLibrary>(module) : nullptr;
    }
    unsigned long LastError() override { return error_; }

  private:
    DWORD error_ = 0;
};

} // namespace

template <>
Libraries& Service<Libraries>::System() {
    static WindowsLibraries libraries;
    return libraries;
}

} // namespace bv::platform
