// pictures DIRECTORY [x]: draws every dialog, filled from the sample server, into a .bmp file of the directory, for a
// person to look at; with x in the colours of a high-contrast scheme. Prints the file's name, a tab and the dialog's
// title, and before those of an area a tab and the area's name. tools/draw-pictures makes a page of it. Built with the
// Windows tests, whose way to drive dialogs it takes.
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <fstream>

#include "covlet/catalogue_dlg.h"
#include "covlet/item_dlg.h"
#include "devices/add_device_dlg.h"
#include "devices/device_details_dlg.h"
#include "devices/device_list_dlg.h"
#include "dialling/dialling_dlg.h"
#include "dialling/dialling_page_dlg.h"
#include "dialogs/colours_dlg.h"
#include "dialogs/csv_import_dlg.h"
#include "dialogs/dialog_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/printer_choice_dlg.h"
#include "dialogs/progress_dlg.h"
#include "gui/disk_server.h"
#include "gui/gui.h"
#include "lcr/destinations_dlg.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_page_dlg.h"
#include "lcr/links_dlg.h"
#include "lcr/rule_list_dlg.h"
#include "mailgw/gateway_page_dlg.h"
#include "mailgw/mail_alias_dlg.h"
#include "mailgw/mail_boxes_dlg.h"
#include "mailgw/mail_enable_dlg.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_users_dlg.h"
#include "options/options_dialog_dlg.h"
#include "options/options_dlg.h"
#include "resources/ids.h"
#include "routing/inward_dlg.h"
#include "routing/inward_rule_dlg.h"
#include "shell/front_dlg.h"
#include "shell/main_window_dlg.h"
#include "shell/menu_dlg.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "support/fakes.h"
#include "support/texts.h"
#include "users/many_users_dlg.h"
#include "users/network_users_dlg.h"
#include "users/user_details_dlg.h"
#include "users/user_import.h"
#include "users/user_list_dlg.h"
#include "voice/messages.h"
#include "whereused/where_used_dlg.h"

namespace bv::gui {
namespace {

constexpr const char* kCatalogueTitle = "Brivane - coversheets and letterheads";

bool IsPainted(HWND window) {
    if (GetUpdateRect(window, nullptr, FALSE)) return false;
    for (const HWND child : Children(window))
        if (IsWindowVisible(child) && !IsPainted(child)) return false;
    return true;
}

void WriteBitmap(const std::string& path, const BITMAPINFOHEADER& header, const char* pixels) {
    const DWORD size = static_cast<DWORD>((header.biWidth * 3 + 3) / 4 * 4 * header.biHeight);
    constexpr DWORD kOffset = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
    BITMAPFILEHEADER start{0x4D42, kOffset + size, 0, 0, kOffset};
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&start), sizeof start);
    file.write(reinterpret_cast<const char*>(&header), sizeof header);
    file.write(pixels, static_cast<std::streamsize>(size));
}

