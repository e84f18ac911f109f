#include "shell/menu_dlg.h"

#include <memory>
#include <string>

#include "covlet/catalogue_dlg.h"
#include "ctlfile/reader.h"
#include "devices/device_list_dlg.h"
#include "dialling/dialling_page_dlg.h"
#include "dialogs/dialog_dlg.h"
#include "lcr/lcr_page_dlg.h"
#include "mailgw/gateway_page_dlg.h"
#include "mailgw/mail_boxes_dlg.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_login.h"
#include "mailgw/mail_users_dlg.h"
#include "mailgw/mail_wait_dlg.h"
#include "mailgw/notes_settings.h"
#include "options/options_dlg.h"
#include "resources/ids.h"
#include "routing/inward_dlg.h"
#include "shell/menu_walk.h"
#include "shell/startup.h"
#include "users/user_list_dlg.h"
#include "voice/messages.h"
#include "voice/strings.h"
#include "whereused/where_used_dlg.h"

namespace bv {
namespace {

struct Area {
    MenuEntry Entry;
    int Button;               // its radio button
    MessageId<0> Name;        // the string that names it
    void (*Open)(HWND owner); // runs its dialog; none: this version has none, and the entry is disabled
};

constexpr DialogServices kServices{ShowUses, DeleteByDialog, ConfigureMailUsers, PickMailName, CountMailUsers};

void OpenUsers(HWND owner) { ConfigureUsers(owner, kServices); }
void OpenDevices(HWND owner) { ConfigureDevices(owner, kServices); }

// The log-in of least-cost routing, with the password as it would be stored.
void TestRouterLogin(HWND owner, const RouterSettings& settings) {
    MailWaitBox box(owner);
    TestMailLogin(
        {ValueCodec<EmailType>::Text(settings.Email), settings.EmailLoginName, {settings.EmailLoginParams, true}}, box);
}
std::string NotesIdFile() {
    FixedText<kMaxLine> keyFile;
    FixedText<kMaxLine> location;
    ReadNotesSettings(keyFile, location);
    return keyFile.String();
}
constexpr LcrServices kLcrServices{TestRouterLogin, NotesIdFile};
std::unique_ptr<AreaPage> MakeRoutingPage(FieldRecord& options) { return MakeLcrPage(options, kLcrServices); }

// The settings' pages of other areas, in the order of OptionPage.
constexpr AreaPageMaker kAreaPages[] = {MakeRoutingPage, MakeDiallingPage, MakeGatewayPage};
void OpenSettings(HWND owner) { ConfigureOptions(owner, kAreaPages); }

// In the menu's order.
constexpr Area kAreas[] = {
    {MenuEntry::Users, ID_MENU_USERS, kAreaOfUsers, OpenUsers},
    {MenuEntry::Devices, ID_MENU_DEVICES, kAreaOfDevices, OpenDevices},
    {MenuEntry::Settings, ID_MENU_SETTINGS, kAreaOfSettings, OpenSettings},
    {MenuEntry::InwardRouting, ID_MENU_ROUTING, kAreaOfRouting, ConfigureRouting},
    {MenuEntry::Coversheets, ID_MENU_COVLET, kAreaOfCoversheets, ConfigureCoversheets},
};

// Runs the dialog of an area, or says that this version has none.
void OpenArea(MenuEntry entry, HWND owner) {
    for (const Area& area : kAreas) {
        if (area.Entry != entry) continue;
        if (area.Open != nullptr)
            area.Open(owner);
        else
            ShowWarning(kCannotConfigure, FillMessage(area.Name));
    }
}

int ButtonOf(MenuEntry entry) {
    for (const Area& area : kAreas)
        if (area.Entry == entry) return area.Button;
    return ID_MENU_QUIT;
}

MenuEntry CheckedEntry(HWND dialog) {
    for (const Area& area : kAreas)
        if (IsDlgButtonChecked(dialog, area.Button)) return area.Entry;
    return MenuEntry::Quit;
}

void CheckEntry(HWND dialog, MenuEntry entry) {
    for (const Area& area : kAreas) CheckDlgButton(dialog, area.Button, BST_UNCHECKED);
    CheckDlgButton(dialog, ID_MENU_QUIT, BST_UNCHECKED);
    CheckDlgButton(dialog, ButtonOf(entry), BST_CHECKED);
    if (IsWindowEnabled(GetDlgItem(dialog, ButtonOf(entry)))) FocusControl(dialog, ButtonOf(entry));
}

// The entry itself, or the first one that can be opened when its area is not there.
MenuEntry FirstOpenable(MenuEntry entry) {
    for (const Area& area : kAreas)
        if (area.Open != nullptr && area.Entry >= entry) return area.Entry;
    return MenuEntry::Quit;
}

void TakeStep(HWND dialog, const MenuStep& step) {
    CheckEntry(dialog, step.PressOk ? step.Checked : FirstOpenable(step.Checked));
    if (step.PressOk) PostMessageA(dialog, WM_COMMAND, IDOK, 0);
}

void FillMenu(HWND dialog, StartupOptions& options) {
    const std::string_view users = FindString(kUsersAndGroups);
    if (!users.empty()) SetText(dialog, ID_MENU_USERS, "&" + std::string(users));
    for (const Area& area : kAreas) EnableControl(dialog, area.Button, area.Open != nullptr);
    TakeStep(dialog, FirstStep(options));
}

void QuitMenu(HWND dialog, StartupOptions& options) {
    LeaveMenu(options);
    EndDialog(dialog, IDOK);
}

void OpenChecked(HWND dialog, StartupOptions& options) {
    const MenuEntry entry = CheckedEntry(dialog);
    if (entry == MenuEntry::Quit) return QuitMenu(dialog, options);
    {
        const KeepFocus focus;
        OpenArea(entry, dialog);
    }
    SetStatusLine("", 1);
    TakeStep(dialog, NextStep(entry, options));
}

constexpr DialogCommand<StartupOptions> kMenuCommands[] = {
    {IDOK, BN_CLICKED, OpenChecked},
    {IDCANCEL, BN_CLICKED, QuitMenu},
    {ID_MENU_USERS, BN_DBLCLK, OpenChecked},
    {ID_MENU_DEVICES, BN_DBLCLK, OpenChecked},
    {ID_MENU_SETTINGS, BN_DBLCLK, OpenChecked},
    {ID_MENU_ROUTING, BN_DBLCLK, OpenChecked},
    {ID_MENU_COVLET, BN_DBLCLK, OpenChecked},
    {ID_MENU_QUIT, BN_DBLCLK, OpenChecked},
};
constexpr DialogPlan<StartupOptions> kMenuPlan{HELP_MENU, FillMenu, kMenuCommands};

} // namespace

INT_PTR CALLBACK FunctionDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kMenuPlan, {dialog, message, wParam, lParam});
}

void RunStartFunction(HWND mainWindow) {
    const KeepFocus focus;
    if (Startup().StartFunction != 0) return OpenArea(static_cast<MenuEntry>(Startup().StartFunction), mainWindow);
    OpenDialog(Switches().EnableRouting ? "FunctionBox" : "FunctionBoxLtd", mainWindow, FunctionDlgBox, &Startup());
}

} // namespace bv
