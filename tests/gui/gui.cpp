#include "gui/gui.h"

#include <commctrl.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace bv::gui {
namespace {

constexpr DWORD kPatience = 10000; // milliseconds
constexpr DWORD kPoll = 5;
constexpr int kBoxText = 0xFFFF; // the control that holds a message box's text

std::string desktopName;
HDESK desktop = nullptr;

std::string Narrow(const std::wstring& wide) {
    const int length = static_cast<int>(wide.size());
    std::string text(wide.size() * 3, '\0');
    const int used = WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), length, text.data(), static_cast<int>(text.size()),
                                         nullptr, nullptr);
    text.resize(static_cast<std::size_t>(used));
    return text;
}

// The answer to a message that fills a text of that many characters.
std::string ReadText(HWND window, UINT message, WPARAM wParam, LRESULT length, bool countInWParam) {
    if (length < 0) return "(none)";
    std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
    const LRESULT copied =
        Send(window, message, countInWParam ? wide.size() : wParam, reinterpret_cast<LPARAM>(wide.data()));
    wide.resize(copied < 0 ? 0 : static_cast<std::size_t>(copied));
    return Narrow(wide);
}

void Press(WORD key, DWORD flags, std::vector<INPUT>& inputs) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    inputs.push_back(input);
}

void Inject(std::vector<INPUT>& inputs) { SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)); }

// Cancels what is open, again and again, until the modal dialog has ended.
void CancelDialogs(const Windows& windows, const std::atomic<bool>& ended) {
    Until([&] {
        for (const HWND window : windows.All()) {
            if (ClassOf(window) != "#32770" || !IsWindowEnabled(window)) continue;
            PostMessageW(window, WM_COMMAND, GetDlgItem(window, IDNO) != nullptr ? IDNO : IDCANCEL, 0);
        }
        return ended.load();
    });
}

} // namespace

void MakeDesktop() {
    desktopName = "bvtest" + std::to_string(GetCurrentProcessId());
    // Without it the programs under test would be on a desktop that this process does not see.
    const auto make = [] {
        desktop = CreateDesktopA(desktopName.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        return desktop != nullptr && SetThreadDesktop(desktop);
    };
    if (!Until(make)) {
        std::fprintf(stderr, "no desktop for the tests: error %lu\n", GetLastError());
        std::exit(1);
    }
    // Starts the process that Wine has for each desktop, which would else be started, and ended, with the first program
    // under test; every program after it would have to start another one.
    GetDesktopWindow();
}

void UseDesktop() { SetThreadDesktop(desktop); }

bool Until(const std::function<bool()>& condition) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > kPatience) return false;
        Sleep(kPoll);
    }
    return true;
}

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatience, &result)) return -1;
    return static_cast<LRESULT>(result);
}

LRESULT SendTo(HWND dialog, int control, UINT message, WPARAM wParam, LPARAM lParam) {
    return Send(GetDlgItem(dialog, control), message, wParam, lParam);
}

std::string Text(HWND window) { return ReadText(window, WM_GETTEXT, 0, Send(window, WM_GETTEXTLENGTH), true); }

std::string Text(HWND dialog, int control) { return Text(GetDlgItem(dialog, control)); }

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool IsEnabled(HWND dialog, int control) { return IsWindowEnabled(GetDlgItem(dialog, control)) != FALSE; }

bool IsChecked(HWND dialog, int control) { return SendTo(dialog, control, BM_GETCHECK) == BST_CHECKED; }

int FocusOf(HWND dialog) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    HWND focus = info.hwndFocus;
    while (focus != nullptr && GetParent(focus) != dialog) focus = GetAncestor(focus, GA_PARENT);
    return focus == nullptr ? 0 : GetDlgCtrlID(focus);
}