void Shoot(HWND window, const std::string& path) {
    Until([&] { return IsPainted(window); });
    Send(window, WM_NCACTIVATE, TRUE); // an active caption in every picture
    RECT place{};
    GetWindowRect(window, &place);
    BITMAPINFO info{};
    info.bmiHeader = {
        sizeof(BITMAPINFOHEADER), place.right - place.left, place.bottom - place.top, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    const HDC source = GetWindowDC(window);
    const HDC target = CreateCompatibleDC(source);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(target, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    const HGDIOBJ before = SelectObject(target, bitmap);
    BitBlt(target, 0, 0, info.bmiHeader.biWidth, info.bmiHeader.biHeight, source, 0, 0, SRCCOPY);
    GdiFlush();
    WriteBitmap(path, info.bmiHeader, static_cast<const char*>(pixels));
    SelectObject(target, before);
    DeleteObject(bitmap);
    DeleteDC(target);
    ReleaseDC(window, source);
}

class Painter {
  public:
    explicit Painter(std::string directory) : directory_(std::move(directory)) {}

    // Opens a dialog, has it made ready and draws it.
    void Draw(
        const std::string& name, const std::string& title, const std::function<void()>& open,
        const std::function<void(HWND)>& prepare = [](HWND) {}) const {
        RunDriven(open, [&](const Windows& windows) {
            const HWND dialog = windows.Wait(title);
            if (dialog == nullptr) return;
            prepare(dialog);
            DrawOpen(name, dialog);
        });
    }

    void DrawOpen(const std::string& name, HWND window) const {
        Shoot(window, directory_ + "\\" + name + ".bmp");
        char title[100] = "";
        GetWindowTextA(window, title, sizeof title);
        std::printf("%s\t%s\n", name.c_str(), title);
    }

    // What follows belongs to an area.
    static void Begin(const char* area) { std::printf("\t%s\n", area); }

  private:
    std::string directory_;
};

void DrawMenus(const Painter& painter, HWND owner) {
    painter.Draw("menu", "Brivane configuration", [&] { RunStartFunction(owner); });
    painter.Draw("menu-without-routing", "Brivane configuration",
                 [&] { OpenDialog("FunctionBoxLtd", owner, FunctionDlgBox, &Startup()); });
}

void DrawCatalogues(const Painter& painter, HWND owner) {
    painter.Draw("coversheets", kCatalogueTitle, [&] { ConfigureCoversheets(owner); });
    painter.Draw(
        "coversheets-chosen", kCatalogueTitle, [&] { ConfigureCoversheets(owner); },
        [](HWND dialog) { Select(dialog, ID_COVLET_LIST, 1); });
    painter.Draw(
        "letterheads", kCatalogueTitle, [&] { ConfigureCoversheets(owner); },
        [](HWND dialog) {
            Click(dialog, ID_COVLET_LETTERHEADS);
            Until([&] { return Entries(dialog, ID_COVLET_LIST).size() == 2; });
        });
}

// More entries than fit, one of them as wide as can be.
void DrawFullCatalogue(const Painter& painter, HWND owner, const DiskServer& server) {
    std::string text = "[DIRECTORY]\r\nFile: AAAAAAAAAAAA \"" + std::string(50, 'W') + "\"\r\n";
    for (int i = 1; i <= 30; ++i) text += FormatText("File: SHEET%02d \"Coversheet number %d\"\r\n", i, i);
    server.Files().Write(kCoverCatalogue, text);
    painter.Draw("coversheets-full", kCatalogueTitle, [&] { ConfigureCoversheets(owner); });
}

void DrawItems(const Painter& painter, HWND owner) {
    const std::string longText = "Wide: WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW";
    ItemDialog cover{ItemKind::Coversheet, {"STANDARD", "Standard coversheet"}};
    ItemDialog letter{ItemKind::Letterhead, {"WWWWWWWWWWWW", longText}};
    painter.Draw("coversheet-details", "Brivane coversheet details", [&] { AskDescription(owner, cover); });
    painter.Draw("letterhead-details", "Brivane letterhead details", [&] { AskDescription(owner, letter); });
    ItemDialog item;
    painter.Draw("coversheet-add", "Add new coversheet", [&] { AskNewItem(owner, item); });
    item.Kind = ItemKind::Letterhead;
    painter.Draw("letterhead-add", "Add new letterhead", [&] { AskNewItem(owner, item); });
}

// All pages of a record's details, one after the other.
void DrawPages(const Painter& painter, int tabs, const std::string& name, const std::string& title, int pages,
               const std::function<void()>& open) {
    for (int page = 0; page < pages; ++page)
        painter.Draw(name + "-" + std::to_string(page + 1), title, open,
                     [&](HWND dialog) { ShowPage(dialog, tabs, page); });
}

void DrawUsers(const Painter& painter, HWND owner, const DiskServer& server) {
    server.Files().Write("users.csv",
                         "Name,Fullname,Group\r\nADAM,Adam,@SALES\r\nBEN,Ben,@NOBODY\r\nANNA,Anna,@ACCTS\r\n");
    static constexpr DialogServices kServices{ShowUses, DeleteByDialog, ConfigureMailUsers, PickMailName,
                                              CountMailUsers};
    painter.Draw("users", "Brivane - users and user groups", [&] { ConfigureUsers(owner, kServices); });
    painter.Draw(
        "groups", "Brivane - users and user groups", [&] { ConfigureUsers(owner, kServices); },
        [](HWND dialog) {
            Click(dialog, ID_USERS_SHOW_GROUPS);
            Until(
                [&] { return !Entries(dialog, ID_USERS_LIST).empty() && Entries(dialog, ID_USERS_LIST)[0][0] == '@'; });
        });
    DrawPages(painter, ID_USER_PAGES, "user", "Brivane user details - ANNA", 6,
              [&] { EditUserByDialog(owner, RecordKind::User, "ANNA", &kServices); });
    DrawPages(painter, ID_USER_PAGES, "group", "Brivane user group details - @SALES", 2,
              [&] { EditUserByDialog(owner, RecordKind::Group, "@SALES"); });
    painter.Draw("where-used", "Where ANNA is used", [&] { ShowUses(owner, NamedThing::User, "ANNA"); });
    painter.Draw("where-used-delete", "Where ANNA, FRANK is used", [&] {
        DeleteByDialog(owner, NamedThing::User, {"ANNA", "FRANK"});
    });
    painter.Draw("user-new", "Add new user", [&] { AddUserByDialog(owner, {}); });
    painter.Draw("users-many", "Change 3 users", [&] { ChangeUsersByDialog(owner, {"ANNA", "BEN", "CLARA"}); });
    painter.Draw(
        "import", "Import users",
        [&] {
            UserImport import;
            ImportByDialog(owner, import);
        },
        [&](HWND dialog) {
            SetTextOf(dialog, ID_IMPORT_FILE, server.Files().Path("users.csv"));
            FocusControlOf(dialog, ID_IMPORT_FILE);
            Key(VK_RETURN);
            Until([&] { return !Text(dialog, ID_IMPORT_COUNT).empty(); });
        });
    painter.Draw("choose-user", "Choose a user", [&] { ChooseNames(owner, kUserNames, true); });
}

void DrawDevices(const Painter& painter, HWND owner) {
    static constexpr DialogServices kServices{ShowUses, DeleteByDialog};
    painter.Draw("devices", "Brivane - devices", [&] { ConfigureDevices(owner, kServices); });
    painter.Draw("device-add", "Add new device", [&] { AddDeviceByDialog(owner, "GAMMA-1"); });
    painter.Draw("device-type", "Type of device MODEM-9", [&] { AskDeviceType(owner, "MODEM-9"); });
    DrawPages(painter, ID_DEVICE_PAGES, "device", "Brivane device details - MODEM-2", 5,
              [&] { EditDeviceByDialog(owner, "MODEM-2"); });
    painter.Draw("device-board", "Brivane device details - BTROUT-1", [&] { EditDeviceByDialog(owner, "BTROUT-1"); });
    painter.Draw("device-printer", "Brivane device details - PRINT-1", [&] { EditDeviceByDialog(owner, "PRINT-1"); });
    painter.Draw("where-used-printer", "Where PRINT-1 is used",
                 [&] { DeleteByDialog(owner, NamedThing::Printer, {"PRINT-1"}); });
}

void DrawRouting(const Painter& painter, HWND owner, const DiskServer& server) {
    constexpr const char* kTitle = "Brivane - automatic inward routing";
    const std::string rules = server.Files().Read("B-DB\\ROUTING.INI");
    std::string changed = rules;
    changed.replace(changed.find("FRANK: NICO"), 11, "FRANK: OTTO");
    changed.replace(changed.find("temp1:"), 6, "FRANK:");
    server.Files().Write("B-DB\\ROUTING.INI", changed);
    const auto open = [&] { ConfigureRouting(owner); };
    painter.Draw("inward", kTitle, open, [](HWND dialog) {
        SetTextOf(dialog, ID_INWARD_TRY_ADDRESSEE, "HUGO");
        SetTextOf(dialog, ID_INWARD_TRY_SENDER, "+44 20 7946 0151");
        Until([&] { return !Text(dialog, ID_INWARD_RESULT).empty(); });
    });
    for (const int kind : {ID_INWARD_SUB_ADDRESSES, ID_INWARD_FORWARDS})
        painter.Draw(kind == ID_INWARD_FORWARDS ? "inward-forwards" : "inward-sub-addresses", kTitle, open,
                     [&](HWND dialog) {
                         Click(dialog, kind);
                         Until([&] { return IsChecked(dialog, kind); });
                     });
    InwardRules listed;
    ReadInwardRules(listed);
    painter.Draw("inward-sender", "Sender rule", [&] { SenderRuleByDialog(owner, listed, listed.Senders.at(0)); });
    painter.Draw(
        "inward-sender-new", "Add new sender rule", [&] { SenderRuleByDialog(owner, listed, {}); },
        [](HWND dialog) { SetTextOf(dialog, ID_SENDER_ID, "44 (20) 79460150"); });
    painter.Draw("inward-sub-address", "Sub-address rule",
                 [&] { SubAddressRuleByDialog(owner, listed.SubAddresses.at(0)); });
    painter.Draw("inward-forward", "Forwarding rule",
                 [&] { ForwardRuleByDialog(owner, listed, listed.Forwards.at(0)); });
    server.Files().Write("B-DB\\ROUTING.INI", rules);
}

void DrawRules(const Painter& painter, HWND owner, const DiskServer& server) {
    constexpr const char* kRules = "B-DB\\LCRRULES.INI";
    const std::string before = server.Files().Read(kRules);
    server.Files().Write(kRules, before + "[RULE]\r\nDescription: Leeds, once more\r\nArea: UK/LDS\r\nUser: CLARA\r\n"
                                          "Size: PAGES GE 20\r\nServer: MUNICH\r\n\r\n");
    const auto open = [&] { EditRules(owner); };
    painter.Draw("rules", "Routing rules", open, [](HWND dialog) {
        SetTextOf(dialog, ID_RULES_TRY_USER, "CLARA");
        SetTextOf(dialog, ID_RULES_TRY_PAGES, "30");
        SetTextOf(dialog, ID_RULES_TRY_NUMBER, "+44 113 496 0101");
        Until([&] { return !Text(dialog, ID_RULES_RESULT).empty(); });
        Select(dialog, ID_RULES_LIST, 5);
    });
    RunDriven(open, [&](const Windows& windows) {
        const HWND list = windows.Wait("Routing rules");
        Click(list, ID_RULES_SET_FILTER);
        const HWND filter = windows.Wait("Filter");
        SetTextOf(filter, ID_FILTER_USER, "CLARA");
        painter.DrawOpen("rules-filter", filter);
        Click(filter, IDOK);
        Until([&] { return !Text(list, ID_RULES_FILTER_TEXT).empty(); });
        Select(list, ID_RULES_LIST, 3);
        Click(list, ID_RULES_EDIT);
        const HWND rule = windows.Wait("Routing rule 4 of 6");
        SetForegroundWindow(rule);
        for (int page = 0; page < 7; ++page) {
            Until([&] { return SendTo(rule, ID_RULE_PAGES, TCM_GETCURSEL) == page; });
            painter.DrawOpen("rule-" + std::to_string(page + 1), rule);
            Key(VK_TAB, VK_CONTROL);
        }
        Click(rule, IDCANCEL);
        Until([&] { return !IsWindow(rule); });
        painter.DrawOpen("rules-marked", list);
    });
    server.Files().Write(kRules, before);
}

void DrawChoosers(const Painter& painter, HWND owner) {
    test::FakePrinters printers;
    printers.Lists[""].Printers = {{"Office laser", "PCL 6", "LPT1:", "second floor"}};
    const platform::Substitute<platform::Printers> usePrinters(printers);
    painter.Draw("choose-printer", "Choose a printer", [&] { ChoosePrinter(owner, "PRINT-2"); });
    painter.Draw(
        "choose-printer-here", "Choose a printer", [&] { ChoosePrinter(owner, ""); },
        [](HWND dialog) {
            Click(dialog, ID_PRINTERS_OF_WORKSTATION);
            Until([&] { return Entries(dialog, ID_PRINTERS_LIST).size() == 1; });
        });
    test::FakeNetworkUsers network;
    for (const char* name : {"jsmith", "anna", "kim.lee", "robin"})
        network.Accounts.push_back({name, "Full name of " + std::string(name), name[0] == 'k', true});
    network.Accounts.push_back({"\?\?\?", "\?\?\? \?\?\?\?", false, false});
    const platform::Substitute<platform::NetworkUsers> useNetwork(network);
    painter.Draw(
        "network-users", "Add network users", [&] { AddNetworkUsersByDialog(owner); },
        [](HWND dialog) {
            Until([&] { return IsWindowEnabled(dialog) && Entries(dialog, ID_NETWORK_LIST).size() == 4; });
            Click(dialog, ID_NETWORK_UNLISTED);
            Until([&] { return Entries(dialog, ID_NETWORK_LIST).size() == 5; });
            Click(dialog, ID_NETWORK_TICK_ALL);
            Select(dialog, ID_NETWORK_LIST, 2);
            Until([&] { return !Text(dialog, ID_NETWORK_NAME).empty(); });
        });
}

void DrawOptions(const Painter& painter, HWND owner) {
    constexpr const char* kTitle = "Brivane - server settings";
    const auto open = [&] { ConfigureOptions(owner); };
    const std::vector<Page> pages = PagesOfOptions();
    const auto show = [&](HWND dialog, std::size_t page) {
        if (page != 0) Select(dialog, ID_OPTIONS_LIST, static_cast<int>(page));
        Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == pages[page].Title; });
    };
    for (std::size_t page = 0; page < pages.size(); ++page)
        painter.Draw("options-" + std::to_string(page + 1), kTitle, open, [&](HWND dialog) { show(dialog, page); });
    painter.Draw("options-find", kTitle, open, [](HWND dialog) { SetTextOf(dialog, ID_OPTIONS_FIND, "directory"); });
    RunDriven(open, [&](const Windows& windows) {
        const HWND dialog = windows.Wait(kTitle);
        show(dialog, pages.size() - 1);
        Click(FrontPage(dialog), ID_TYPES_ADD);
        painter.DrawOpen("telephone-type", windows.Wait("Telephone-number type"));
    });
}

