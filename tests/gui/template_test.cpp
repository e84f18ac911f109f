// Every dialog template of the program, at 100, 150 and 200 %: nothing cut, nothing overlapping, even margins, and all
// of it within reach of the keyboard.
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <set>

#include "dialogs/font_dlg.h"
#include "gui/gui.h"
#include "resources/ids.h"

namespace bv::gui {
namespace {

constexpr int kMargin = 7; // dialog units

std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    EnumResourceNamesA(
        nullptr, RT_DIALOG,
        [](HMODULE, LPCSTR, LPSTR name, LONG_PTR data) -> BOOL {
            reinterpret_cast<std::vector<std::string>*>(data)->emplace_back(name);
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&names));
    return names;
}

// The template with another font size, which scales the dialog as another screen resolution does.
std::vector<std::byte> Scaled(const std::string& name, int percent) {
    const HRSRC resource = FindResourceA(nullptr, name.c_str(), RT_DIALOG);
    const HGLOBAL loaded = LoadResource(nullptr, resource);
    const auto* bytes = static_cast<const std::byte*>(LockResource(loaded));
    std::vector<std::byte> copy(bytes, bytes + SizeofResource(nullptr, resource));
    std::size_t at = 26; // behind the fixed part: menu, class and title, each a word 0 or a text
    for (int field = 0; field < 3; ++field) {
        WORD word = 1;
        while (word != 0) {
            std::memcpy(&word, copy.data() + at, sizeof word);
            at += sizeof word;
        }
    }
    WORD points = 0;
    std::memcpy(&points, copy.data() + at, sizeof points);
    points = static_cast<WORD>(points * percent / 100);
    std::memcpy(copy.data() + at, &points, sizeof points);
    return copy;
}

// A dialog of a template, never shown, without its program's behaviour.
class Sample {
  public:
    Sample(const std::string& name, int percent) : template_(Scaled(name, percent)) {
        dialog_ = CreateDialogIndirectParamA(
            GetModuleHandleA(nullptr), reinterpret_cast<LPCDLGTEMPLATEA>(template_.data()), GetDesktopWindow(),
            [](HWND, UINT message, WPARAM, LPARAM data) -> INT_PTR {
                constexpr LONG kLarge = 5000; // than the screen, which would cut a window that can be resized
                if (message != WM_GETMINMAXINFO) return FALSE;
                reinterpret_cast<MINMAXINFO*>(data)->ptMaxTrackSize = {kLarge, kLarge};
                return TRUE;
            },
            0);
        RECT frame{};
        std::memcpy(&frame.right, template_.data() + 22, sizeof(WORD));
        std::memcpy(&frame.bottom, template_.data() + 24, sizeof(WORD));
        MapDialogRect(dialog_, &frame);
        AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongA(dialog_, GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongA(dialog_, GWL_EXSTYLE)));
        SetWindowPos(dialog_, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top, SWP_NOMOVE);
    }
    ~Sample() { DestroyWindow(dialog_); }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    [[nodiscard]] HWND Dialog() const { return dialog_; }

    [[nodiscard]] RECT Units(int width, int height) const {
        RECT rectangle{0, 0, width, height};
        MapDialogRect(dialog_, &rectangle);
        return rectangle;
    }

  private:
    std::vector<std::byte> template_;
    HWND dialog_;
};

