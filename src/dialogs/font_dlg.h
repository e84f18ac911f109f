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
    explicit MessageFont(const LOGFONTW& font);
    MessageFont(MessageFont&& other) noexcept;
    MessageFont& operator=(MessageFont&& other) noexcept;
    ~MessageFont();

    // None when the system has refused it.
    [[nodiscard]] HFONT Handle() const { return font_; }

  private:
    HFONT font_ = nullptr;
};

using DialogTemplate = std::vector<std::byte>;

// A dialog template (DLGTEMPLATEEX with a font) of the program's resources, with the message font in place of its own,
// for a window of a resolution; as large as at another one, if that is given. Empty when there is none of that name.
DialogTemplate LoadDialogTemplate(const char* name, int dpi, int sizedFor = 0);

// Whether a template is that of a page inside another dialog.
bool IsPageTemplate(const DialogTemplate& source);

// The size of a template's client area, in dialog units.
SIZE UnitsOf(const DialogTemplate& source);

// Dialog units as pixels, in a template that was loaded for a window and, if given, as large as at another resolution.
SIZE PixelsAt(int dpi, int sizedFor, SIZE units);

// The largest resolution up to that of the window at which so many units fit an area of so many pixels. Letters of less
// than five points nobody reads, so that what is still too large then is cut.
int FittingDpi(int dpi, SIZE units, SIZE area);

} // namespace bv
