#include "mailgw/mail_alias_dlg.h"

#include <algorithm>
#include <iterator>

#include "dialogs/list_view_dlg.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_messages.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr const char* kSampleName = "Smith John";
constexpr const char* kNothing = "-";
constexpr int kNameLimit = 100;

constexpr ListColumn kColumns[] = {{"Mail name", 170}, {"Account name", 100}};
constexpr ListPlan kList{.List = ID_ALIAS_EXAMPLES, .Columns = kColumns, .IsSorted = false};

// The names of the mail system with the accounts that they would get.
class Examples : public RowModel {
  public:
    [[nodiscard]] std::size_t Count() const override { return people_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return std::size(kColumns); }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override {
        return column == 0 ? people_[row].Name : accounts_[row];
    }

    bool Read() { return ReadMailDirectory(people_); }

    void Make(const std::string& expression) {
        accounts_.clear();
        AccountName account;
        for (const MailPerson& person : people_)
            accounts_.push_back(MakeMailAccountName(person.Name, expression, account) ? account.String() : kNothing);
        const std::vector<bool> clashes = ClashingAccountNames(accounts_, {});
        notUnique_ = static_cast<std::size_t>(std::ranges::count(clashes, true));
    }
    [[nodiscard]] std::size_t NotUnique() const { return notUnique_; }

  private:
    std::vector<MailPerson> people_;
    std::vector<std::string> accounts_;
    std::size_t notUnique_ = 0;
};

struct AliasBox {
    std::string Before;
    Examples Names{};
    ListView List{Names, kList};
};

constexpr std::pair<int, std::string_view> kOffered[] = {{ID_ALIAS_INITIAL, kDefaultAccountExpression},
                                                         {ID_ALIAS_FIRST, "%First%1Last"}};

// What comes of the expression, while it is typed.
void TryExpression(HWND dialog, AliasBox&) {
    const std::string expression = GetText(dialog, ID_ALIAS_EXPRESSION);
    AccountName account;
    const bool isMade = MakeMailAccountName(GetText(dialog, ID_ALIAS_TRY), expression, account);
    SetText(dialog, ID_ALIAS_NAME, isMade ? account.String() : kNothing);
}

void ChangeExpression(HWND dialog, AliasBox& context) {
    TryExpression(dialog, context);
    context.Names.Make(GetText(dialog, ID_ALIAS_EXPRESSION));
    context.List.ShowChanged();
    SetText(dialog, ID_ALIAS_COUNT, FillMessage(kNamesNotUnique, context.Names.NotUnique(), context.Names.Count()));
}

void ChooseExpression(HWND dialog, AliasBox& context) {
    const bool isOther = IsDlgButtonChecked(dialog, ID_ALIAS_OTHER) == BST_CHECKED;
    EnableControl(dialog, ID_ALIAS_EXPRESSION, isOther);
    for (const auto& [button, expression] : kOffered)
        if (IsDlgButtonChecked(dialog, button) == BST_CHECKED)
            SetText(dialog, ID_ALIAS_EXPRESSION, std::string(expression));
    ChangeExpression(dialog, context);
}

void FillAlias(HWND dialog, AliasBox& context) {
    const WaitCursor wait;
    PutField(dialog, ID_ALIAS_EXPRESSION, AccountExpression(context.Before));
    SendDlgItemMessageA(dialog, ID_ALIAS_TRY, EM_LIMITTEXT, kNameLimit, 0);
    SetText(dialog, ID_ALIAS_TRY, kSampleName);
    int checked = ID_ALIAS_OTHER;
    for (const auto& [button, expression] : kOffered)
        if (context.Before == expression) checked = button;
    CheckRadioButton(dialog, ID_ALIAS_INITIAL, ID_ALIAS_OTHER, checked);
    context.List.Begin(dialog);
    context.List.Refill([&] {
        const bool isRead = context.Names.Read();
        context.Names.Make(context.Before);
        return isRead;
    });
    ChooseExpression(dialog, context);
    FocusControl(dialog, checked);
}

void TakeAlias(HWND dialog, AliasBox& context) {
    std::string expression;
    if (!TakeText(dialog, ID_ALIAS_EXPRESSION, expression)) return;
    if (expression == context.Before) return EndWithCancel(dialog, context);
    const WaitCursor wait;
    if (WriteAccountExpression(expression))
        EndDialog(dialog, IDOK);
    else
        FocusControl(dialog, ID_ALIAS_EXPRESSION);
}

constexpr DialogCommand<AliasBox> kCommands[] = {
    {ID_ALIAS_INITIAL, BN_CLICKED, ChooseExpression},
    {ID_ALIAS_FIRST, BN_CLICKED, ChooseExpression},
    {ID_ALIAS_OTHER, BN_CLICKED, ChooseExpression},
    {ID_ALIAS_EXPRESSION, EN_CHANGE, ChangeExpression},
    {ID_ALIAS_TRY, EN_CHANGE, TryExpression},
    {IDOK, BN_CLICKED, TakeAlias},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr DialogPlan<AliasBox> kPlan{HELP_ACCOUNT_NAMES, FillAlias, kCommands};

} // namespace

bool ChooseAccountExpression(HWND owner) {
    const std::optional<AccountExpression> expression = ReadAccountExpression();
    if (!expression) return false;
    AliasBox context{.Before = expression->String()};
    return OpenDialog("MailUserAliasBox", owner, MailUserAliasDlgBox, &context) == IDOK;
}

INT_PTR CALLBACK MailUserAliasDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