// Least-cost routing: its page, and the editors behind it.
void DrawLcr(const Painter& painter, HWND owner, const DiskServer& server) {
    static constexpr AreaPageMaker kPages[] = {[](FieldRecord& options) { return MakeLcrPage(options, {}); },
                                               MakeDiallingPage, MakeGatewayPage};
    const auto showPage = [](HWND dialog) {
        Select(dialog, ID_OPTIONS_LIST, static_cast<int>(OptionPage::LeastCostRouting));
        Until([&] { return Text(dialog, ID_OPTIONS_TITLE) == "Least-cost routing"; });
    };
    const auto settings = [&] { ConfigureOptions(owner, kPages); };
    painter.Draw("lcr", "Brivane - server settings", settings, showPage);
    const std::string setup = server.Files().Read("B-DB\\SETUP.INI");
    server.Files().Write("B-DB\\SETUP.INI", test::Replaced(setup, "LCR: YES", "LCR: NO"));
    painter.Draw("lcr-off", "Brivane - server settings", settings, showPage);
    server.Files().Write("B-DB\\SETUP.INI", setup);
    painter.Draw("lcr-general", "General settings", [&] { EditRouter(owner, {}); });
    const auto links = [&] { EditLinks(owner); };
    painter.Draw("lcr-links", "Links to remote servers", links);
    for (const auto& [row, title] : {std::pair(0, "Link MUNICH"), std::pair(2, "Link AGENT")})
        RunDriven(links, [&](const Windows& windows) {
            const HWND list = windows.Wait("Links to remote servers");
            Select(list, ID_LINKS_LIST, row);
            Click(list, ID_LINKS_EDIT);
            painter.DrawOpen(row == 0 ? "lcr-link" : "lcr-link-bare", windows.Wait(title));
        });
}

