#include "platform/processes.h"

#include <windows.h>

namespace bv::platform {

namespace {

class WindowsProcess final : public Process {
  public:
    explicit WindowsProcess(HANDLE process) : process_(process) {}
    ~WindowsProcess() override { CloseHandle(process_); }
    WindowsProcess(const WindowsProcess&) = delete;
    WindowsProcess& operator=(const WindowsProcess&) = delete;

    bool IsRunning() override { return WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }

  private:
    HANDLE process_;
};

// This process's own start-up settings, without what would hand its open files on: no handle is inherited, so the
// numbers of handles in them, and the run-time library's list of them, mean nothing to another process.
STARTUPINFOA OwnSettings() {
    STARTUPINFOA settings{};
    settings.cb = sizeof settings;
    GetStartupInfoA(&settings);
    settings.dwFlags &= ~static_cast<DWORD>(STARTF_USESTDHANDLES);
    settings.lpReserved = nullptr;
    settings.cbReserved2 = 0;
    settings.lpReserved2 = nullptr;
    return settings;
}

StartResult StartProgram(std::string commandLine, STARTUPINFOA settings) {
    PROCESS_INFORMATION created{};
    const bool started = CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                        &settings, &created) != 0;
    if (!started) return {nullptr, GetLastError()};
    CloseHandle(created.hThread);
    return {std::make_unique<WindowsProcess>(created.hProcess), 0};
}

class WindowsProcesses final : public Processes {
  public:
    StartResult Start(const std::string& commandLine) override { return StartProgram(commandLine, OwnSettings()); }

    StartResult StartRestored(const std::string& commandLine) override {
        STARTUPINFOA settings = OwnSettings();
        settings.dwFlags |= STARTF_USESHOWWINDOW;
        settings.wShowWindow = SW_RESTORE;
        return StartProgram(commandLine, settings);
    }
};

} // namespace

template <>
Processes& Service<Processes>::System() {
    static WindowsProcesses processes;
    return processes;
}

} // namespace bv::platform
