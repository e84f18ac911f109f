// The pages of a user's details. group_page_dlg.cpp has those of a group.
#include "resources/ids.h"
#include "users/permissions.h"
#include "users/print_words.h"
#include "users/user_dialog_dlg.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

// Takes a value that controls without a row have made. Returns the control, after the fault's message, or 0.
int TakeValue(UserDialog& context, std::string_view key, const std::string& text, int control) {
    if (text == context.Fields.TextOf(key)) return 0;
    const std::optional<std::string> fault = context.Fields.Enter(key, text);
    if (fault) ShowError("%s", *fault);
    return fault ? control : 0;
}

bool IsTicked(HWND page, int control) { return IsDlgButtonChecked(page, control) == BST_CHECKED; }

void Tick(HWND page, int control, bool ticked) { CheckDlgButton(page, control, ticked ? BST_CHECKED : BST_UNCHECKED); }

// --- General ---

constexpr FieldControl kFullname[] = {{ID_USER_FULLNAME, "Fullname"}};
constexpr FieldControl kNetworkNames[] = {
    {ID_USER_USERNAME, "Username"}, {ID_USER_NETWARE, "Netware"}, {ID_USER_LANMANAGER, "LanManager"}};

constexpr FieldControl kGeneralTips[] = {{ID_USER_NAME, "Name"},       {ID_USER_FULLNAME, "Fullname"},
                                         {ID_USER_GROUP, "Group"},     {ID_USER_USERNAME, "Username"},
                                         {ID_USER_NETWARE, "Netware"}, {ID_USER_LANMANAGER, "LanManager"}};

bool HasSameNames(const UserDialog& context) {
    const std::string name = context.Fields.TextOf("Username");
    return context.Fields.TextOf("Netware") == name && context.Fields.TextOf("LanManager") == name;
}

void FollowUsername(HWND page, UserDialog&) {
    if (!IsTicked(page, ID_USER_SAME_NAME)) return;
    wchar_t name[128] = L"";
    GetDlgItemTextW(page, ID_USER_USERNAME, name, 128);
    for (const int control : {ID_USER_NETWARE, ID_USER_LANMANAGER}) SetDlgItemTextW(page, control, name);
}

void ChooseSameNames(HWND page, UserDialog& context) {
    for (const int control : {ID_USER_NETWARE, ID_USER_LANMANAGER})
        EnableControl(page, control, !IsTicked(page, ID_USER_SAME_NAME));
    FollowUsername(page, context);
}

void FillGeneral(HWND page, UserDialog& context) {
    SendDlgItemMessageA(page, ID_USER_NAME, EM_LIMITTEXT, RecordName::kLimit, 0);
    SetText(page, ID_USER_NAME, context.Entry.Name());
    if (!context.Entry.IsNew()) SendDlgItemMessageA(page, ID_USER_NAME, EM_SETREADONLY, TRUE, 0);
    ShowFields(page, kFullname, context.Fields);
    ShowFields(page, kNetworkNames, context.Fields);
    AddTooltips(page, kGeneralTips, context.Fields);
    context.Group.Begin(page, ID_USER_GROUP, ID_USER_CHOOSE_GROUP, kGroupNames, FillMessage(kNoGroupWords));
    context.Group.Put(context.Fields.TextOf("Group"));
    Tick(page, ID_USER_SAME_NAME, HasSameNames(context));
    ChooseSameNames(page, context);
}

int TakeGeneral(HWND page, UserDialog& context) {
    if (context.Entry.IsNew()) {
        std::string name;
        if (!TakeText(page, ID_USER_NAME, name)) return ID_USER_NAME;
        context.Entry.SetName(name);
    }
    if (const int fault = TakeFields(page, kFullname, context.Fields)) return fault;
    std::string group;
    if (!context.Group.Take(group)) return ID_USER_GROUP;
    if (const int fault = TakeValue(context, "Group", group, ID_USER_GROUP)) return fault;
    return TakeFields(page, kNetworkNames, context.Fields);
}

constexpr DialogCommand<UserDialog> kGeneralCommands[] = {
    {ID_USER_SAME_NAME, BN_CLICKED, ChooseSameNames},
    {ID_USER_USERNAME, EN_CHANGE, FollowUsername},
};
constexpr DialogPlan<UserDialog> kGeneral{HELP_USER_GENERAL, FillGeneral, kGeneralCommands};

// --- Permissions ---