void DrawDialling(const Painter& painter, HWND owner, const DiskServer& server) {
    constexpr const char* kTitle = "Dialling properties";
    const auto open = [&] { ConfigureDialling(owner); };
    painter.Draw("dialling", kTitle, open, [](HWND dialog) { SetTextOf(dialog, ID_DIALLING_TRY, "0181 123 4567:22"); });
    RunDriven(open, [&](const Windows& windows) {
        Click(windows.Wait(kTitle), ID_DIALLING_NEW);
        painter.DrawOpen("dialling-name", windows.Wait("Add new location"));
    });
    const std::string file = server.Files().Read("B-DB\\DIALLING.INI");
    server.Files().Write("B-DB\\DIALLING.INI", "[DIALPROPERTIES]\r\nLocation: NoTelNumEdit\r\n");
    painter.Draw("dialling-none", kTitle, open, [](HWND dialog) { SetTextOf(dialog, ID_DIALLING_TRY, "0181 1234"); });
    server.Files().Write("B-DB\\DIALLING.INI", file);
    constexpr AreaPageMaker kPages[] = {MakeDiallingPage};
    painter.Draw(
        "dialling-page", "Brivane - server settings", [&] { ConfigureOptions(owner, kPages); },
        [](HWND dialog) {
            Select(dialog, ID_OPTIONS_LIST, static_cast<int>(PagesOfOptions().size()));
            Until([&] { return GetDlgItem(FrontPage(dialog), ID_DIALLING_PAGE_TEXT) != nullptr; });
        });
}

