// Dialogs that can be resized: which edges of its dialog a control keeps its distance from, and where the person left
// the dialog the last time.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace bv {

enum Edges : unsigned {
    kStays = 0,
    kMovesAcross = 1, // with the dialog's right edge
    kMovesDown = 2,   // with its lower edge
    kGrowsAcross = 4,
    kGrowsDown = 8,
    kGrowsHalf = 16, // across, by half of what the dialog grows: the left one of two side by side
    kMovesHalf = 32, // the same: what stands between the two, and, growing by the other half, the right one
    kMovesBoth = kMovesAcross | kMovesDown,
    kGrowsBoth = kGrowsAcross | kGrowsDown,
};

struct Anchor {
    int Control;
    unsigned Edges;
};

// The places of a dialog's controls while its size changes.
class Layout {
  public:
    // Notes where the controls stand in a client area of so many pixels, the template's, which is also the smallest:
    // a small screen may have made the window smaller already.
    void Begin(HWND dialog, std::span<const Anchor> anchors, SIZE client);

    // Moves the controls to where the dialog's size puts them.
    void Apply(HWND dialog) const;

    // From now on all is so much larger or smaller, as with another resolution.
    void Scale(int to, int from);

    // The smallest size of the whole window, for WM_GETMINMAXINFO; 0, 0 for a dialog of a fixed size.
    [[nodiscard]] SIZE Smallest() const { return smallest_; }

  private:
    struct Place {
        HWND Control;
        unsigned Edges;
        RECT At;
    };
    std::vector<Place> places_;
    SIZE client_{};
    SIZE smallest_{};
};

// The part of its screen that a window at that place may cover.
RECT WorkAreaAt(const RECT& place);

// Where a control stands in its parent.
RECT PlaceInParent(HWND control);

// Puts a dialog in the middle of the dialog that owns it, or of the screen when that is none, and on its screen's work
// area whole.
void CentreDialog(HWND dialog);

// Keeps the size and place of a dialog for this person, and gives it back, within the work area of the screen.
void RememberPlace(HWND dialog, const std::string& templateName);
bool RestorePlace(HWND dialog, const std::string& templateName);

// Where what is remembered of a dialog lies.
std::string SettingsFolder(const std::string& templateName);

} // namespace bv
