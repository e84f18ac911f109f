#include "dialogs/name_field_dlg.h"

#include <optional>

#include "dialogs/list_view_dlg.h"
#include "platform/ascii.h"
#include "resources/ids.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kBeforeFullname = "  -  ";
constexpr std::size_t kMostListed = 500; // more are in the dialog behind the button
constexpr UINT kShortenName = WM_APP + 1;

UserListView ViewOf(NameKinds kinds) {
    UserListView view;
    view.Which = (kinds & kUserNames) != 0 ? UserSelection::AllUsers : UserSelection::None;
    view.IncludeGroups = (kinds & kGroupNames) != 0;
    view.Format = UserListFormat::NameAndFullname;
    return view;
}

constexpr ListColumn kColumns[] = {{"Name", 50}, {"Full name", 150}, {"Group", 50}};
constexpr ListPlan kList{.List = ID_CHOOSE_LIST,
                         .Columns = kColumns,
                         .Filter = ID_CHOOSE_FILTER,
                         .Count = ID_CHOOSE_COUNT,
                         .DefaultButton = IDOK};

struct ChooseDialog {
    NameKinds Kinds;
    bool Several;
    RowTable Rows{};
    ListView List{Rows, kList};
    std::vector<std::string> Names{};
};

bool ReadNames(ChooseDialog& context) {
    context.Rows.Begin(std::size(kColumns));
    UserListView view = ViewOf(context.Kinds);
    view.WithGroup = true;
    return VisitUserRows(view, [&](const UserRow& row) {
        for (const std::string_view text : {row.Name, row.Fullname, row.Group}) context.Rows.Add(text);
    });
}

void FillChoice(HWND dialog, ChooseDialog& context) {
    const WaitCursor wait;
    const auto title = context.Kinds == kGroupNames  ? kChooseGroup
                       : context.Kinds == kUserNames ? kChooseUser
                                                     : kChooseUserOrGroup;
    SetWindowTextA(dialog, FillMessage(title).c_str());
    const HWND list = GetDlgItem(dialog, ID_CHOOSE_LIST);
    if (!context.Several) SetWindowLongA(list, GWL_STYLE, GetWindowLongA(list, GWL_STYLE) | LVS_SINGLESEL);
    context.List.Begin(dialog);
    context.List.Refill([&] { return ReadNames(context); });
    FocusControl(dialog, ID_CHOOSE_FILTER);
}

void EnableOk(HWND dialog, ChooseDialog& context) { EnableControl(dialog, IDOK, context.List.CountSelected() > 0); }

void TakeChoice(HWND dialog, ChooseDialog& context) {
    context.Names = context.List.SelectedNames();
    if (!context.Names.empty()) EndDialog(dialog, IDOK);
}

void ReadAgain(HWND, ChooseDialog& context) {
    context.List.Refill([&] { return ReadNames(context); });
}

constexpr DialogCommand<ChooseDialog> kCommands[] = {
    {ID_CHOOSE_LIST, kListSelected, EnableOk}, {ID_CHOOSE_LIST, kListOpen, TakeChoice},
    {ID_CHOOSE_LIST, kListReload, ReadAgain},  {IDOK, BN_CLICKED, TakeChoice},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_CHOOSE_FILTER, kGrowsAcross},
    {ID_CHOOSE_LIST, kGrowsBoth},
    {ID_CHOOSE_COUNT, kMovesDown | kGrowsAcross},
    {IDOK, kMovesBoth},
    {IDCANCEL, kMovesBoth},
    {ID_HELP_BUTTON, kMovesBoth},
};
constexpr DialogPlan<ChooseDialog> kPlan{HELP_SELECT_USER, FillChoice, kCommands, kAnchors};

} // namespace

void NameField::Begin(HWND dialog, int combo, int button, NameKinds kinds, const std::string& noName) {
    dialog_ = dialog;
    combo_ = combo;
    button_ = button;
    kinds_ = kinds;
    noName_ = noName;
    SendDlgItemMessageA(dialog, combo, CB_LIMITTEXT, RecordName::kLimit + kBeforeFullname.size(), 0);
    TakeUp(dialog, *this);
}

void NameField::Put(const std::string& name) { SetText(dialog_, combo_, name.empty() ? noName_ : name); }

bool NameField::Take(std::string& name) const {
    std::string text;
    if (!TakeText(dialog_, combo_, text)) return false;
    name = text == noName_ ? std::string() : text.substr(0, text.find(kBeforeFullname));
    return true;
}

void NameField::TellChange() const {
    const auto combo = reinterpret_cast<LPARAM>(GetDlgItem(dialog_, combo_));
    SendMessageA(dialog_, WM_COMMAND, MAKEWPARAM(combo_, CBN_EDITCHANGE), combo);
}

void NameField::FillList() {
    if (isFilled_) return;
    isFilled_ = true;
    const WaitCursor wait;
    const HWND combo = GetDlgItem(dialog_, combo_);
    const auto add = [combo](const std::string& entry) {
        SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    };
    if (!noName_.empty()) add(noName_);
    for (const std::string& word : words_) add(word);
    std::size_t count = 0;
    VisitUserRows(ViewOf(kinds_), [&](const UserRow& row) {
        if (++count > kMostListed) return;
        add(std::string(row.Name).append(row.Fullname.empty() ? "" : kBeforeFullname).append(row.Fullname));
    });
}

bool NameField::Answer(const DialogMessage& message, INT_PTR&) {
    if (message.Number == kShortenName && static_cast<int>(message.WParam) == combo_) {
        std::string name;
        if (Take(name)) Put(name);
        SendDlgItemMessageA(dialog_, combo_, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
        TellChange();
        return true;
    }
    if (message.Number != WM_COMMAND) return false;
    const int control = LOWORD(message.WParam);
    const int code = HIWORD(message.WParam);
    if (control == combo_ && code == CBN_DROPDOWN) FillList();
    // The list's text comes into the field after this message; then its name alone is left.
    if (control == combo_ && (code == CBN_SELENDOK || code == CBN_SELCHANGE))
        PostMessageA(dialog_, kShortenName, static_cast<WPARAM>(combo_), 0);
    if (button_ == 0 || control != button_ || code != BN_CLICKED) return false;
    const std::vector<std::string> chosen = ChooseNames(dialog_, kinds_, false);
    if (chosen.empty()) return true;
    Put(chosen.front());
    TellChange();
    return true;
}

std::vector<std::string> ChooseNames(HWND owner, NameKinds kinds, bool several) {
    ChooseDialog context{.Kinds = kinds, .Several = several};
    if (OpenDialog("SelectUserBox", owner, SelectUserDlgBox, &context) != IDOK) return {};
    return context.Names;
}

INT_PTR CALLBACK SelectUserDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