void DrawMail(const Painter& painter, HWND owner, const DiskServer& server) {
    const std::string list = server.Files().Read("B-DB\\MAILLIST.INI");
    std::string changed = list;
    changed.replace(changed.find("Brivname: LENA"), 14, "Brivname: OTTO");
    changed.replace(changed.find("Workshop Petra"), 14, "Workshop Paula");
    server.Files().Write("B-DB\\MAILLIST.INI", changed);
    painter.Draw("mail-users", "Brivane - mail users", [&] { ConfigureMailUsers(owner, ""); });
    painter.Draw(
        "mail-enable", "Enable mail users", [&] { EnableMailUsersByDialog(owner, "MAILSTD"); },
        [](HWND dialog) {
            FocusControlOf(dialog, ID_ENABLE_LIST);
            Select(dialog, ID_ENABLE_LIST, 2);
            Key(VK_SPACE);
            Until([&] { return !Text(dialog, ID_ENABLE_ACCOUNT).empty(); });
        });
    painter.Draw("mail-enable-user", "Enable mail users", [&] { EnableMailUsersByDialog(owner, ""); });
    MailUser user{"MAILSTD", "Warehouse Olaf", "BEN", true, "201", "YES", "NO"};
    painter.Draw("mail-user", "Mail user", [&] { EditMailUserByDialog(owner, user); });
    painter.Draw("mail-replace", "Replace mail user", [&] {
        ReplaceMailUserByDialog(owner, {"CLARA", "Sales Clara"});
    });
    painter.Draw("mail-accounts", "Account names of mail users", [&] { ChooseAccountExpression(owner); });
    painter.Draw("mail-choose", "Choose a mail user", [&] { PickMailName(owner, ""); });
    server.Files().Write("B-DB\\MAILLIST.INI", list);
    constexpr AreaPageMaker kPages[] = {MakeGatewayPage};
    RunDriven([&] { ConfigureOptions(owner, kPages); },
              [&](const Windows& windows) {
                  const HWND dialog = windows.Wait("Brivane - server settings");
                  Select(dialog, ID_OPTIONS_LIST, static_cast<int>(PagesOfOptions().size()));
                  Until([&] { return GetDlgItem(FrontPage(dialog), ID_GATEWAY_SYSTEM) != nullptr; });
                  painter.DrawOpen("mail-gateway", dialog);
                  Click(FrontPage(dialog), ID_GATEWAY_CLEAR);
                  painter.DrawOpen("mail-folder", windows.Wait("Clear folders of the mail gateway"));
              });
}

