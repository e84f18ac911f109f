// The destinations as a tree: countries with their areas, regions, and other names. The areas of a country are listed
// when it is opened.
//
// To its dialog it sends the codes of lists (list_codes_dlg.h).
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "dialogs/dialog_dlg.h"
#include "dialogs/list_codes_dlg.h"
#include "lcr/destination_session.h"
#include "lcr/place_filter.h"

namespace bv {

struct TreePlan {
    int Tree;
    int Filter;
    int DefaultButton;         // what Enter presses on an entry
    std::span<const int> Menu; // the buttons that stand in the menu, too
};

class PlaceTree : public DialogPart {
  public:
    PlaceTree(const DestinationSession& session, const TreePlan& plan) : session_(session), plan_(plan) {}

    // Takes up the control, when its dialog is filled.
    void Begin(HWND dialog);

    // Shows the destinations as they are now, and selects the one; without one what was selected before, or what stands
    // where that was.
    void Refill(const std::optional<PlaceName>& select = {});

    // The selected entry; none for the heading of a kind.
    [[nodiscard]] std::optional<PlaceName> Selected() const;

    // Of the selected entry or heading; and the dialling code of its country.
    [[nodiscard]] PlaceKind KindAtHand() const;
    [[nodiscard]] std::string CountryAtHand() const;

    [[nodiscard]] const ShownPlaces& Shown() const { return shown_; }

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    bool TakeKey(const MSG& message) override;

  private:
    struct Node {
        PlaceName Place;
        bool IsHeading = false;
        std::size_t Country = 0; // of a country, its place in what is shown
    };

    [[nodiscard]] HWND Window() const { return GetDlgItem(dialog_, plan_.Tree); }
    [[nodiscard]] const Node* NodeOf(HTREEITEM item) const;
    [[nodiscard]] HTREEITEM SelectedItem() const;
    HTREEITEM Insert(HTREEITEM parent, Node node, const std::string& text, bool hasChildren);
    HTREEITEM InsertHeading(PlaceKind kind, const char* title, std::size_t count);
    void InsertCountries();
    void InsertAreas(HTREEITEM country);
    void InsertOthers();
    [[nodiscard]] std::vector<PlaceName> OpenCountries() const;
    [[nodiscard]] std::vector<PlaceName> NeighboursOf(HTREEITEM item) const;
    bool Select(const PlaceName& place);
    void OpenAgain(const std::vector<PlaceName>& open);
    void Expand(HTREEITEM item) const;
    bool AnswerNotice(const NMHDR& notice, INT_PTR& result);
    bool PressKey(WORD key);
    void SelectUnderCursor() const;
    void CopySelected() const;
    void OpenMenu(POINT at) const;
    void Notify(int code) const;

    const DestinationSession& session_;
    TreePlan plan_;
    HWND dialog_ = nullptr;
    ShownPlaces shown_;
    std::vector<Node> nodes_; // by the items' data
    HTREEITEM headings_[4]{}; // by kind
    bool isFilling_ = false;
    WPARAM defaultButton_ = 0;
};

} // namespace bv