void FocusControlOf(HWND dialog, int control) {
    SetForegroundWindow(dialog);
    Send(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
}

void SetTextOf(HWND dialog, int control, const std::string& text) {
    std::wstring wide(text.size() + 1, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    SetWindowTextW(GetDlgItem(dialog, control), wide.c_str());
}

std::string ClipboardText() {
    if (!OpenClipboard(nullptr)) return {};
    const HANDLE memory = GetClipboardData(CF_TEXT);
    std::string text;
    if (memory != nullptr) {
        text = static_cast<const char*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

void Click(HWND dialog, int control) { PostMessageW(GetDlgItem(dialog, control), BM_CLICK, 0, 0); }

namespace {

bool IsListView(HWND window) { return ClassOf(window) == WC_LISTVIEWA; }

// Memory in a window's process, for messages that carry pointers.
class SharedMemory {
  public:
    SharedMemory(HWND window, std::size_t size) {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        process_ = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
        place_ = static_cast<char*>(VirtualAllocEx(process_, nullptr, size, MEM_COMMIT, PAGE_READWRITE));
    }
    ~SharedMemory() {
        VirtualFreeEx(process_, place_, 0, MEM_RELEASE);
        CloseHandle(process_);
    }
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    [[nodiscard]] char* At(std::size_t offset = 0) const { return place_ + offset; }
    void Put(const void* bytes, std::size_t size) const { WriteProcessMemory(process_, place_, bytes, size, nullptr); }
    void Get(void* bytes, std::size_t size, std::size_t offset) const {
        ReadProcessMemory(process_, place_ + offset, bytes, size, nullptr);
    }

  private:
    HANDLE process_;
    char* place_;
};

constexpr int kLongestCell = 1000;

std::string Cell(HWND list, const SharedMemory& memory, WPARAM row, int column) {
    LVITEMW item{};
    item.iSubItem = column;
    item.cchTextMax = kLongestCell;
    item.pszText = reinterpret_cast<wchar_t*>(memory.At(sizeof item));
    memory.Put(&item, sizeof item);
    Send(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(memory.At()));
    std::wstring text(kLongestCell + 1, L'\0');
    memory.Get(text.data(), kLongestCell * sizeof(wchar_t), sizeof item);
    return Narrow(text.c_str());
}

// The rows of a list view, their columns parted by tabs.
std::vector<std::string> Rows(HWND list) {
    const SharedMemory memory(list, sizeof(LVITEMW) + kLongestCell * sizeof(wchar_t));
    const auto header = reinterpret_cast<HWND>(Send(list, LVM_GETHEADER));
    const auto columns = static_cast<int>(Send(header, HDM_GETITEMCOUNT));
    std::vector<std::string> rows;
    for (LRESULT row = 0; row < Send(list, LVM_GETITEMCOUNT); ++row) {
        rows.emplace_back();
        for (int column = 0; column < columns; ++column)
            rows.back() += (column > 0 ? "\t" : "") + Cell(list, memory, static_cast<WPARAM>(row), column);
    }
    return rows;
}

void SetRowState(HWND list, int row, UINT state, UINT mask) {
    const SharedMemory memory(list, sizeof(LVITEMW));
    LVITEMW item{};
    item.state = state;
    item.stateMask = mask;
    memory.Put(&item, sizeof item);
    Send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(memory.At()));
}

} // namespace

std::vector<std::string> Entries(HWND dialog, int control) {
    const HWND window = GetDlgItem(dialog, control);
    if (IsListView(window)) return Rows(window);
    const bool combo = ClassOf(window) == "ComboBox";
    const LRESULT count = Send(window, combo ? CB_GETCOUNT : LB_GETCOUNT);
    std::vector<std::string> entries;
    for (LRESULT i = 0; i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        const LRESULT length = Send(window, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, index);
        entries.push_back(ReadText(window, combo ? CB_GETLBTEXT : LB_GETTEXT, index, length, false));
    }
    return entries;
}

int Selection(HWND dialog, int list) {
    const HWND window = GetDlgItem(dialog, list);
    if (!IsListView(window))
        return static_cast<int>(SendTo(dialog, list, ClassOf(window) == "ComboBox" ? CB_GETCURSEL : LB_GETCURSEL));
    return static_cast<int>(SendTo(dialog, list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void Select(HWND dialog, int list, int index) {
    const HWND window = GetDlgItem(dialog, list);
    if (IsListView(window)) {
        SetRowState(window, -1, 0, LVIS_SELECTED);
        return SetRowState(window, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    }
    const bool isCombo = ClassOf(window) == "ComboBox"; // which tells of it by the same code
    SendTo(dialog, list, isCombo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index));
    Send(dialog, WM_COMMAND, MAKEWPARAM(list, LBN_SELCHANGE), reinterpret_cast<LPARAM>(window));
}

void Key(WORD key, WORD modifier) {
    std::vector<INPUT> inputs;
    if (modifier != 0) Press(modifier, 0, inputs);
    Press(key, 0, inputs);
    Press(key, KEYEVENTF_KEYUP, inputs);
    if (modifier != 0) Press(modifier, KEYEVENTF_KEYUP, inputs);
    Inject(inputs);
}

void Type(const std::string& text) {
    std::vector<INPUT> inputs;
    for (const char character : text) {
        for (const DWORD flags : {0UL, static_cast<unsigned long>(KEYEVENTF_KEYUP)}) {
            INPUT input{};
            input.type = INPUT_KEYBOARD;
            input.ki.wScan = static_cast<WORD>(static_cast<unsigned char>(character));
            input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
            inputs.push_back(input);
        }
    }
    Inject(inputs);
}

void Make(HWND dialog, const Entry& entry) {
    if (entry.Text != nullptr) return SetTextOf(dialog, entry.Control, entry.Text);
    if (entry.Choice >= 0) return Select(dialog, entry.Control, entry.Choice);
    SendTo(dialog, entry.Control, BM_CLICK);
}

void Make(HWND dialog, const std::vector<Entry>& entries) {
    for (const Entry& entry : entries) Make(dialog, entry);
}

HWND FrontPage(HWND dialog) {
    for (const HWND child : Children(dialog))
        if (ClassOf(child) == "#32770" && IsWindowVisible(child)) return child;
    return nullptr;
}

HWND ShowPage(HWND dialog, int tabs, int page) {
    const auto now = [&] { return static_cast<int>(SendTo(dialog, tabs, TCM_GETCURSEL)); };
    SetForegroundWindow(dialog);
    for (int step = now(); step < page; ++step) {
        Key(VK_TAB, VK_CONTROL);
        Until([&] { return now() == step + 1; });
    }
    return FrontPage(dialog);
}

std::vector<HWND> Children(HWND window) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

std::vector<HWND> Windows::All() const {
    struct Search {
        DWORD Process;
        std::vector<HWND> Found;
    } search{process_, {}};
    EnumWindows(
        [](HWND window, LPARAM data) -> BOOL {
            auto* found = reinterpret_cast<Search*>(data);
            DWORD process = 0;
            GetWindowThreadProcessId(window, &process);
            if (process == found->Process && IsWindowVisible(window)) found->Found.push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

HWND Windows::Wait(const std::string& title, int control) const {
    HWND found = nullptr;
    Until([&] {
        for (const HWND window : All()) {
            if (!IsWindowEnabled(window) || (control != 0 && GetDlgItem(window, control) == nullptr)) continue;
            if (Text(window) != title || ClassOf(window) != "#32770") continue;
            found = window;
            return true;
        }
        return false;
    });
    return found;
}

HWND Windows::Box(const std::string& caption) const {
    for (const HWND window : All())
        if (GetDlgItem(window, kBoxText) != nullptr && Text(window) == caption) return window;
    return nullptr;
}

std::string Windows::WaitBox(const std::string& caption) const {
    const HWND box = Wait(caption, kBoxText);
    return box == nullptr ? "(no box \"" + caption + "\")" : Text(box, kBoxText);
}

bool Windows::AnswerBox(const std::string& caption, int button) const {
    const HWND box = Wait(caption, kBoxText);
    if (box == nullptr) return false;
    Click(box, button);
    return Until([&] { return !IsWindow(box); });
}

Program::Program(std::string commandLine) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.lpDesktop = desktopName.data();
    job_ = CreateJobObjectA(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr,
                        &startup, &process_))
        return;
    AssignProcessToJobObject(job_, process_.hProcess);
    ResumeThread(process_.hThread);
    windows_ = gui::Windows(process_.dwProcessId);
}

Program::~Program() {
    CloseHandle(job_); // ends the program and what it started
    WaitForSingleObject(process_.hProcess, kPatience);
    CloseHandle(process_.hProcess);
    CloseHandle(process_.hThread);
}

bool Program::IsRunning() const { return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT; }

int Program::WaitForEnd() const {
    DWORD code = 0;
    if (WaitForSingleObject(process_.hProcess, kPatience) != WAIT_OBJECT_0) return -1;
    GetExitCodeProcess(process_.hProcess, &code);
    return static_cast<int>(code);
}

void RunDriven(const std::function<void()>& open, const std::function<void(const Windows&)>& drive) {
    std::atomic<bool> ended = false;
    std::thread driver([&] {
        UseDesktop();
        const Windows windows;
        drive(windows);
        CancelDialogs(windows, ended);
    });
    open();
    ended = true;
    driver.join();
    // Keys that came too late must not reach the next dialog.
    for (MSG message; PeekMessageA(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE);) {
    }
}

} // namespace bv::gui
