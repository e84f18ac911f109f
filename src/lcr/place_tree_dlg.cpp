#include "lcr/place_tree_dlg.h"

#include <windowsx.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "dialogs/button_menu_dlg.h"
#include "dialogs/clipboard_dlg.h"
#include "platform/ascii.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr int kFilterLimit = 100;
constexpr std::size_t kMostOpenedByFilter = 300; // areas

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(window, message, wParam, lParam);
}

HTREEITEM NextItem(HWND tree, UINT which, HTREEITEM item = nullptr) {
    return reinterpret_cast<HTREEITEM>(Send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
}

bool IsSame(const PlaceName& a, const PlaceName& b) {
    return a.Kind == b.Kind && a.Country == b.Country && EqualFolded(a.Name, b.Name);
}

bool IsOpen(HWND tree, HTREEITEM item) {
    constexpr WPARAM kState = TVIS_EXPANDED;
    return (Send(tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), kState) & TVIS_EXPANDED) != 0;
}

} // namespace

void PlaceTree::Begin(HWND dialog) {
    dialog_ = dialog;
    SendDlgItemMessageW(dialog, plan_.Filter, EM_LIMITTEXT, kFilterLimit, 0);
    TakeUp(dialog, *this);
}

const PlaceTree::Node* PlaceTree::NodeOf(HTREEITEM item) const {
    TVITEMW what{};
    what.mask = TVIF_PARAM;
    what.hItem = item;
    if (item == nullptr || Send(Window(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&what)) == 0) return nullptr;
    const auto index = static_cast<std::size_t>(what.lParam);
    return index < nodes_.size() ? &nodes_[index] : nullptr;
}

HTREEITEM PlaceTree::SelectedItem() const { return NextItem(Window(), TVGN_CARET); }

HTREEITEM PlaceTree::Insert(HTREEITEM parent, Node node, const std::string& text, bool hasChildren) {
    TVINSERTSTRUCTA what{};
    what.hParent = parent;
    what.hInsertAfter = TVI_LAST;
    what.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_CHILDREN;
    what.item.pszText = const_cast<char*>(text.c_str());
    what.item.lParam = static_cast<LPARAM>(nodes_.size());
    what.item.cChildren = hasChildren ? 1 : 0;
    nodes_.push_back(std::move(node));
    return reinterpret_cast<HTREEITEM>(SendMessageA(Window(), TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&what)));
}

HTREEITEM PlaceTree::InsertHeading(PlaceKind kind, const char* title, std::size_t count) {
    const HTREEITEM heading = Insert(TVI_ROOT, {{kind, ""}, true, 0}, FormatText("%s (%d)", title, count), count > 0);
    headings_[static_cast<std::size_t>(kind)] = heading;
    return heading;
}

void PlaceTree::InsertCountries() {
    const std::vector<CountryEntry>& all = session_.Places().Countries();
    const HTREEITEM heading = InsertHeading(PlaceKind::Country, "Countries", shown_.Countries.size());
    for (std::size_t i = 0; i < shown_.Countries.size(); ++i) {
        const ShownCountry& one = shown_.Countries[i];
        const CountryEntry& country = all[one.Country];
        const bool hasAreas = one.IsHit ? !country.Areas.empty() : !one.Areas.empty();
        Insert(heading, {{PlaceKind::Country, country.Identifier}, false, i}, TextOfPlace(country), hasAreas);
    }
}

void PlaceTree::InsertAreas(HTREEITEM item) {
    const Node* node = NodeOf(item);
    if (node == nullptr || node->IsHeading || node->Place.Kind != PlaceKind::Country ||
        NextItem(Window(), TVGN_CHILD, item) != nullptr)
        return;
    const ShownCountry& one = shown_.Countries[node->Country];
    const CountryEntry& country = session_.Places().Countries()[one.Country];
    const auto insert = [&](const AreaEntry& area) {
        Insert(item, {{PlaceKind::Area, area.Identifier, country.DiallingCode}, false, 0}, TextOfPlace(area, true),
               false);
    };
    Send(Window(), WM_SETREDRAW, FALSE);
    if (one.IsHit)
        for (const AreaEntry& area : country.Areas) insert(area);
    else
        for (const std::size_t area : one.Areas) insert(country.Areas[area]);
    Send(Window(), WM_SETREDRAW, TRUE);
}

void PlaceTree::InsertOthers() {
    const HTREEITEM regions = InsertHeading(PlaceKind::Region, "Regions", shown_.Regions.size());
    for (const std::size_t i : shown_.Regions) {
        const RegionEntry& region = session_.Places().Regions()[i];
        Insert(regions, {{PlaceKind::Region, region.Identifier}}, TextOfPlace(region, false), false);
    }
    const HTREEITEM synonyms = InsertHeading(PlaceKind::Synonym, "Other names", shown_.Synonyms.size());
    for (const std::size_t i : shown_.Synonyms) {
        const Synonym& synonym = session_.Synonyms()[i];
        Insert(synonyms, {{PlaceKind::Synonym, synonym.Name}}, SynonymText(session_.Places(), synonym), false);
    }
}

