#include "dialogs/font_dlg.h"

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace bv {
namespace {

constexpr std::size_t kFixedPart = 26; // of a DLGTEMPLATEEX: up to the menu
constexpr std::size_t kItemAlignment = 4;
constexpr int kPointsPerInch = 72;

std::optional<LOGFONTW> MessageFontAt(int dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi)))
        return std::nullopt;
    return metrics.lfMessageFont;
}

int PointsOf(const LOGFONTW& font, int dpi) { return MulDiv(-font.lfHeight, kPointsPerInch, dpi); }

template <class Value>
void Append(DialogTemplate& target, const Value& value) {
    const auto* bytes = reinterpret_cast<const std::byte*>(&value);
    target.insert(target.end(), bytes, bytes + sizeof value);
}

// Behind a text of a template, or behind the number that can stand for one.
std::size_t BehindText(const DialogTemplate& source, std::size_t at) {
    WORD word = 1;
    for (; word != 0 && at + sizeof word <= source.size(); at += sizeof word)
        std::memcpy(&word, source.data() + at, sizeof word);
    return at;
}

std::size_t Aligned(std::size_t at) { return (at + kItemAlignment - 1) / kItemAlignment * kItemAlignment; }

// Size, weight, slant, character set and face name, as a template has them.
void AppendFont(DialogTemplate& target, const LOGFONTW& font, int dpi) {
    Append(target, static_cast<WORD>(PointsOf(font, dpi)));
    Append(target, static_cast<WORD>(font.lfWeight));
    Append(target, font.lfItalic);
    Append(target, font.lfCharSet);
    for (const WCHAR* letter = font.lfFaceName; *letter != 0; ++letter) Append(target, *letter);
    Append(target, WCHAR{0});
}

DialogTemplate WithFont(const DialogTemplate& source, const LOGFONTW& font, int dpi) {
    std::size_t at = kFixedPart;
    for (int text = 0; text < 3; ++text) at = BehindText(source, at); // menu, class and title
    constexpr std::size_t kBeforeFaceName = 6;
    const std::size_t items = Aligned(BehindText(source, at + kBeforeFaceName));
    DialogTemplate target(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(at));
    AppendFont(target, font, dpi);
    target.resize(Aligned(target.size()));
    if (items < source.size())
        target.insert(target.end(), source.begin() + static_cast<std::ptrdiff_t>(items), source.end());
    return target;
}

} // namespace

int DpiOf(HWND window) {
    const UINT dpi = window != nullptr ? GetDpiForWindow(window) : GetDpiForSystem();
    return static_cast<int>(dpi);
}

MessageFont::MessageFont(int dpi) {
    if (const std::optional<LOGFONTW> font = MessageFontAt(dpi)) font_ = CreateFontIndirectW(&*font);
}

MessageFont::MessageFont(const LOGFONTW& font) : font_(CreateFontIndirectW(&font)) {}

MessageFont::MessageFont(MessageFont&& other) noexcept : font_(std::exchange(other.font_, nullptr)) {}

MessageFont& MessageFont::operator=(MessageFont&& other) noexcept {
    std::swap(font_, other.font_);
    return *this;
}

MessageFont::~MessageFont() {
    if (font_ != nullptr) DeleteObject(font_);
}

bool IsPageTemplate(const DialogTemplate& source) {
    constexpr std::size_t kStyleAt = 12;
    DWORD style = 0;
    std::memcpy(&style, source.data() + kStyleAt, sizeof style);
    return (style & WS_CHILD) != 0;
}

SIZE UnitsOf(const DialogTemplate& source) {
    constexpr std::size_t kWidthAt = 22;
    WORD size[2] = {};
    std::memcpy(size, source.data() + kWidthAt, sizeof size);
    return {size[0], size[1]};
}

SIZE PixelsAt(int dpi, int sizedFor, SIZE units) {
    static constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::optional<LOGFONTW> sized = MessageFontAt(sizedFor);
    if (!sized) return {};
    sized->lfHeight = -MulDiv(PointsOf(*sized, dpi), dpi, kPointsPerInch); // whole points, as the template has them
    const MessageFont font(*sized);
    const HDC drawing = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(drawing, font.Handle());
    SIZE text{};
    TEXTMETRICW metrics{};
    GetTextExtentPoint32W(drawing, kLetters.data(), static_cast<int>(kLetters.size()), &text);
    GetTextMetricsW(drawing, &metrics);
    SelectObject(drawing, before);
    ReleaseDC(nullptr, drawing);
    const LONG width = (text.cx / 26 + 1) / 2; // of a letter, as the dialog manager measures it
    return {MulDiv(units.cx, width, 4), MulDiv(units.cy, metrics.tmHeight, 8)};
}

int FittingDpi(int dpi, SIZE units, SIZE area) {
    constexpr int kLeastPoints = 5;
    const std::optional<LOGFONTW> font = MessageFontAt(dpi);
    const int all = font ? PointsOf(*font, dpi) : 0;
    int fitting = dpi;
    for (int points = all; points >= kLeastPoints; --points) {
        fitting = MulDiv(dpi, points, all);
        const SIZE size = PixelsAt(dpi, fitting, units);
        if (size.cx <= area.cx && size.cy <= area.cy) break;
    }
    return fitting;
}

DialogTemplate LoadDialogTemplate(const char* name, int dpi, int sizedFor) {
    const HRSRC resource = FindResourceA(nullptr, name, RT_DIALOG);
    if (resource == nullptr) return {};
    const auto* bytes = static_cast<const std::byte*>(LockResource(LoadResource(nullptr, resource)));
    const DialogTemplate source(bytes, bytes + SizeofResource(nullptr, resource));
    const std::optional<LOGFONTW> font = MessageFontAt(sizedFor > 0 ? sizedFor : dpi);
    return font && font->lfHeight < 0 ? WithFont(source, *font, dpi) : source;
}

} // namespace bv