HTREEITEM NextInTree(HWND tree, WPARAM which, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
}

// Selects an entry of the destinations' tree by its steps: "down so many, then into".
void ChooseInTree(HWND dialog, const std::vector<int>& steps) {
    const HWND tree = GetDlgItem(dialog, ID_PLACES_TREE);
    HTREEITEM item = NextInTree(tree, TVGN_ROOT, nullptr);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (i > 0) {
            Send(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
            item = NextInTree(tree, TVGN_CHILD, item);
        }
        for (int step = 0; step < steps[i]; ++step) item = NextInTree(tree, TVGN_NEXT, item);
    }
    Send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

void DrawDestinations(const Painter& painter, HWND owner) {
    const auto open = [&] { RunLcrEditor([&] { return EditDestinations(owner); }); };
    painter.Draw("destinations", "Destinations", open, [](HWND dialog) {
        ChooseInTree(dialog, {0, 3, 1});
        SetTextOf(dialog, ID_PLACES_NUMBER, "+44 20 7946 0018");
        Until([&] { return !Text(dialog, ID_PLACES_RESULT).empty(); });
    });
    const struct {
        const char* Name;
        std::vector<int> Steps;
        int Button;
        const char* Title;
    } kBoxes[] = {{"country", {0, 3}, ID_PLACES_EDIT, "Country"},
                  {"area", {0, 3, 3}, ID_PLACES_EDIT, "Area of United Kingdom"},
                  {"region", {1, 2}, ID_PLACES_EDIT, "Region"},
                  {"other-name", {2, 0}, ID_PLACES_EDIT, "Other name"},
                  {"place-uses", {0, 3}, ID_PLACES_WHERE_USED, "Where UK is used"},
                  {"place-delete", {0, 3, 1}, ID_PLACES_DELETE, "Where LDS is used"}};
    for (const auto& box : kBoxes)
        RunDriven(open, [&](const Windows& windows) {
            const HWND dialog = windows.Wait("Destinations", ID_PLACES_TREE);
            ChooseInTree(dialog, box.Steps);
            Click(dialog, box.Button);
            painter.DrawOpen(box.Name, windows.Wait(box.Title));
        });
    RunDriven(open, [&](const Windows& windows) {
        const HWND dialog = windows.Wait("Destinations", ID_PLACES_TREE);
        ChooseInTree(dialog, {0, 1});
        Click(dialog, ID_PLACES_EDIT);
        const HWND box = windows.Wait("Country");
        SetTextOf(box, ID_COUNTRY_ID, "FRANCE");
        Click(box, IDOK);
        painter.DrawOpen("place-rename", windows.Wait("Where FR is used"));
    });
}

void DrawBoxes(const Painter& painter) {
    painter.Draw("box-delete", FillMessage(kCaptionOfDelete), [] {
        AskFilled(kCaptionOfDelete, BoxIcon::Question,
                  FillMessage(kReallyDelete, "coversheet", "ORDER", "-", "Order to a supplier"));
    });
    painter.Draw("box-restart", FillMessage(kCaptionOfWarning), [] { ShowWarning(kRestartNeeded); });
    painter.Draw("box-unbuilt", FillMessage(kCaptionOfWarning),
                 [] { ShowWarning(kCannotConfigure, FillMessage(kAreaOfDevices)); });
    painter.Draw("box-no-help", FillMessage(kCaptionOfWarning),
                 [] { ShowWarning(kHelpNotFound, "F:\\BVSETUP.HLP", "C:\\help\\100.html"); });
}

void DrawProgress(const Painter& painter, HWND owner) {
    ProgressBox progress(owner, 20);
    progress.Advance(7, "Adding 7 of 20 users", "Wilhelmina Featherstonehaugh");
    painter.DrawOpen("progress", Windows().Wait("Brivane Setup"));
}

// Returns the exit code of the program.
int DrawPictures(const std::string& directory) {
    const DiskServer server;
    MainWindow window;
    WindowsFront front(window);
    const UseFront speaking(front);
    if (!window.Open(SW_SHOWNORMAL) || LoadServerPaths() != kDone) return 1;
    const Painter painter(directory);
    SetStatusLine("Updating file F:\\BRIVANE\\B-COVER\\MSGDIR.CTL", 1);
    SetStatusLine("The second line, with g, p and \xFC", 2);
    Painter::Begin("The program");
    painter.DrawOpen("banner", window.Handle());
    DrawMenus(painter, window.Handle());
    Painter::Begin("Coversheets and letterheads");
    DrawCatalogues(painter, window.Handle());
    DrawItems(painter, window.Handle());
    DrawFullCatalogue(painter, window.Handle(), server);
    Painter::Begin("Users and groups");
    DrawUsers(painter, window.Handle(), server);
    DrawChoosers(painter, window.Handle());
    Painter::Begin("Devices");
    DrawDevices(painter, window.Handle());
    Painter::Begin("Inward routing");
    DrawRouting(painter, window.Handle(), server);
    Painter::Begin("Server settings");
    DrawOptions(painter, window.Handle());
    Painter::Begin("Least-cost routing");
    DrawLcr(painter, window.Handle(), server);
    DrawDestinations(painter, window.Handle());
    DrawRules(painter, window.Handle(), server);
    Painter::Begin("Dialling properties");
    DrawDialling(painter, window.Handle(), server);
    Painter::Begin("Mail users and the mail gateway");
    DrawMail(painter, window.Handle(), server);
    Painter::Begin("Messages");
    DrawBoxes(painter);
    DrawProgress(painter, window.Handle());
    return 0;
}

int DrawHighContrast(const std::string& directory) {
    constexpr COLORREF kBlack = RGB(0, 0, 0);
    constexpr COLORREF kWhite = RGB(255, 255, 255);
    constexpr COLORREF kYellow = RGB(255, 255, 0);
    constexpr std::pair<INT, COLORREF> kScheme[] = {
        {COLOR_WINDOW, kBlack},        {COLOR_WINDOWTEXT, kWhite},           {COLOR_BTNFACE, kBlack},
        {COLOR_BTNTEXT, kYellow},      {COLOR_GRAYTEXT, RGB(0, 255, 0)},     {COLOR_HIGHLIGHT, RGB(0, 128, 0)},
        {COLOR_HIGHLIGHTTEXT, kWhite}, {COLOR_BTNHIGHLIGHT, kWhite},         {COLOR_BTNSHADOW, kWhite},
        {COLOR_WINDOWFRAME, kWhite},   {COLOR_ACTIVECAPTION, RGB(0, 0, 128)}};
    std::vector<INT> elements;
    std::vector<COLORREF> before;
    std::vector<COLORREF> colours;
    for (const auto& [element, colour] : kScheme) {
        elements.push_back(element);
        before.push_back(GetSysColor(element));
        colours.push_back(colour);
    }
    SetSysColors(static_cast<int>(elements.size()), elements.data(), colours.data());
    const int result = DrawPictures(directory);
    SetSysColors(static_cast<int>(elements.size()), elements.data(), before.data());
    return result;
}

} // namespace
} // namespace bv::gui

int main(int count, char** arguments) {
    if (count != 2 && count != 3) return 2;
    bv::gui::MakeDesktop();
    bv::StartCommonControls();
    bv::MainWindow::RegisterWindowClass();
    return count == 3 ? bv::gui::DrawHighContrast(arguments[1]) : bv::gui::DrawPictures(arguments[1]);
}
