#include "mailgw/gateway_page_dlg.h"

#include "dialogs/password_field_dlg.h"
#include "mailgw/mail_access.h"
#include "mailgw/mail_alias_dlg.h"
#include "mailgw/mail_login.h"
#include "mailgw/mail_users_dlg.h"
#include "mailgw/mail_wait_dlg.h"
#include "options/option_values.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kSystem = "QUEUEMAN/MailType";
constexpr std::string_view kName = "QUEUEMAN/MailLoginName";
constexpr std::string_view kPassword = "QUEUEMAN/MailLoginParams";
constexpr std::string_view kPermanent = "QUEUEMAN/MailPermanentLogin";

constexpr const char* kSystemTitles[] = {"(none)", "MSMAIL", "EXCHANGE", "CCMAIL", "MAPI", "GATEWAY"};
static_assert(std::size(kSystemTitles) == std::size(ChoiceWords<MailSystem>::kWords));
constexpr FieldControl kFields[] = {
    {ID_GATEWAY_SYSTEM, kSystem, FieldForm::Choice, ChoiceWords<MailSystem>::kWords, kSystemTitles},
    {ID_GATEWAY_NAME, kName},
    {ID_GATEWAY_PERMANENT, kPermanent, FieldForm::Check},
};
constexpr FieldControl kTips[] = {{ID_GATEWAY_SYSTEM, kSystem},
                                  {ID_GATEWAY_NAME, kName},
                                  {ID_GATEWAY_PASSWORD, kPassword},
                                  {ID_GATEWAY_PERMANENT, kPermanent}};

class GatewayPage : public AreaPage {
  public:
    explicit GatewayPage(FieldRecord& options) : Options(options) {}

    [[nodiscard]] OptionPage Place() const override { return OptionPage::MailGateway; }
    [[nodiscard]] Page What() override;
    [[nodiscard]] int ControlOf(std::string_view path) const override {
        for (const FieldControl& field : kTips)
            if (field.Key == path) return field.Control;
        return 0;
    }

    FieldRecord& Options;
    PasswordField Password;
};

// --- The box that clears folders ---

struct FolderBox {
    MailLogin Login;
};

constexpr int kFolders = 3;
constexpr int kSubjectLimit = 255;

void FollowSubject(HWND dialog, FolderBox&) {
    EnableControl(dialog, IDOK, !GetText(dialog, ID_FOLDER_SUBJECT).empty());
}

void FillFolder(HWND dialog, FolderBox& context) {
    for (int folder = 0; folder < kFolders; ++folder)
        SendDlgItemMessageA(dialog, ID_FOLDER, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(std::string(MailFolderName(folder)).c_str()));
    SendDlgItemMessageA(dialog, ID_FOLDER, CB_SETCURSEL, 0, 0);
    SendDlgItemMessageA(dialog, ID_FOLDER_SUBJECT, EM_LIMITTEXT, kSubjectLimit, 0);
    FollowSubject(dialog, context);
}

void TakeFolder(HWND dialog, FolderBox& context) {
    std::string subject;
    if (!TakeText(dialog, ID_FOLDER_SUBJECT, subject)) return;
    const auto folder = static_cast<int>(SendDlgItemMessageA(dialog, ID_FOLDER, CB_GETCURSEL, 0, 0));
    const WaitCursor wait;
    MailWaitBox box(dialog);
    if (ClearMailFolder(context.Login, folder, subject, box))
        EndDialog(dialog, IDOK);
    else
        FocusControl(dialog, ID_FOLDER_SUBJECT);
}

