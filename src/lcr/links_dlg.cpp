#include "lcr/links_dlg.h"

#include <string>

#include "dialogs/list_view_dlg.h"
#include "dialogs/live_text_dlg.h"
#include "lcr/lcr_uses_dlg.h"
#include "lcr/link_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

constexpr int kActions[] = {ID_LINKS_ADD, ID_LINKS_EDIT, ID_LINKS_CLONE, ID_LINKS_DELETE, ID_LINKS_WHERE_USED};

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
    LinkSession Session{};
    RowTable Rows{};
    ListView List{Rows, kListPlan};
};

// What can be done with the selected link, and what is wrong with it.
void FollowSelection(HWND dialog, LinksDialog& context) {
    const bool hasOne = context.List.HasOneSelected();
    for (const int button : {ID_LINKS_EDIT, ID_LINKS_CLONE, ID_LINKS_DELETE, ID_LINKS_WHERE_USED})
        EnableControl(dialog, button, hasOne);
    const std::string_view remark =
        hasOne ? context.Rows.Text(context.List.Selected().front(), kLinkRemark) : std::string_view();
    ShowLiveText(GetDlgItem(dialog, ID_LINKS_REMARK), std::string(remark));
}

void ListLinks(HWND dialog, LinksDialog& context) {
    context.List.Refill([&] {
        FillLinkRows(context.Session.Edit(), context.Session.Facts(), context.Rows);
        return true;
    });
    FollowSelection(dialog, context);
}

void FillLinks(HWND dialog, LinksDialog& context) {
    SetText(dialog, ID_LINKS_HINT, DescribeUnreadable(context.Session.Facts()));
    MakeLive(GetDlgItem(dialog, ID_LINKS_REMARK));
    context.List.Begin(dialog);
    ListLinks(dialog, context);
    FocusControl(dialog, context.Session.Edit().Links.empty() ? ID_LINKS_ADD : ID_LINKS_LIST);
}

// Lists what a box has changed.
void Follow(HWND dialog, LinksDialog& context, std::optional<std::size_t> place) {
    if (!place) return;
    ListLinks(dialog, context);
    context.List.SelectName(context.Session.Edit().Links[*place].Identifier);
}

void PressAdd(HWND dialog, LinksDialog& context) {
    LinkRecord link = NewLink("");
    if (!context.Session.Edit().Router.WanEnabled) link.Type = LinkType::Email;
    Follow(dialog, context, AddLinkByDialog(dialog, context.Session, link));
}

void PressEdit(HWND dialog, LinksDialog& context) {
    if (!context.List.HasOneSelected()) return;
    Follow(dialog, context, EditLinkByDialog(dialog, context.Session, context.List.Selected().front()));
}

void PressClone(HWND dialog, LinksDialog& context) {
    const LinkRecord& link = context.Session.Edit().Links[context.List.Selected().front()];
    Follow(dialog, context, AddLinkByDialog(dialog, context.Session, CloneOf(link)));
}

void PressDelete(HWND dialog, LinksDialog& context) {
    if (!context.List.HasOneSelected()) return;
    const std::size_t place = context.List.Selected().front();
    const std::string identifier = context.Session.Edit().Links[place].Identifier;
    const auto ask = [&](const std::vector<Use>& uses) { return AskUsesOfLink(dialog, identifier, "", uses); };
    if (context.Session.Remove(place, ask)) ListLinks(dialog, context);
}

void PressWhereUsed(HWND dialog, LinksDialog& context) {
    const LinkRecord& link = context.Session.Edit().Links[context.List.Selected().front()];
    ShowUsesOfLink(dialog, link.Identifier, context.Session.FindUses(link.Identifier));
}

void SaveLinksOfDialog(HWND dialog, LinksDialog& context) {
    const WaitCursor wait;
    if (context.Session.Commit()) return static_cast<void>(EndDialog(dialog, IDOK));
    ListLinks(dialog, context); // some of it may be saved
}

bool IsChanged(HWND, const LinksDialog& context) { return context.Session.IsChanged(); }

constexpr DialogCommand<LinksDialog> kCommands[] = {
    {ID_LINKS_LIST, kListSelected, FollowSelection}, {ID_LINKS_LIST, kListOpen, PressEdit},
    {ID_LINKS_LIST, kListRename, PressEdit},         {ID_LINKS_LIST, kListAdd, PressAdd},
    {ID_LINKS_LIST, kListDelete, PressDelete},       {ID_LINKS_ADD, BN_CLICKED, PressAdd},
    {ID_LINKS_EDIT, BN_CLICKED, PressEdit},          {ID_LINKS_CLONE, BN_CLICKED, PressClone},
    {ID_LINKS_DELETE, BN_CLICKED, PressDelete},      {ID_LINKS_WHERE_USED, BN_CLICKED, PressWhereUsed},
    {IDOK, BN_CLICKED, SaveLinksOfDialog},           {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr Anchor kAnchors[] = {{ID_LINKS_LIST, kGrowsBoth},
                               {ID_LINKS_HINT, kGrowsAcross},
                               {ID_LINKS_COUNT, kMovesDown},
                               {ID_LINKS_REMARK, kMovesDown | kGrowsAcross},
                               {ID_LINKS_ADD, kMovesDown},
                               {ID_LINKS_EDIT, kMovesDown},
                               {ID_LINKS_CLONE, kMovesDown},
                               {ID_LINKS_DELETE, kMovesDown},
                               {ID_LINKS_WHERE_USED, kMovesDown},
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
        if (!context.Session.Begin()) return false;
    }
    return OpenDialogOf(ServerFile::Links, "DisplayAllLinks", owner, DisplayAllLinksDlgBox, &context) == IDOK;
}

INT_PTR CALLBACK DisplayAllLinksDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