struct PermissionRow {
    std::string_view Key; // empty: group administrator, which is only shown
    const char* Text;
    PermissionFlag Flag;
};
constexpr PermissionRow kPermissionRows[] = {
    {"NetworkEdit", "may edit messages over the network", kNetworkEdit},
    {"Urgent", "may send urgent messages", kUrgent},
    {"Admin", "is an administrator", kAdmin},
    {"RushToTop", "may move messages to the top of the queue", kRushToTop},
    {"PrivateEdit", "may edit private messages", kPrivateEdit},
    {"SubmitAny", "may submit on behalf of any user", kSubmitAny},
    {"", "group administrator", kGroupAdmin},
};

std::uint32_t TicksOf(std::uint8_t flags) {
    std::uint32_t ticks = 0;
    for (std::size_t i = 0; i < std::size(kPermissionRows); ++i)
        if ((flags & kPermissionRows[i].Flag) != 0) ticks |= 1U << i;
    return ticks;
}

void FillPermissions(HWND page, UserDialog& context) {
    std::vector<CheckList::Row> rows;
    for (const PermissionRow& row : kPermissionRows)
        rows.push_back(
            {row.Text, row.Key.empty() ? "GroupAdmin (only shown)" : std::string(row.Key), row.Key.empty(),
             row.Key.empty() ? std::string() : FormatText("%s: %s", row.Key, context.Fields.Describe(row.Key))});
    constexpr int kWhatUnits = 172;
    context.Permissions.Begin(page, ID_PERMISSIONS, "Permission", "Key", kWhatUnits, rows);
    context.Permissions.SetMask(TicksOf(context.Entry.After().Permissions.Flags));
    SetText(page, ID_PERMISSIONS_HINT, FillMessage(kGroupAdministratorStays));
    EnableControl(page, ID_PERMISSIONS_DEFAULT, !IsDefaultName(context.Entry.Name()));
}

int TakePermissions(HWND, UserDialog& context) {
    const std::uint32_t ticks = context.Permissions.Mask();
    for (std::size_t i = 0; i < std::size(kPermissionRows); ++i) {
        const PermissionRow& row = kPermissionRows[i];
        if (row.Key.empty()) continue;
        const std::string text = ValueCodec<bool>::Text((ticks >> i & 1U) != 0);
        if (const int fault = TakeValue(context, row.Key, text, ID_PERMISSIONS)) return fault;
    }
    return 0;
}

void TickAsDefault(HWND, UserDialog& context) {
    UserRecord defaults;
    ReadUserRecord(std::nullopt, defaults, RecordKind::User);
    constexpr std::uint32_t kShownOnly = 1U << (std::size(kPermissionRows) - 1);
    const std::uint32_t kept = context.Permissions.Mask() & kShownOnly;
    context.Permissions.SetMask((TicksOf(defaults.Permissions.Flags) & ~kShownOnly) | kept);
}

constexpr DialogCommand<UserDialog> kPermissionCommands[] = {{ID_PERMISSIONS_DEFAULT, BN_CLICKED, TickAsDefault}};
constexpr DialogPlan<UserDialog> kPermissions{HELP_USER_PERMISSIONS, FillPermissions, kPermissionCommands};

// --- Send times ---

void FillTimes(HWND page, UserDialog& context) {
    context.Times.Begin(page, ID_TIMES, context.Fields.TextOf("SendTime"));
    std::vector<FieldControl> tips;
    for (int control = kTimeAny; control <= kTimeClearDays; ++control) tips.push_back({ID_TIMES + control, "SendTime"});
    AddTooltips(page, tips, context.Fields);
    context.TimesShown = context.Times.Text();
}

int TakeTimes(HWND, UserDialog& context) {
    const std::string text = context.Times.Text();
    if (text == context.TimesShown) return 0; // however the file has put it
    const int fault = TakeValue(context, "SendTime", text, context.Times.Fault());
    if (fault == 0) context.TimesShown = text;
    return fault;
}

constexpr DialogPlan<UserDialog> kTimes{HELP_USER_TIMES, FillTimes, {}};

// --- Dialling ---

constexpr int kClassesOfAWord = 9;
constexpr std::uint32_t kLocal = 1;
constexpr std::uint32_t kNationals = 0x1FFU << 1;
constexpr std::uint32_t kInternationals = 0x1FFU << (1 + kClassesOfAWord);

std::string DialText(std::uint32_t mask) {
    UserPermissions permissions;
    permissions.DialMask = mask;
    std::string text;
    FormatDialPermissions(text, kMaxLine, permissions);
    return text;
}