constexpr DialogCommand<FolderBox> kFolderCommands[] = {{ID_FOLDER_SUBJECT, EN_CHANGE, FollowSubject},
                                                        {IDOK, BN_CLICKED, TakeFolder},
                                                        {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<FolderBox> kFolderPlan{HELP_MAIL_FOLDER, FillFolder, kFolderCommands};

// --- The page ---

std::string ChosenSystem(HWND page) {
    const LRESULT entry = SendDlgItemMessageA(page, ID_GATEWAY_SYSTEM, CB_GETCURSEL, 0, 0);
    return entry < 0 ? std::string() : std::string(ChoiceWords<MailSystem>::kWords[entry]);
}

void ChooseSystem(HWND page, GatewayPage&) {
    const WaitCursor wait;
    const std::string system = ChosenSystem(page);
    for (const int control :
         {ID_GATEWAY_NAME, ID_GATEWAY_PASSWORD, ID_GATEWAY_PERMANENT, ID_GATEWAY_TEST, ID_GATEWAY_CLEAR})
        EnableControl(page, control, !system.empty());
    SetText(page, ID_GATEWAY_LIBRARY, DescribeMailLibrary(system));
}

void FillGateway(HWND page, GatewayPage& context) {
    ShowFields(page, kFields, context.Options);
    AddTooltips(page, kTips, context.Options);
    context.Password.Begin(page, ID_GATEWAY_PASSWORD, context.Options.TextOf(kPassword));
    SetText(page, ID_GATEWAY_FACTS, DescribeGateway(context.Options.TextOf("OPTIONS/MailGatewayV6")));
    ChooseSystem(page, context);
}

int TakeGateway(HWND page, GatewayPage& context) {
    if (const int fault = TakeFields(page, kFields, context.Options)) return fault;
    std::string stored;
    if (!context.Password.Take(stored)) return ID_GATEWAY_PASSWORD;
    if (stored == context.Options.TextOf(kPassword)) return 0;
    const std::optional<std::string> fault = context.Options.Enter(kPassword, stored);
    if (fault) ShowError("%s", *fault);
    return fault ? ID_GATEWAY_PASSWORD : 0;
}

// The log-in as the page has it now; none after a message.
std::optional<MailLogin> EnteredLogin(HWND page, GatewayPage& context) {
    MailLogin login{ChosenSystem(page), {}, {{}, true}};
    if (!TakeText(page, ID_GATEWAY_NAME, login.Name) || !context.Password.Take(login.Password.Text)) return {};
    return login;
}

void TestLogin(HWND page, GatewayPage& context) {
    const std::optional<MailLogin> login = EnteredLogin(page, context);
    if (!login) return;
    const WaitCursor wait;
    MailWaitBox box(GetAncestor(page, GA_ROOT));
    TestMailLogin(*login, box);
}

void ClearFolders(HWND page, GatewayPage& context) {
    const std::optional<MailLogin> login = EnteredLogin(page, context);
    if (!login) return;
    FolderBox box{*login};
    OpenDialog("MailFolderBox", GetParent(page), MailFolderDlgBox, &box);
}

void OpenAccounts(HWND page, GatewayPage&) { ChooseAccountExpression(GetParent(page)); }
void OpenUsers(HWND page, GatewayPage&) { ConfigureMailUsers(GetParent(page), ""); }

constexpr DialogCommand<GatewayPage> kCommands[] = {
    {ID_GATEWAY_SYSTEM, CBN_SELCHANGE, ChooseSystem}, {ID_GATEWAY_TEST, BN_CLICKED, TestLogin},
    {ID_GATEWAY_CLEAR, BN_CLICKED, ClearFolders},     {ID_GATEWAY_ACCOUNTS, BN_CLICKED, OpenAccounts},
    {ID_GATEWAY_USERS, BN_CLICKED, OpenUsers},
};
constexpr DialogPlan<GatewayPage> kPlan{HELP_MAIL_GATEWAY, FillGateway, kCommands};

Page GatewayPage::What() {
    return {"MailGatewayBox",  TitleOf(OptionPage::MailGateway),
            MailGatewayDlgBox, TakePage<GatewayPage, TakeGateway>,
            "PageMail",        this};
}

} // namespace

std::unique_ptr<AreaPage> MakeGatewayPage(FieldRecord& options) { return std::make_unique<GatewayPage>(options); }

INT_PTR CALLBACK MailGatewayDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}
INT_PTR CALLBACK MailFolderDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kFolderPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