std::vector<PlaceName> PlaceTree::OpenCountries() const {
    std::vector<PlaceName> open;
    const HTREEITEM heading = headings_[static_cast<std::size_t>(PlaceKind::Country)];
    if (heading == nullptr) return open;
    for (HTREEITEM item = NextItem(Window(), TVGN_CHILD, heading); item != nullptr;
         item = NextItem(Window(), TVGN_NEXT, item))
        if (const Node* node = NodeOf(item); node != nullptr && IsOpen(Window(), item)) open.push_back(node->Place);
    return open;
}

// What is to be selected when the item is no longer there: itself, the one behind it, the one before it, its parent.
std::vector<PlaceName> PlaceTree::NeighboursOf(HTREEITEM item) const {
    std::vector<PlaceName> names;
    if (item == nullptr) return names;
    for (const HTREEITEM one : {item, NextItem(Window(), TVGN_NEXT, item), NextItem(Window(), TVGN_PREVIOUS, item),
                                NextItem(Window(), TVGN_PARENT, item)})
        if (const Node* node = NodeOf(one)) names.push_back(node->Place);
    return names;
}

void PlaceTree::Expand(HTREEITEM item) const { Send(Window(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item)); }

// A country is opened for an area of it.
bool PlaceTree::Select(const PlaceName& place) {
    HTREEITEM parent = headings_[static_cast<std::size_t>(place.Kind)];
    if (place.Kind == PlaceKind::Area) {
        const CountryEntry* country = session_.Places().FindCode(place.Country);
        if (country == nullptr || !Select({PlaceKind::Country, country->Identifier})) return false;
        parent = SelectedItem();
        InsertAreas(parent);
        Expand(parent);
    }
    HTREEITEM item = place.Name.empty() ? parent : NextItem(Window(), TVGN_CHILD, parent);
    const auto isIt = [&] {
        const Node* node = NodeOf(item);
        return node != nullptr && IsSame(node->Place, place);
    };
    while (item != nullptr && !isIt()) item = NextItem(Window(), TVGN_NEXT, item);
    if (item == nullptr) return false;
    Send(Window(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    Send(Window(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    return true;
}

void PlaceTree::Refill(const std::optional<PlaceName>& select) {
    std::vector<PlaceName> wanted = NeighboursOf(SelectedItem());
    if (select) wanted.insert(wanted.begin(), *select);
    const std::vector<PlaceName> open = OpenCountries();
    isFilling_ = true;
    Send(Window(), WM_SETREDRAW, FALSE);
    Send(Window(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    nodes_.clear();
    const std::string words = GetText(dialog_, plan_.Filter);
    shown_ = FilterPlaces(session_.Places(), session_.Synonyms(), words);
    InsertCountries();
    InsertOthers();
    for (const PlaceKind kind : {PlaceKind::Country, PlaceKind::Region, PlaceKind::Synonym})
        Expand(headings_[static_cast<std::size_t>(kind)]);
    OpenAgain(open);
    if (std::ranges::none_of(wanted, [this](const PlaceName& place) { return Select(place); }))
        Select({PlaceKind::Country, ""});
    Send(Window(), WM_SETREDRAW, TRUE);
    isFilling_ = false;
    Notify(kListSelected);
}

// The countries that were open, and those of which only some areas are shown.
void PlaceTree::OpenAgain(const std::vector<PlaceName>& open) {
    std::size_t areas = 0;
    for (const ShownCountry& one : shown_.Countries) areas += one.Areas.size();
    const HTREEITEM heading = headings_[static_cast<std::size_t>(PlaceKind::Country)];
    for (HTREEITEM item = NextItem(Window(), TVGN_CHILD, heading); item != nullptr;
         item = NextItem(Window(), TVGN_NEXT, item)) {
        const Node* node = NodeOf(item);
        if (node == nullptr) continue;
        const bool wasOpen = std::ranges::any_of(open, [&](const auto& one) { return IsSame(one, node->Place); });
        const bool isForHits = !shown_.Countries[node->Country].IsHit && areas <= kMostOpenedByFilter;
        if (!wasOpen && !isForHits) continue;
        InsertAreas(item);
        Expand(item);
    }
}

std::optional<PlaceName> PlaceTree::Selected() const {
    const Node* node = NodeOf(SelectedItem());
    return node == nullptr || node->IsHeading ? std::nullopt : std::optional(node->Place);
}

PlaceKind PlaceTree::KindAtHand() const {
    const Node* node = NodeOf(SelectedItem());
    return node == nullptr ? PlaceKind::Country : node->Place.Kind;
}

std::string PlaceTree::CountryAtHand() const {
    const std::optional<PlaceName> place = Selected();
    if (!place) return {};
    if (place->Kind == PlaceKind::Area) return place->Country;
    const CountryEntry* country =
        place->Kind == PlaceKind::Country ? session_.Places().FindCountry(place->Name) : nullptr;
    return country == nullptr ? std::string() : country->DiallingCode;
}

void PlaceTree::Notify(int code) const {
    SendMessageW(dialog_, WM_COMMAND, MAKEWPARAM(plan_.Tree, code), reinterpret_cast<LPARAM>(Window()));
}

bool PlaceTree::Answer(const DialogMessage& message, INT_PTR& result) {
    if (message.Number == WM_NOTIFY) {
        const auto& notice = *reinterpret_cast<const NMHDR*>(message.LParam);
        return notice.idFrom == static_cast<UINT_PTR>(plan_.Tree) && AnswerNotice(notice, result);
    }
    if (message.Number == WM_COMMAND && LOWORD(message.WParam) == plan_.Filter && HIWORD(message.WParam) == EN_CHANGE) {
        Refill();
        return true;
    }
    if (message.Number == WM_CONTEXTMENU && reinterpret_cast<HWND>(message.WParam) == Window()) {
        OpenMenu({GET_X_LPARAM(message.LParam), GET_Y_LPARAM(message.LParam)});
        return true;
    }
    return false;
}

bool PlaceTree::AnswerNotice(const NMHDR& notice, INT_PTR& result) {
    switch (notice.code) {
    case TVN_ITEMEXPANDINGA:
    case TVN_ITEMEXPANDINGW: InsertAreas(reinterpret_cast<const NMTREEVIEWW&>(notice).itemNew.hItem); return true;
    case TVN_SELCHANGEDA:
    case TVN_SELCHANGEDW:
        if (!isFilling_) Notify(kListSelected);
        return true;
    case TVN_KEYDOWN:
        result = PressKey(reinterpret_cast<const NMTVKEYDOWN&>(notice).wVKey) ? TRUE : FALSE;
        SetWindowLongPtrW(dialog_, DWLP_MSGRESULT, result);
        return true;
    case NM_DBLCLK:
        // A heading opens and closes as it does by itself.
        if (!Selected()) return false;
        PostMessageW(dialog_, WM_COMMAND, MAKEWPARAM(plan_.Tree, kListOpen), reinterpret_cast<LPARAM>(Window()));
        SetWindowLongPtrW(dialog_, DWLP_MSGRESULT, TRUE);
        result = TRUE;
        return true;
    case NM_RCLICK: SelectUnderCursor(); return false;
    case NM_SETFOCUS:
        defaultButton_ = LOWORD(Send(dialog_, DM_GETDEFID));
        Send(dialog_, DM_SETDEFID, static_cast<WPARAM>(plan_.DefaultButton));
        return true;
    case NM_KILLFOCUS: Send(dialog_, DM_SETDEFID, defaultButton_); return true;
    default: return false;
    }
}

bool PlaceTree::PressKey(WORD key) {
    if (GetKeyState(VK_CONTROL) < 0) {
        if (key == 'C' || key == VK_INSERT) CopySelected();
        if (key == 'F') FocusControl(dialog_, plan_.Filter);
        return true;
    }
    constexpr std::pair<WORD, int> kCodes[] = {{VK_F2, kListRename}, {VK_INSERT, kListAdd}, {VK_DELETE, kListDelete}};
    const auto* const found = std::ranges::find(kCodes, key, &std::pair<WORD, int>::first);
    if (found == std::end(kCodes)) return false;
    Notify(found->second);
    return true;
}

// Down goes from the filter to the tree; Esc empties the filter, and closes the dialog when that is empty.
bool PlaceTree::TakeKey(const MSG& message) {
    const HWND filter = GetDlgItem(dialog_, plan_.Filter);
    if (message.message != WM_KEYDOWN || message.hwnd != filter) return false;
    if (message.wParam == VK_DOWN) {
        FocusControl(dialog_, plan_.Tree);
        return true;
    }
    if (message.wParam != VK_ESCAPE || GetWindowTextLengthW(filter) == 0) return false;
    SetWindowTextW(filter, L"");
    return true;
}

void PlaceTree::SelectUnderCursor() const {
    TVHITTESTINFO hit{};
    GetCursorPos(&hit.pt);
    ScreenToClient(Window(), &hit.pt);
    if (Send(Window(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)) == 0) return;
    Send(Window(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(hit.hItem));
}

void PlaceTree::CopySelected() const {
    char text[512] = "";
    TVITEMA what{};
    what.mask = TVIF_TEXT;
    what.hItem = SelectedItem();
    what.pszText = text;
    what.cchTextMax = static_cast<int>(sizeof text);
    if (SendMessageA(Window(), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&what)) != 0)
        CopyToClipboard(dialog_, std::string(what.pszText) + "\r\n");
}

void PlaceTree::OpenMenu(POINT at) const {
    if (at.x == -1 && at.y == -1) {
        RECT item{};
        *reinterpret_cast<HTREEITEM*>(&item) =
            SelectedItem(); // the item that is asked about, as TVM_GETITEMRECT has it
        Send(Window(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&item));
        at = {item.left, item.bottom};
        ClientToScreen(Window(), &at);
    }
    PressButton(dialog_, ChooseFromMenu(dialog_, MenuOfButtons(dialog_, plan_.Menu, plan_.DefaultButton), at));
}

} // namespace bv