void ShowDialLine(HWND page, UserDialog& context) {
    const std::uint32_t mask = context.DialClasses.Mask();
    std::string line = "Dial: " + DialText(mask);
    if (mask == 0) line = FillMessage(kNoNumberMayBeDialled);
    if (mask == kEveryDialClass) line = FillMessage(kAnyNumber);
    SetText(page, ID_DIAL_LINE, line);
}

void FillDial(HWND page, UserDialog& context) {
    std::vector<CheckList::Row> rows{{"Local", ""}};
    for (const char* word : {"National ", "International "})
        for (int i = 1; i <= kClassesOfAWord; ++i) rows.push_back({word + std::to_string(i), ""});
    constexpr int kWhatUnits = 100;
    context.DialClasses.Begin(page, ID_DIAL_CLASSES, "Numbers", "", kWhatUnits, rows);
    context.DialClasses.SetMask(context.Entry.After().Permissions.DialMask & kEveryDialClass);
    ShowDialLine(page, context);
    constexpr FieldControl kTips[] = {{ID_DIAL_CLASSES, "Dial"}};
    AddTooltips(page, kTips, context.Fields);
}

int TakeDial(HWND, UserDialog& context) {
    const std::uint32_t mask = context.DialClasses.Mask();
    if (mask == (context.Entry.After().Permissions.DialMask & kEveryDialClass)) return 0;
    return TakeValue(context, "Dial", DialText(mask), ID_DIAL_CLASSES);
}

template <std::uint32_t kMask>
void TickMore(HWND, UserDialog& context) {
    context.DialClasses.SetMask(context.DialClasses.Mask() | kMask);
}
template <std::uint32_t kMask>
void TickThese(HWND, UserDialog& context) {
    context.DialClasses.SetMask(kMask);
}

constexpr DialogCommand<UserDialog> kDialCommands[] = {
    {ID_DIAL_CLASSES, kListSelected, ShowDialLine},
    {ID_DIAL_ALL, BN_CLICKED, TickThese<kEveryDialClass>},
    {ID_DIAL_NONE, BN_CLICKED, TickThese<0>},
    {ID_DIAL_NATIONAL, BN_CLICKED, TickMore<kNationals>},
    {ID_DIAL_INTERNATIONAL, BN_CLICKED, TickMore<kInternationals>},
};
constexpr DialogPlan<UserDialog> kDial{HELP_USER_DIAL, FillDial, kDialCommands};
static_assert((kLocal | kNationals | kInternationals) == kEveryDialClass);

// --- Printing ---

using SquashWords = std::span<const std::string_view>;
constexpr SquashWords kAllSquash = ChoiceWords<SquashMode>::kWords;
constexpr std::string_view kGroupSquash[] = {"NO", "YES"};

constexpr PrinterSlot kUserSlots[] = {
    {"Sent", "PrintSentDevice", "PrintSentBin", "PrintSentPaper", "PrintSentSquash", kAllSquash},
    {"Sent, 2nd", "PrintSentDevice2", "PrintSentBin2", "PrintSentPaper2", "PrintSentSquash2", kAllSquash},
    {"Received", "PrintRecdDevice", "PrintRecdBin", "PrintRecdPaper", "PrintRecdSquash", kAllSquash},
    {"Received, 2nd", "PrintRecdDevice2", "PrintRecdBin2", "PrintRecdPaper2", "PrintRecdSquash2", kAllSquash},
};
constexpr PrinterSlot kGroupSlots[] = {
    {"Received", "PrintRecdDevice", "PrintRecdBin", "PrintRecdPaper", "PrintRecdSquash", kGroupSquash},
    {"Received, 2nd", "PrintRecdDevice2", "PrintRecdBin2", "PrintRecdPaper2", "PrintRecdSquash2", kAllSquash},
};

// The words of a print option, or none of them where the server's settings hold.
struct PrintOption {
    std::string_view Key;
    int Default; // the check box
    FieldControl Words;
};
constexpr std::string_view kSentWords[] = {kPrintStatus, kPrintMessage};
constexpr std::string_view kRecdWords[] = {kPrintStatus, kPrintMessage, kPrintDelete};
constexpr PrintOption kSentOption{
    "PrintSentOptions", ID_PRINT_SENT_DEFAULT, {ID_PRINT_SENT_WORDS, "PrintSentOptions", FieldForm::Words, kSentWords}};
constexpr PrintOption kRecdOption{
    "PrintRecdOptions", ID_PRINT_RECD_DEFAULT, {ID_PRINT_RECD_WORDS, "PrintRecdOptions", FieldForm::Words, kRecdWords}};
