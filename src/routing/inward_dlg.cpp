#include "routing/inward_dlg.h"

#include <array>

#include "ctlfile/file_stamp.h"
#include "dialogs/csv_import_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "resources/ids.h"
#include "routing/inward_actions.h"
#include "routing/inward_import.h"
#include "routing/inward_rule_dlg.h"
#include "routing/inward_rules.h"
#include "routing/inward_trace.h"
#include "shell/server_files.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_INWARD_ADD, ID_INWARD_EDIT, ID_INWARD_DELETE, ID_INWARD_IMPORT, ID_INWARD_EXPORT};
constexpr int kIdentifierLimit = 260;

// In the order of SenderColumn, SubAddressColumn and ForwardColumn.
constexpr ListColumn kSenderTitles[] = {
    {"Sender", 86}, {"Organisation", 76}, {"Messages for", 56}, {"Route to", 44}, {"Remark", 110}};
constexpr ListColumn kSubAddressTitles[] = {{"Sub-address", 90}, {"Route to", 80}, {"Remark", 204}};
constexpr ListColumn kForwardTitles[] = {{"User", 70}, {"Forward to", 70}, {"Copy or move", 54}, {"Remark", 180}};
static_assert(std::size(kSenderTitles) == kSenderColumns && std::size(kSubAddressTitles) == kSubAddressColumns &&
              std::size(kForwardTitles) == kForwardColumns);

constexpr ListPlan PlanOf(std::span<const ListColumn> columns, const char* name) {
    return {.List = ID_INWARD_LIST,
            .Columns = columns,
            .Filter = ID_INWARD_FILTER,
            .Count = ID_INWARD_COUNT,
            .DefaultButton = ID_INWARD_EDIT,
            .Menu = kActions,
            .Name = name,
            .IsSorted = false};
}

// In the order of RoutingKind.
struct KindOfList {
    int Button;
    const char* Caption;
    ListPlan List;
};
constexpr KindOfList kKinds[] = {
    {ID_INWARD_SENDERS, "&Senders (%d)", PlanOf(kSenderTitles, "Senders")},
    {ID_INWARD_SUB_ADDRESSES, "S&ub-addresses (%d)", PlanOf(kSubAddressTitles, "Sub-addresses")},
    {ID_INWARD_FORWARDS, "&Forwarding (%d)", PlanOf(kForwardTitles, "Forwarding")},
};
const KindOfList& ListOf(RoutingKind kind) { return kKinds[static_cast<int>(kind)]; }

struct InwardDialog {
    RoutingKind Kind = RoutingKind::Sender;
    bool IsRead = true;
    FileStamp Stamp{}; // of the rules as they are shown
    FileStamp UsersStamp{};
    InwardRules Rules{};
    NameSet Names{};
    bool HasNames = false;
    std::array<bool, std::size(kKinds)> WasMissed{}; // the paragraph of a kind: said already
    InwardRows Rows{};
    ListView List{Rows, kKinds[0].List};
    NameField Addressee{};
};

void EnableButtons(HWND dialog, InwardDialog& context) {
    const std::size_t selected = context.List.CountSelected();
    for (const int button : {ID_INWARD_ADD, ID_INWARD_IMPORT, ID_INWARD_EXPORT})
        EnableControl(dialog, button, context.IsRead);
    EnableControl(dialog, ID_INWARD_EDIT, selected == 1);
    EnableControl(dialog, ID_INWARD_DELETE, selected > 0);
}

// Who gets the fax that the fields describe; nothing for empty ones.
void TryFax(HWND dialog, InwardDialog& context) {
    const ReceivedFax fax = {GetText(dialog, ID_INWARD_TRY_SENDER), GetText(dialog, ID_INWARD_TRY_SUB_ADDRESS),
                             GetText(dialog, ID_INWARD_TRY_ADDRESSEE)};
    const bool isEmpty = fax.Sender.empty() && fax.SubAddress.empty() && fax.Addressee.empty();
    SetText(dialog, ID_INWARD_RESULT, isEmpty ? std::string() : TraceText(TraceInward(context.Rules, fax)));
}

void ShowCounts(HWND dialog, const InwardDialog& context) {
    const std::size_t counts[] = {context.Rules.Senders.size(), context.Rules.SubAddresses.size(),
                                  context.Rules.Forwards.size()};
    for (std::size_t i = 0; i < std::size(kKinds); ++i)
        SetText(dialog, kKinds[i].Button, FormatText(std::string_view(kKinds[i].Caption), counts[i]));
    SetText(dialog, ID_INWARD_UNUSED, WhyUnused(context.Kind));
}

