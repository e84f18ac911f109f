// The system's message font, at a window's resolution and the person's text size, for windows and for the templates of
// dialogs, which then measure themselves by it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

namespace bv {

// The window's dots per inch; the system's without a window.
int DpiOf(HWND window);

// A font that its holder keeps for as long as windows use it.
class MessageFont {
  public:
    MessageFont() = default;
    explicit MessageFont(int dpi);
    MessageFont(MessageFont&& other) noexcept;
    MessageFont& operator=(MessageFont&& other) noexcept;
    ~MessageFont();

    // None when the system has refused it.
    [[nodiscard]] HFONT Handle() const { return font_; }

  private:
    HFONT font_ = nullptr;
};

using DialogTemplate = std::vector<std::byte>;

// A dialog template (DLGTEMPLATEEX with a font) of the program's resources, with the message font in place of its own;
// empty when there is none of that name.
DialogTemplate LoadDialogTemplate(const char* name, int dpi);

// The size of a template's client area, in dialog units.
SIZE UnitsOf(const DialogTemplate& source);

} // namespace bv