constexpr std::string_view kAsServer = "DEFAULT";

bool IsGroup(const UserDialog& context) { return context.Entry.Kind() == RecordKind::Group; }

void EnableWords(HWND page, const PrintOption& option) {
    for (std::size_t i = 0; i < option.Words.Values.size(); ++i)
        EnableControl(page, option.Words.Control + static_cast<int>(i), !IsTicked(page, option.Default));
}

void ShowOption(HWND page, const UserDialog& context, const PrintOption& option) {
    Tick(page, option.Default, context.Fields.TextOf(option.Key) == kAsServer);
    ShowFields(page, {&option.Words, 1}, context.Fields);
    const FieldControl tips[] = {{option.Default, option.Key}, option.Words};
    AddTooltips(page, tips, context.Fields);
    EnableWords(page, option);
}

int TakeOption(HWND page, UserDialog& context, const PrintOption& option) {
    if (IsTicked(page, option.Default)) return TakeValue(context, option.Key, std::string(kAsServer), option.Default);
    return TakeFields(page, {&option.Words, 1}, context.Fields);
}

void HideSentOptions(HWND page) {
    for (int control = ID_PRINT_SENT_DEFAULT; control < ID_PRINT_RECD_DEFAULT; ++control)
        ShowWindow(GetDlgItem(page, control), SW_HIDE);
}

void FillPrint(HWND page, UserDialog& context) {
    const std::span<const PrinterSlot> slots =
        IsGroup(context) ? std::span<const PrinterSlot>(kGroupSlots) : kUserSlots;
    context.Printers.Begin(page, slots, context.Fields, FillMessage(kAsServerSettings));
    ShowOption(page, context, kRecdOption);
    if (IsGroup(context)) return HideSentOptions(page);
    ShowOption(page, context, kSentOption);
}

int TakePrint(HWND page, UserDialog& context) {
    if (const int fault = context.Printers.Take()) return fault;
    if (!IsGroup(context))
        if (const int fault = TakeOption(page, context, kSentOption)) return fault;
    return TakeOption(page, context, kRecdOption);
}

// To look at another printer is no change.
void SelectSlot(HWND page, UserDialog& context) {
    if (TakePrint(page, context) == 0 && context.Entry.After() == context.Entry.Before())
        context.Pages.NoteAsFilled(page);
}
void ChooseSent(HWND page, UserDialog&) { EnableWords(page, kSentOption); }
void ChooseRecd(HWND page, UserDialog&) { EnableWords(page, kRecdOption); }

constexpr DialogCommand<UserDialog> kPrintCommands[] = {
    {ID_PRINT_SLOTS, kListSelected, SelectSlot},
    {ID_PRINT_SENT_DEFAULT, BN_CLICKED, ChooseSent},
    {ID_PRINT_RECD_DEFAULT, BN_CLICKED, ChooseRecd},
};
constexpr DialogPlan<UserDialog> kPrint{HELP_USER_PRINT, FillPrint, kPrintCommands};

// --- E-mail ---

constexpr FieldControl kMailFields[] = {{ID_MAIL_INBOX, "MailInbox", FieldForm::Check},
                                        {ID_MAIL_GATEWAY, "MailGateway", FieldForm::Check}};
constexpr FieldControl kMailName[] = {{ID_MAIL_NAME, "MailName"}};
constexpr FieldControl kMailTips[] = {{ID_MAIL_INBOX, "MailInbox"},
                                      {ID_MAIL_GATEWAY, "MailGateway"},
                                      {ID_MAIL_PROFILE, "MailName"},
                                      {ID_MAIL_NAME, "MailName"}};
constexpr const char* kProfile = "*";

bool IsProfileName(std::string_view name) { return name.starts_with('(') || name.starts_with('*'); }

bool UsesMail(HWND page) { return IsTicked(page, ID_MAIL_INBOX) || IsTicked(page, ID_MAIL_GATEWAY); }

// What the file does not keep, or how many mail users send as this user.
std::string MailHint(bool isNameLost, const UserDialog& context) {
    if (isNameLost) return FillMessage(kMailNameNotKept);
    if (!context.MailUsers || *context.MailUsers == 0) return {};
    return FillMessage(kMailUsersUnderName, *context.MailUsers);
}