// Where a control stands in its dialog, a combo box closed.
RECT PlaceOf(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::string Named(HWND control) {
    return ClassOf(control) + " " + std::to_string(GetDlgCtrlID(control)) + " \"" + Text(control) + "\"";
}

LONG Style(HWND control) { return GetWindowLongA(control, GWL_STYLE); }

bool IsRadioButton(HWND control) {
    return ClassOf(control) == "Button" && (Style(control) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
}

bool IsGroupBox(HWND control) { return ClassOf(control) == "Button" && (Style(control) & BS_TYPEMASK) == BS_GROUPBOX; }

// A page stands in a dialog that has the buttons, and ends where its controls do.
bool IsPage(HWND dialog) { return (Style(dialog) & WS_CHILD) != 0; }

// A tab control has a mnemonic for no page; the arrows choose one.
bool TakesInput(HWND control) {
    const std::string name = ClassOf(control);
    return name != "Static" && name != "msctls_progress32" && name != "SysTabControl32" && !IsGroupBox(control);
}

char Mnemonic(const std::string& text) {
    const std::size_t mark = text.find('&');
    return mark == std::string::npos || mark + 1 == text.size() ? '\0'
                                                                : static_cast<char>(std::toupper(text[mark + 1]));
}

SIZE TextSize(HWND control) {
    const HDC drawing = GetDC(control);
    const HGDIOBJ before = SelectObject(drawing, reinterpret_cast<HGDIOBJ>(Send(control, WM_GETFONT)));
    RECT needed{};
    wchar_t text[256] = L"";
    GetWindowTextW(control, text, 256);
    DrawTextW(drawing, text, -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(drawing, before);
    ReleaseDC(control, drawing);
    return {needed.right, needed.bottom};
}

// What a control needs for its text, with a button's frame or a radio button's circle.
SIZE NeededSize(HWND control, const Sample& sample) {
    SIZE size = TextSize(control);
    if (ClassOf(control) != "Button") return size;
    if (IsGroupBox(control)) return size;
    size.cx += IsRadioButton(control) ? sample.Units(12, 0).right : sample.Units(6, 0).right;
    if (!IsRadioButton(control)) size.cy += sample.Units(0, 2).bottom;
    return size;
}

class ScaledTemplates : public testing::TestWithParam<int> {};

TEST_P(ScaledTemplates, CutNoText) {
    for (const std::string& name : TemplateNames()) {
        const Sample sample(name, GetParam());
        for (const HWND control : Children(sample.Dialog())) {
            if (Text(control).empty() || (ClassOf(control) != "Static" && ClassOf(control) != "Button")) continue;
            const RECT place = PlaceOf(control);
            const SIZE needed = NeededSize(control, sample);
            EXPECT_LE(needed.cx, place.right - place.left) << name << ": " << Named(control);
            EXPECT_LE(needed.cy, place.bottom - place.top) << name << ": " << Named(control);
        }
    }
}

TEST_P(ScaledTemplates, HaveEvenMarginsAndNoOverlaps) {
    for (const std::string& name : TemplateNames()) {
        const Sample sample(name, GetParam());
        RECT client{};
        GetClientRect(sample.Dialog(), &client);
        RECT all{client.right, client.bottom, 0, 0};
        const std::vector<HWND> controls = Children(sample.Dialog());
        for (std::size_t i = 0; i < controls.size(); ++i) {
            const RECT place = PlaceOf(controls[i]);
            all = {std::min(all.left, place.left), std::min(all.top, place.top), std::max(all.right, place.right),
                   std::max(all.bottom, place.bottom)};
            for (std::size_t j = 0; j < i; ++j) {
                const RECT other = PlaceOf(controls[j]);
                RECT common{};
                const bool overlaps = IntersectRect(&common, &place, &other);
                const bool isInside = IsGroupBox(controls[j]) && EqualRect(&common, &place);
                EXPECT_FALSE(overlaps && !isInside)
                    << name << ": " << Named(controls[i]) << " on " << Named(controls[j]);
            }
        }
        const RECT margin = sample.Units(kMargin, kMargin);
        EXPECT_NEAR(all.left, margin.right, 1) << name;
        EXPECT_NEAR(all.top, margin.bottom, 1) << name;
        if (IsPage(sample.Dialog())) {
            EXPECT_GE(client.right - all.right, margin.right - 2) << name;
            EXPECT_GE(client.bottom - all.bottom, margin.bottom - 2) << name;
            continue;
        }
        EXPECT_NEAR(client.right - all.right, margin.right, 2) << name;
        EXPECT_NEAR(client.bottom - all.bottom, margin.bottom, 2) << name;
        const RECT largest = sample.Units(480, 270); // of a screen of 1366 x 768 at 150 %
        EXPECT_TRUE(client.right <= largest.right && client.bottom <= largest.bottom) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Percent, ScaledTemplates, testing::Values(100, 150, 200),
                         [](const auto& percent) { return std::to_string(percent.param); });

TEST(Templates, AreAsLargeAsTheyAreMeasured) {
    constexpr int kDpi = 96;
    for (const int sizedFor : {kDpi, 84, 75, 64, 54}) {
        const DialogTemplate source = LoadDialogTemplate("ConfigUsersBox", kDpi, sizedFor);
        const HWND dialog = CreateDialogIndirectParamA(
            nullptr, reinterpret_cast<LPCDLGTEMPLATEA>(source.data()), nullptr,
            [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
        RECT client{};
        GetClientRect(dialog, &client);
        const SIZE measured = PixelsAt(kDpi, sizedFor, UnitsOf(source));
        EXPECT_EQ(client.right, measured.cx) << sizedFor;
        EXPECT_EQ(client.bottom, measured.cy) << sizedFor;
        DestroyWindow(dialog);
    }
}

// At 200 % a screen of 1024 x 768 holds no large dialog; then its letters are smaller, but not than at 100 %.
TEST(Templates, FitASmallScreenAtAHighResolution) {
    constexpr SIZE kArea{1024 - 16, 768 - 72}; // without a task bar and a window's frame
    constexpr int kDpi = 192;
    for (const std::string& name : TemplateNames()) {
        SCOPED_TRACE(name);
        const SIZE units = UnitsOf(LoadDialogTemplate(name.c_str(), kDpi));
        const int dpi = FittingDpi(kDpi, units, kArea);
        const SIZE pixels = PixelsAt(kDpi, dpi, units);
        EXPECT_TRUE(pixels.cx <= kArea.cx && pixels.cy <= kArea.cy) << pixels.cx << " x " << pixels.cy;
        EXPECT_GE(dpi, 96);
        EXPECT_EQ(FittingDpi(96, units, kArea), 96);
    }
}

TEST(Templates, AreAllThere) {
    EXPECT_EQ(TemplateNames().size(), 85u); // so that no test here passes for want of templates
}

TEST(Templates, GiveEachInputAMnemonicAndANameOfItsOwn) {
    for (const std::string& name : TemplateNames()) {
        const Sample sample(name, 100);
        std::set<char> seen;
        if (IsPage(sample.Dialog())) seen.insert('H'); // of the Help beside it
        const bool isOfSettings = name.starts_with("Options") || name == "ConfigLcrBox" || name == "MailGatewayBox";
        if (isOfSettings && IsPage(sample.Dialog())) seen.insert({'N', 'P', 'Y'});
        if (IsPage(sample.Dialog()) && name.starts_with("RoutingRule")) seen.insert({'D', 'V', 'X'});
        std::set<std::string> names; // that a screen reader says
        std::string label;           // the text before the control
        for (const HWND control : Children(sample.Dialog())) {
            const char own = Mnemonic(Text(control));
            EXPECT_TRUE(own == '\0' || seen.insert(own).second) << name << " has two of " << own;
            const int id = GetDlgCtrlID(control);
            const std::string said = ClassOf(control) == "Button" ? Text(control) : label;
            const bool labelled = Mnemonic(said) != '\0';
            EXPECT_TRUE(labelled || !TakesInput(control) || id == IDOK || id == IDCANCEL)
                << name << ": " << Named(control);
            EXPECT_TRUE(!TakesInput(control) || names.insert(said).second) << name << " has two of " << said;
            label = ClassOf(control) == "Static" ? Text(control) : "";
        }
    }
}

TEST(Templates, AreTabbedThroughInReadingOrder) {
    for (const std::string& name : TemplateNames()) {
        const Sample sample(name, 100);
        const HWND first = GetNextDlgTabItem(sample.Dialog(), nullptr, FALSE);
        HWND last = first;
        for (HWND next = GetNextDlgTabItem(sample.Dialog(), first, FALSE); next != first;
             next = GetNextDlgTabItem(sample.Dialog(), next, FALSE)) {
            const RECT from = PlaceOf(last);
            const RECT to = PlaceOf(next);
            EXPECT_TRUE(to.top > from.top || to.left > from.left) << name << ": " << Named(last) << ", " << Named(next);
            last = next;
        }
    }
}

TEST(Templates, HaveADefaultButtonAndHelp) {
    for (const std::string& name : TemplateNames()) {
        const Sample sample(name, 100);
        int defaults = 0;
        for (const HWND control : Children(sample.Dialog()))
            if ((Send(control, WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON) != 0) ++defaults;
        const bool isWhole = name != "PROGRESS_DLG" && !IsPage(sample.Dialog());
        EXPECT_EQ(defaults, isWhole ? 1 : 0) << name;
        EXPECT_EQ(GetDlgItem(sample.Dialog(), ID_HELP_BUTTON) != nullptr, isWhole) << name;
    }
}

} // namespace
} // namespace bv::gui
