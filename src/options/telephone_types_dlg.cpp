// The page of the types of telephone number, and the box for one of them.
#include <algorithm>
#include <utility>

#include "options/option_messages.h"
#include "options/options_dialog_dlg.h"
#include "resources/ids.h"
#include "voice/messages.h"

namespace bv {
namespace {

using Context = OptionsDialog;

// --- One type ---

struct TypeDialog {
    const TelephoneTypes& Types;
    std::size_t Place; // behind the last one: a new one
    TelephoneType Entry{};
};

void FillType(HWND dialog, TypeDialog& context) {
    const bool isNew = context.Place >= context.Types.size();
    std::vector<std::string> words = KeptTypeWords();
    const auto isFree = [&](const std::string& word) {
        const auto code = ParseTelephoneType(word);
        return std::ranges::none_of(context.Types, [&](const TelephoneType& type) { return type.Code == code; });
    };
    std::string shown = isNew ? std::string() : TelephoneTypeWord(context.Types[context.Place].Code);
    if (isNew) {
        const auto free = std::ranges::find_if(words, isFree);
        if (free != words.end()) shown = *free;
    } else if (std::ranges::find(words, shown) == words.end()) {
        words.insert(words.begin(), shown); // which may stay, although nobody may give it anew
    }
    for (const std::string& word : words)
        SendDlgItemMessageA(dialog, ID_TYPE_WORD, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(word.c_str()));
    const auto at = std::ranges::find(words, shown) - words.begin();
    SendDlgItemMessageA(dialog, ID_TYPE_WORD, CB_SETCURSEL, static_cast<WPARAM>(at), 0);
    PutField(dialog, ID_TYPE_DESCRIPTION,
             isNew ? decltype(TelephoneType::Description)() : context.Types[context.Place].Description);
}

void TakeType(HWND dialog, TypeDialog& context) {
    std::string description;
    if (!TakeText(dialog, ID_TYPE_DESCRIPTION, description)) return;
    const auto entry = EnterType(context.Types, context.Place, GetText(dialog, ID_TYPE_WORD), description);
    if (!entry) return FocusControl(dialog, ID_TYPE_WORD);
    context.Entry = *entry;
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<TypeDialog> kTypeCommands[] = {{IDOK, BN_CLICKED, TakeType},
                                                       {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<TypeDialog> kTypePlan{HELP_TELEPHONE_TYPE, FillType, kTypeCommands};

INT_PTR CALLBACK TelnumTypeDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kTypePlan, {dialog, message, wParam, lParam});
}

// --- The page ---

constexpr ListColumn kColumns[] = {{"Type", 58}, {"Description", 88}, {"Will be read as", 60}};
constexpr int kButtons[] = {ID_TYPES_ADD, ID_TYPES_EDIT, ID_TYPES_DELETE, ID_TYPES_UP, ID_TYPES_DOWN};
constexpr ListPlan kPlan{
    .List = ID_TYPES_LIST, .Columns = kColumns, .DefaultButton = ID_TYPES_EDIT, .Menu = kButtons, .IsSorted = false};

const TelephoneTypes& Types(const Context& context) {
    static const TelephoneTypes none;
    return context.Entry.Types() ? *context.Entry.Types() : none;
}

// The selected row; none without one.
std::optional<std::size_t> Selected(const Context& context) {
    const std::vector<std::size_t> rows = context.TypeList->Selected();
    return rows.empty() ? std::nullopt : std::optional(rows.front());
}

void EnableButtons(HWND page, Context& context) {
    const std::size_t count = Types(context).size();
    const std::optional<std::size_t> row = Selected(context);
    const bool isKnown = context.Entry.Types().has_value();
    EnableControl(page, ID_TYPES_ADD, isKnown && count < kMaxTelephoneTypes);
    for (const int button : {ID_TYPES_EDIT, ID_TYPES_DELETE}) EnableControl(page, button, row.has_value());
    EnableControl(page, ID_TYPES_UP, row.value_or(0) > 0);
    EnableControl(page, ID_TYPES_DOWN, row && *row + 1 < count);
}

void ListTypes(HWND page, Context& context) {
    context.TypeList->Refill([&] {
        context.Types.Begin(std::size(kColumns));
        for (const auto& [code, description] : Types(context)) {
            const std::string word = TelephoneTypeWord(code);
            const std::string readBack = TypeReadBack(code);
            for (const std::string_view text : {std::string_view(word), description.View(), std::string_view(readBack)})
                context.Types.Add(text);
        }
        return true;
    });
    EnableButtons(page, context);
}

void SelectRow(HWND page, std::size_t row) {
    LVITEMA state{};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = state.stateMask;
    SendDlgItemMessageA(page, ID_TYPES_LIST, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
    SendDlgItemMessageA(page, ID_TYPES_LIST, LVM_ENSUREVISIBLE, row, FALSE);
}

// Another list, with this row selected.
void ChangeTypes(HWND page, Context& context, TelephoneTypes types, std::size_t row) {
    context.Entry.SetTypes(std::move(types));
    ListTypes(page, context);
    if (!Types(context).empty()) SelectRow(page, std::min(row, Types(context).size() - 1));
    EnableButtons(page, context);
}

void OpenType(HWND page, Context& context, std::size_t place) {
    TypeDialog box{.Types = Types(context), .Place = place};
    if (OpenDialog("TelnumTypeBox", page, TelnumTypeDlgBox, &box) != IDOK) return;
    TelephoneTypes types = Types(context);
    if (place < types.size())
        types[place] = box.Entry;
    else
        types.push_back(box.Entry);
    ChangeTypes(page, context, std::move(types), place);
}

void PressAdd(HWND page, Context& context) {
    if (IsWindowEnabled(GetDlgItem(page, ID_TYPES_ADD))) OpenType(page, context, Types(context).size());
}

void PressEdit(HWND page, Context& context) {
    if (const auto row = Selected(context)) OpenType(page, context, *row);
}

void PressDelete(HWND page, Context& context) {
    const auto row = Selected(context);
    if (!row) return;
    TelephoneTypes types = Types(context);
    types.erase(types.begin() + static_cast<std::ptrdiff_t>(*row));
    ChangeTypes(page, context, std::move(types), *row);
}

template <MoveBy kWay>
void PressMove(HWND page, Context& context) {
    const auto row = Selected(context);
    TelephoneTypes types = Types(context);
    if (!row || !MoveType(types, *row, kWay)) return;
    ChangeTypes(page, context, std::move(types), kWay == MoveBy::Up ? *row - 1 : *row + 1);
}

void FillTypes(HWND page, Context& context) {
    context.TypeList = std::make_unique<ListView>(context.Types, kPlan);
    context.TypeList->Begin(page);
    ListTypes(page, context);
    if (context.Entry.Types()) return;
    EnableControl(page, ID_TYPES_LIST, false);
    SetText(page, ID_TYPES_HINT, FillMessage(kTypesUnreadable));
}

constexpr DialogCommand<Context> kCommands[] = {
    {ID_TYPES_LIST, kListSelected, EnableButtons},    {ID_TYPES_LIST, kListOpen, PressEdit},
    {ID_TYPES_LIST, kListRename, PressEdit},          {ID_TYPES_LIST, kListAdd, PressAdd},
    {ID_TYPES_LIST, kListDelete, PressDelete},        {ID_TYPES_ADD, BN_CLICKED, PressAdd},
    {ID_TYPES_EDIT, BN_CLICKED, PressEdit},           {ID_TYPES_DELETE, BN_CLICKED, PressDelete},
    {ID_TYPES_UP, BN_CLICKED, PressMove<MoveBy::Up>}, {ID_TYPES_DOWN, BN_CLICKED, PressMove<MoveBy::Down>},
};
constexpr DialogPlan<Context> kPagePlan{HELP_OPTIONS + 1 + static_cast<int>(OptionPage::TelephoneNumbers), FillTypes,
                                        kCommands};

INT_PTR CALLBACK OptionsTelnumDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPagePlan, {page, message, wParam, lParam});
}

} // namespace

Page TelephoneTypesPage() {
    return {.Template = "OptionsTelnumBox",
            .Title = TitleOf(OptionPage::TelephoneNumbers),
            .Procedure = OptionsTelnumDlgBox,
            .Icon = "PageNumbers"};
}

} // namespace bv