void SayMissing(InwardDialog& context) {
    bool& wasMissed = context.WasMissed.at(static_cast<std::size_t>(context.Kind));
    if (!context.IsRead || wasMissed) return;
    wasMissed = SayMissingParagraph(context.Kind);
}

void ShowRules(HWND dialog, InwardDialog& context) {
    context.List.Refill([&] {
        context.Rows.Fill(context.Kind, context.Rules, context.HasNames ? &context.Names : nullptr);
        return context.IsRead;
    });
    ShowCounts(dialog, context);
    EnableButtons(dialog, context);
    SayMissing(context);
}

void ListRules(HWND dialog, InwardDialog& context) {
    const WaitCursor wait;
    context.Stamp = StampOf(PathOf(ServerFile::Routing));
    context.UsersStamp = StampOf(PathOf(ServerFile::UserList));
    context.IsRead = ReadInwardRules(context.Rules);
    if (!context.IsRead) context.Rules = {};
    context.Names = {};
    context.HasNames = ReadRoutingNames(context.Names);
    ShowRules(dialog, context);
    TryFax(dialog, context);
}

// Reads anew when the rules, or the users whom they name, are others: this program or another has changed them.
void FollowRules(HWND dialog, InwardDialog& context) {
    const bool isSame = IsUnchanged(PathOf(ServerFile::Routing), context.Stamp) &&
                        IsUnchanged(PathOf(ServerFile::UserList), context.UsersStamp);
    if (!isSame) ListRules(dialog, context);
}

void ChooseKind(HWND dialog, InwardDialog& context) {
    for (std::size_t i = 0; i < std::size(kKinds); ++i)
        if (IsDlgButtonChecked(dialog, kKinds[i].Button) == BST_CHECKED) context.Kind = static_cast<RoutingKind>(i);
    context.List.Change(ListOf(context.Kind).List);
    ShowRules(dialog, context);
}

void FillInward(HWND dialog, InwardDialog& context) {
    CheckDlgButton(dialog, ID_INWARD_SENDERS, BST_CHECKED);
    for (const int field : {ID_INWARD_TRY_SENDER, ID_INWARD_TRY_SUB_ADDRESS})
        SendDlgItemMessageA(dialog, field, EM_LIMITTEXT, kIdentifierLimit, 0);
    context.List.Begin(dialog);
    context.Addressee.Begin(dialog, ID_INWARD_TRY_ADDRESSEE, 0, kUserAndGroupNames, "");
    ListRules(dialog, context);
    context.Addressee.Offer(SpecialWords(context.Rules));
    FocusControl(dialog, context.Rows.Count() > 0 ? ID_INWARD_LIST : ID_INWARD_ADD);
}

// Opens the box of a rule, of a new one without a row.
std::optional<std::string> RunBox(HWND dialog, const InwardDialog& context, std::optional<std::size_t> row) {
    const auto at = [&](const auto& rules) { return row ? std::optional(rules.at(*row)) : std::nullopt; };
    switch (context.Kind) {
    case RoutingKind::Sender: return SenderRuleByDialog(dialog, context.Rules, at(context.Rules.Senders));
    case RoutingKind::SubAddress: return SubAddressRuleByDialog(dialog, at(context.Rules.SubAddresses));
    case RoutingKind::Forward: break;
    }
    return ForwardRuleByDialog(dialog, context.Rules, at(context.Rules.Forwards));
}

void OpenRule(HWND dialog, InwardDialog& context, std::optional<std::size_t> row) {
    const std::optional<std::string> name = RunBox(dialog, context, row);
    FollowRules(dialog, context);
    if (name) context.List.SelectName(*name);
}

void PressAdd(HWND dialog, InwardDialog& context) {
    if (context.IsRead) OpenRule(dialog, context, std::nullopt);
}

void PressEdit(HWND dialog, InwardDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    if (rows.size() == 1) OpenRule(dialog, context, rows.front());
}

template <class Rule>
std::vector<Rule> RulesAt(const std::vector<Rule>& rules, const std::vector<std::size_t>& rows) {
    std::vector<Rule> chosen;
    for (const std::size_t row : rows) chosen.push_back(rules.at(row));
    return chosen;
}

void PressDelete(HWND dialog, InwardDialog& context) {
    const std::vector<std::size_t> rows = context.List.Selected();
    const WaitCursor wait;
    if (context.Kind == RoutingKind::Sender) DeleteSenderRules(RulesAt(context.Rules.Senders, rows));
    if (context.Kind == RoutingKind::SubAddress) DeleteSubAddressRules(RulesAt(context.Rules.SubAddresses, rows));
    if (context.Kind == RoutingKind::Forward) DeleteForwardRules(RulesAt(context.Rules.Forwards, rows));
    FollowRules(dialog, context);
}