void EnableMail(HWND page, UserDialog& context) {
    const bool uses = UsesMail(page);
    EnableControl(page, ID_MAIL_PROFILE, uses);
    EnableControl(page, ID_MAIL_NAME, uses && !IsTicked(page, ID_MAIL_PROFILE));
    const bool canLookUp = context.Services != nullptr && context.Services->PickMailName != nullptr;
    EnableControl(page, ID_MAIL_LOOK_UP, canLookUp && uses && !IsTicked(page, ID_MAIL_PROFILE));
    const bool goes = !uses && !GetText(page, ID_MAIL_NAME).empty();
    SetText(page, ID_MAIL_HINT, MailHint(goes, context));
}

void LookUpMailName(HWND page, UserDialog& context) {
    const std::string name = context.Services->PickMailName(GetParent(page), {});
    if (!name.empty()) SetText(page, ID_MAIL_NAME, name);
    FocusControl(page, ID_MAIL_NAME);
}

void FillMail(HWND page, UserDialog& context) {
    ShowFields(page, kMailFields, context.Fields);
    ShowFields(page, kMailName, context.Fields);
    AddTooltips(page, kMailTips, context.Fields);
    Tick(page, ID_MAIL_PROFILE, IsProfileName(context.Fields.TextOf("MailName")));
    const bool canCount = context.Services != nullptr && context.Services->CountMailUsers != nullptr;
    if (canCount && !context.Entry.IsNew()) context.MailUsers = context.Services->CountMailUsers(context.Entry.Name());
    EnableMail(page, context);
}

int TakeMail(HWND page, UserDialog& context) {
    if (const int fault = TakeFields(page, kMailFields, context.Fields)) return fault;
    if (!UsesMail(page)) return TakeValue(context, "MailName", {}, ID_MAIL_NAME);
    if (!IsTicked(page, ID_MAIL_PROFILE)) return TakeFields(page, kMailName, context.Fields);
    const bool isOne = IsProfileName(context.Fields.TextOf("MailName"));
    return isOne ? 0 : TakeValue(context, "MailName", kProfile, ID_MAIL_PROFILE);
}

constexpr DialogCommand<UserDialog> kMailCommands[] = {
    {ID_MAIL_INBOX, BN_CLICKED, EnableMail},
    {ID_MAIL_GATEWAY, BN_CLICKED, EnableMail},
    {ID_MAIL_PROFILE, BN_CLICKED, EnableMail},
    {ID_MAIL_LOOK_UP, BN_CLICKED, LookUpMailName},
};
constexpr DialogPlan<UserDialog> kMail{HELP_USER_MAIL, FillMail, kMailCommands};

Page UserPage(const char* name, const char* title, DLGPROC procedure, int (*take)(HWND, void*)) {
    return {name, title, procedure, take};
}

} // namespace

std::vector<Page> PagesOf(const UserDialog& context) {
    const Page print = UserPage("UserPrintBox", "Printing", UserPrintDlgBox, TakePage<UserDialog, TakePrint>);
    const bool isDefault = IsDefaultName(context.Entry.Name()) && !context.Entry.IsNew();
    if (IsGroup(context)) return isDefault ? std::vector<Page>{print} : std::vector<Page>{GroupGeneralPage(), print};
    std::vector<Page> pages = {
        UserPage("UserGeneralBox", "General", UserGeneralDlgBox, TakePage<UserDialog, TakeGeneral>),
        UserPage("UserPermissionsBox", "Permissions", UserPermissionsDlgBox, TakePage<UserDialog, TakePermissions>),
        UserPage("UserTimesBox", "Send times", UserTimesDlgBox, TakePage<UserDialog, TakeTimes>),
        UserPage("UserDialBox", "Dialling", UserDialDlgBox, TakePage<UserDialog, TakeDial>),
        print,
        UserPage("UserMailBox", "E-mail", UserMailDlgBox, TakePage<UserDialog, TakeMail>),
    };
    if (isDefault) pages.erase(pages.begin());
    return pages;
}

INT_PTR CALLBACK UserGeneralDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kGeneral, {page, message, wParam, lParam});
}
INT_PTR CALLBACK UserPermissionsDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPermissions, {page, message, wParam, lParam});
}
INT_PTR CALLBACK UserTimesDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kTimes, {page, message, wParam, lParam});
}
INT_PTR CALLBACK UserDialDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kDial, {page, message, wParam, lParam});
}
INT_PTR CALLBACK UserPrintDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPrint, {page, message, wParam, lParam});
}
INT_PTR CALLBACK UserMailDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kMail, {page, message, wParam, lParam});
}

} // namespace bv
