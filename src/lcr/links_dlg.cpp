#include "lcr/links_dlg.h"

#include <string>

#include "dialogs/list_view_dlg.h"
#include "dialogs/live_text_dlg.h"
#include "lcr/link_dlg.h"
#include "lcr/link_rows.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_LINKS_ADD, ID_LINKS_EDIT, ID_LINKS_CLONE, ID_LINKS_DELETE};

// In the order of LinkColumn.
constexpr ListColumn kTitles[] = {{"ID", 44},          {"Description", 58}, {"Type", 46},  {"Address", 80},
                                  {"Send", 28},        {"Receive", 38},     {"Delay", 28}, {"State (run time)", 66},
                                  {"Rules", 28, true}, {"Remark", 44}};
static_assert(std::size(kTitles) == kLinkColumns);
constexpr ListPlan kListPlan{.List = ID_LINKS_LIST,
                             .Columns = kTitles,
                             .Filter = ID_LINKS_FILTER,
                             .Count = ID_LINKS_COUNT,
                             .DefaultButton = ID_LINKS_EDIT,
                             .Menu = kActions,
                             .IsSorted = false};

struct LinksDialog {
    LinkEdit Edit{};
    LinkFacts Facts{};
    RowTable Rows{};
    ListView List{Rows, kListPlan};
};

// What can be done with the selected link, and what is wrong with it.
void FollowSelection(HWND dialog, LinksDialog& context) {
    const bool hasOne = context.List.HasOneSelected();
    for (const int button : {ID_LINKS_EDIT, ID_LINKS_CLONE, ID_LINKS_DELETE}) EnableControl(dialog, button, hasOne);
    const std::string_view remark =
        hasOne ? context.Rows.Text(context.List.Selected().front(), kLinkRemark) : std::string_view();
    ShowLiveText(GetDlgItem(dialog, ID_LINKS_REMARK), std::string(remark));
}

void ListLinks(HWND dialog, LinksDialog& context) {
    context.List.Refill([&] {
        FillLinkRows(context.Edit, context.Facts, context.Rows);
        return true;
    });
    FollowSelection(dialog, context);
}

void FillLinks(HWND dialog, LinksDialog& context) {
    SetText(dialog, ID_LINKS_HINT, DescribeUnreadable(context.Facts));
    MakeLive(GetDlgItem(dialog, ID_LINKS_REMARK));
    context.List.Begin(dialog);
    ListLinks(dialog, context);
    FocusControl(dialog, context.Edit.Links.empty() ? ID_LINKS_ADD : ID_LINKS_LIST);
}

// Lists what a box has changed.
void Follow(HWND dialog, LinksDialog& context, std::optional<std::size_t> place) {
    if (!place) return;
    ListLinks(dialog, context);
    context.List.SelectName(context.Edit.Links[*place].Identifier);
}

void PressAdd(HWND dialog, LinksDialog& context) {
    LinkRecord link = NewLink("");
    if (!context.Edit.Router.WanEnabled) link.Type = LinkType::Email;
    Follow(dialog, context, AddLinkByDialog(dialog, context.Edit, link));
}

void PressEdit(HWND dialog, LinksDialog& context) {
    if (!context.List.HasOneSelected()) return;
    Follow(dialog, context, EditLinkByDialog(dialog, context.Edit, context.Facts, context.List.Selected().front()));
}

void PressClone(HWND dialog, LinksDialog& context) {
    const LinkRecord& link = context.Edit.Links[context.List.Selected().front()];
    Follow(dialog, context, AddLinkByDialog(dialog, context.Edit, CloneOf(link)));
}

void PressDelete(HWND dialog, LinksDialog& context) {
    if (!context.List.HasOneSelected()) return;
    if (RemoveLink(context.Edit, context.List.Selected().front())) ListLinks(dialog, context);
}

void SaveLinksOfDialog(HWND dialog, LinksDialog& context) {
    const WaitCursor wait;
    if (SaveLinkEdit(context.Edit)) EndDialog(dialog, IDOK);
}

bool IsChanged(HWND, const LinksDialog& context) { return context.Edit.Links != context.Edit.Before; }

constexpr DialogCommand<LinksDialog> kCommands[] = {{ID_LINKS_LIST, kListSelected, FollowSelection},
                                                    {ID_LINKS_LIST, kListOpen, PressEdit},
                                                    {ID_LINKS_LIST, kListRename, PressEdit},
                                                    {ID_LINKS_LIST, kListAdd, PressAdd},
                                                    {ID_LINKS_LIST, kListDelete, PressDelete},
                                                    {ID_LINKS_ADD, BN_CLICKED, PressAdd},
                                                    {ID_LINKS_EDIT, BN_CLICKED, PressEdit},
                                                    {ID_LINKS_CLONE, BN_CLICKED, PressClone},
                                                    {ID_LINKS_DELETE, BN_CLICKED, PressDelete},
                                                    {IDOK, BN_CLICKED, SaveLinksOfDialog},
                                                    {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr Anchor kAnchors[] = {{ID_LINKS_LIST, kGrowsBoth},
                               {ID_LINKS_HINT, kGrowsAcross},
                               {ID_LINKS_COUNT, kMovesDown},
                               {ID_LINKS_REMARK, kMovesDown | kGrowsAcross},
                               {ID_LINKS_ADD, kMovesDown},
                               {ID_LINKS_EDIT, kMovesDown},
                               {ID_LINKS_CLONE, kMovesDown},
                               {ID_LINKS_DELETE, kMovesDown},
                               {ID_STATUS_LINE, kMovesDown | kGrowsAcross},
                               {IDOK, kMovesBoth},
                               {IDCANCEL, kMovesBoth},
                               {ID_HELP_BUTTON, kMovesBoth}};
constexpr DialogPlan<LinksDialog> kPlan{HELP_LINKS, FillLinks, kCommands, kAnchors, nullptr, IsChanged};

} // namespace

bool EditLinks(HWND owner) {
    LinksDialog context;
    {
        const WaitCursor wait;
        if (!BeginLinkEdit(context.Edit) || !ReadLinkFacts(context.Facts)) return false;
    }
    return OpenDialog("DisplayAllLinks", owner, DisplayAllLinksDlgBox, &context) == IDOK;
}

INT_PTR CALLBACK DisplayAllLinksDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
