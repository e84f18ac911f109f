// list_times [USERS]: how long the list of users takes with so many of them (200,000), and reading 10,000 accounts of
// the network: by the clock, in CPU time of the process, and the memory at its peak. Built as pictures is.
#include <windows.h>

#include <commctrl.h>
#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "dialogs/colours_dlg.h"
#include "gui/disk_server.h"
#include "gui/gui.h"
#include "resources/ids.h"
#include "shell/server_paths.h"
#include "support/fakes.h"
#include "support/recording_front.h"
#include "users/network_users_dlg.h"
#include "users/user_details_dlg.h"
#include "users/user_list_dlg.h"
#include "voice/format.h"

namespace bv::gui {
namespace {

constexpr const char* kTitle = "Brivane - users and user groups";

ULONGLONG Ticks(const FILETIME& time) { return (ULONGLONG{time.dwHighDateTime} << 32) | time.dwLowDateTime; }

// Prints a step's times at the end of its life.
class Step {
  public:
    explicit Step(const char* name) : name_(name) {}
    ~Step() { std::printf("%-32s %6llu ms  CPU %6llu ms\n", name_, GetTickCount64() - start_, (Cpu() - cpu_) / 10000); }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

  private:
    static ULONGLONG Cpu() {
        FILETIME created, ended, kernel, user;
        GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
        return Ticks(kernel) + Ticks(user);
    }

    const char* name_;
    ULONGLONG start_ = GetTickCount64();
    ULONGLONG cpu_ = Cpu();
};

std::string UserName(int number) { return FormatText("U%07d", number); }

std::string ListOf(int users) {
    std::string text = "[USER]\r\nName: (default)\r\n\r\n";
    const std::string others = "Group: @SALES\r\nUsername: someone\r\nNetware: someone\r\nLanManager: someone\r\n"
                               "MailGateway: YES\r\nMailName: someone.of.them@example.com\r\nUrgent: NO\r\n"
                               "Dial: Local National1,2,3 International1\r\nCostCentre: 210\r\n\r\n";
    for (int i = 0; i < users; ++i)
        text += "[USER]\r\nName: " + UserName(i) + "\r\nFullname: User number " + std::to_string(users - i) + "\r\n" +
                others;
    return text;
}

std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize;
}

void WorkList(HWND list, const std::string& all) {
    const auto counts = [&](const std::string& text) {
        Until([&] { return Text(list, ID_USERS_COUNT).starts_with(text); });
    };
    {
        const Step step("a character in the filter");
        SetTextOf(list, ID_USERS_FILTER, "7");
    }
    SetTextOf(list, ID_USERS_FILTER, "");
    {
        const Step step("sort by the full name");
        NMLISTVIEW click{};
        click.hdr = {GetDlgItem(list, ID_USERS_LIST), ID_USERS_LIST, static_cast<UINT>(LVN_COLUMNCLICK)};
        click.iSubItem = 1;
        Send(list, WM_NOTIFY, ID_USERS_LIST, reinterpret_cast<LPARAM>(&click));
    }
    FocusControlOf(list, ID_USERS_LIST);
    {
        const Step step("select all");
        Key('A', VK_CONTROL);
        counts(FormatText("%s of %s shown, %s selected", all, all, all));
    }
}

void TimeList(int users) {
    const std::string all = std::to_string(users);
    const std::size_t before = PeakMemory();
    {
        std::optional<Step> opening;
        static constexpr DialogServices kServices{};
        RunDriven(
            [&] {
                opening.emplace("open the list");
                ConfigureUsers(nullptr, kServices);
            },
            [&](const Windows& windows) {
                const HWND list = windows.Wait(kTitle);
                Until([&] { return Text(list, ID_USERS_COUNT).starts_with(all + " of "); });
                opening.reset();
                WorkList(list, all);
            });
    }
    std::printf("%-32s %6.1f MB above the start\n", "memory at its peak",
                static_cast<double>(PeakMemory() - before) / 1e6);
    std::optional<Step> opening;
    RunDriven(
        [&] {
            opening.emplace("open the last user's details");
            EditUserByDialog(nullptr, RecordKind::User, UserName(users - 1));
        },
        [&](const Windows& windows) {
            if (windows.Wait("Brivane user details - " + UserName(users - 1)) != nullptr) opening.reset();
        });
}

// Accounts in pages of a hundred, as the system gives them.
class PagedAccounts final : public platform::NetworkUsers {
  public:
    explicit PagedAccounts(int accounts) {
        for (int i = 0; i < accounts; ++i) accounts_.push_back({FormatText("user%d", i), "Somebody", false, true});
    }
    std::vector<platform::NetworkDomain> Domains() override { return {}; }
    platform::NetworkReading Read(const std::string&, const Visitor& visit) override {
        constexpr std::size_t kPage = 100;
        for (std::span rest(accounts_); !rest.empty(); rest = rest.subspan(std::min(rest.size(), kPage)))
            if (!visit(rest.first(std::min(rest.size(), kPage)))) break;
        return {};
    }

  private:
    std::vector<platform::NetworkUser> accounts_;
};

// The longest that a window did not answer, while accounts are read.
void TimeNetwork(int accounts) {
    PagedAccounts network(accounts);
    const platform::Substitute<platform::NetworkUsers> use(network);
    ULONGLONG longest = 0;
    std::optional<Step> reading;
    RunDriven(
        [&] {
            reading.emplace("read 10,000 accounts");
            AddNetworkUsersByDialog(nullptr);
        },
        [&](const Windows& windows) {
            LRESULT shown = 0;
            Until([&] {
                for (const HWND window : windows.All()) {
                    const ULONGLONG start = GetTickCount64();
                    if (const HWND list = GetDlgItem(window, ID_NETWORK_LIST)) shown = Send(list, LVM_GETITEMCOUNT);
                    longest = std::max(longest, GetTickCount64() - start);
                }
                return shown == accounts;
            });
            reading.reset();
        });
    std::printf("%-32s %6llu ms\n", "longest without an answer", longest);
}

int Run(int users) {
    const DiskServer server;
    const test::RecordingFront front;
    if (LoadServerPaths() != kDone) return 1;
    const std::string text = ListOf(users);
    server.Files().Write("B-DB\\USERLIST.INI", text);
    std::printf("%d users, %.1f MB\n", users, static_cast<double>(text.size()) / 1e6);
    TimeList(users);
    TimeNetwork(10000);
    return 0;
}

} // namespace
} // namespace bv::gui

int main(int count, char** arguments) {
    constexpr int kUsers = 200000;
    bv::gui::MakeDesktop();
    bv::StartCommonControls();
    return bv::gui::Run(count > 1 ? std::atoi(arguments[1]) : kUsers);
}
