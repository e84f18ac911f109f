// The program's icon on its windows, at the sizes that their resolution asks for.
#pragma once

#include <windows.h>

namespace bv {

// One size of the icon; the nearest in the file serves, so that it is sharp.
class ProgramIcon {
  public:
    ProgramIcon() = default;
    explicit ProgramIcon(int size);
    ProgramIcon(ProgramIcon&& other) noexcept;
    ProgramIcon& operator=(ProgramIcon&& other) noexcept;
    ~ProgramIcon();

    [[nodiscard]] HICON Handle() const { return icon_; }

  private:
    HICON icon_ = nullptr;
};

// The small and the large icon of a window, to be kept for as long as it shows them.
class WindowIcons {
  public:
    // Gives them to the window, or others in their place.
    void Show(HWND window, int dpi);

  private:
    ProgramIcon small_;
    ProgramIcon large_;
};

} // namespace bv