void PressImport(HWND dialog, InwardDialog& context) {
    InwardImport import;
    if (ImportByDialog(dialog, import)) FollowRules(dialog, context);
}

// What the filter shows.
void PressExport(HWND dialog, InwardDialog& context) {
    std::vector<std::size_t> rows;
    const RowOrder& order = context.List.Order();
    for (std::size_t place = 0; place < order.Shown(); ++place) rows.push_back(order.RowAt(place));
    InwardRules shown;
    if (context.Kind == RoutingKind::Sender) shown.Senders = RulesAt(context.Rules.Senders, rows);
    if (context.Kind == RoutingKind::SubAddress) shown.SubAddresses = RulesAt(context.Rules.SubAddresses, rows);
    if (context.Kind == RoutingKind::Forward) shown.Forwards = RulesAt(context.Rules.Forwards, rows);
    ExportByDialog(dialog, InwardRulesAsCsv(shown));
}

constexpr DialogCommand<InwardDialog> kCommands[] = {
    {ID_INWARD_SENDERS, BN_CLICKED, ChooseKind},
    {ID_INWARD_SUB_ADDRESSES, BN_CLICKED, ChooseKind},
    {ID_INWARD_FORWARDS, BN_CLICKED, ChooseKind},
    {ID_INWARD_LIST, kListSelected, EnableButtons},
    {ID_INWARD_LIST, kListOpen, PressEdit},
    {ID_INWARD_LIST, kListRename, PressEdit},
    {ID_INWARD_LIST, kListAdd, PressAdd},
    {ID_INWARD_LIST, kListDelete, PressDelete},
    {ID_INWARD_LIST, kListReload, ListRules},
    {ID_INWARD_ADD, BN_CLICKED, PressAdd},
    {ID_INWARD_EDIT, BN_CLICKED, PressEdit},
    {ID_INWARD_DELETE, BN_CLICKED, PressDelete},
    {ID_INWARD_IMPORT, BN_CLICKED, PressImport},
    {ID_INWARD_EXPORT, BN_CLICKED, PressExport},
    {ID_INWARD_TRY_SENDER, EN_CHANGE, TryFax},
    {ID_INWARD_TRY_SUB_ADDRESS, EN_CHANGE, TryFax},
    {ID_INWARD_TRY_ADDRESSEE, CBN_EDITCHANGE, TryFax},
    {IDOK, BN_CLICKED, EndWithOk},
    {IDCANCEL, BN_CLICKED, EndWithCancel},
};
constexpr Anchor kAnchors[] = {
    {ID_INWARD_FILTER, kGrowsAcross},
    {ID_INWARD_UNUSED, kGrowsAcross},
    {ID_INWARD_LIST, kGrowsBoth},
    {ID_INWARD_COUNT, kMovesDown | kGrowsAcross},
    {ID_INWARD_TRY, kMovesDown | kGrowsAcross},
    {ID_INWARD_TRY_SENDER_LABEL, kMovesDown},
    {ID_INWARD_TRY_SENDER, kMovesDown},
    {ID_INWARD_TRY_SUB_ADDRESS_LABEL, kMovesDown},
    {ID_INWARD_TRY_SUB_ADDRESS, kMovesDown},
    {ID_INWARD_TRY_ADDRESSEE_LABEL, kMovesDown},
    {ID_INWARD_TRY_ADDRESSEE, kMovesDown},
    {ID_INWARD_RESULT_LABEL, kMovesDown},
    {ID_INWARD_RESULT, kMovesDown | kGrowsAcross},
    {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
    {ID_INWARD_ADD, kMovesAcross},
    {ID_INWARD_EDIT, kMovesAcross},
    {ID_INWARD_DELETE, kMovesAcross},
    {ID_INWARD_IMPORT, kMovesAcross},
    {ID_INWARD_EXPORT, kMovesAcross},
    {ID_HELP_BUTTON, kMovesBoth},
    {IDOK, kMovesBoth},
};
constexpr DialogPlan<InwardDialog> kPlan{HELP_INWARD, FillInward, kCommands, kAnchors, FollowRules};

} // namespace

void ConfigureRouting(HWND owner) {
    InwardDialog context;
    OpenDialogOf(ServerFile::Routing, "ConfigRoutingBox", owner, ConfigRoutingDlgBox, &context);
}

INT_PTR CALLBACK ConfigRoutingDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
