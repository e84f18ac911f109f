#include "dialogs/list_dlg.h"

#include <commctrl.h>

#include <algorithm>

#include "platform/ascii.h"

namespace bv {
namespace {

constexpr UINT_PTR kFindAsYouType = 1;
constexpr DWORD kTypingPause = 1000; // milliseconds after which typing begins anew
constexpr int kTextMargin = 4;       // dialog units

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageA(window, message, wParam, lParam);
}

LRESULT SendText(HWND window, UINT message, const std::string& text) {
    return Send(window, message, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

// The messages of the two kinds of control.
struct EntryMessages {
    UINT Count, TextLength, Text;
};
constexpr EntryMessages kListBox{LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT};
constexpr EntryMessages kComboBox{CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT};

std::string EntryText(HWND window, const EntryMessages& messages, int index) {
    const auto which = static_cast<WPARAM>(index);
    const LRESULT length = index < 0 ? LB_ERR : Send(window, messages.TextLength, which);
    if (length < 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    const LRESULT copied = Send(window, messages.Text, which, reinterpret_cast<LPARAM>(text.data()));
    text.resize(copied < 0 ? 0 : static_cast<std::size_t>(copied));
    return text;
}

bool HasEntry(HWND window, const EntryMessages& messages, const std::string& entry) {
    const auto count = static_cast<int>(Send(window, messages.Count));
    for (int i = 0; i < count; ++i)
        if (EqualFolded(EntryText(window, messages, i), entry)) return true;
    return false;
}

// What has been typed into a list box without a pause.
struct Typing {
    std::wstring Text;
    DWORD Last = 0;
};

std::wstring TypedCharacter(HWND list, WPARAM character) {
    if (IsWindowUnicode(list)) return {static_cast<wchar_t>(character)};
    const char byte = static_cast<char>(character);
    wchar_t wide = 0;
    return MultiByteToWideChar(CP_ACP, 0, &byte, 1, &wide, 1) == 1 ? std::wstring{wide} : std::wstring{};
}

// The next entry, round the end, that begins with the text.
LRESULT FindBeginning(HWND list, LRESULT after, const std::wstring& text) {
    return SendMessageW(list, LB_FINDSTRING, static_cast<WPARAM>(after), reinterpret_cast<LPARAM>(text.c_str()));
}

LRESULT FindTyped(HWND list, Typing& typing, const std::wstring& character) {
    const DWORD now = GetTickCount();
    if (now - typing.Last > kTypingPause) typing.Text.clear();
    typing.Last = now;
    const LRESULT current = Send(list, LB_GETCURSEL);
    const bool goesOn = !typing.Text.empty();
    typing.Text += character;
    const LRESULT found = FindBeginning(list, goesOn ? current - 1 : current, typing.Text);
    if (found != LB_ERR || !goesOn) return found;
    typing.Text = character; // the same letter again and again walks through its entries
    return FindBeginning(list, current, typing.Text);
}

void SelectTyped(HWND list, Typing& typing, WPARAM character) {
    const LRESULT found = FindTyped(list, typing, TypedCharacter(list, character));
    if (found == LB_ERR || found == Send(list, LB_GETCURSEL)) return;
    Send(list, LB_SETCURSEL, static_cast<WPARAM>(found));
    const int id = GetDlgCtrlID(list);
    Send(GetParent(list), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
}

LRESULT CALLBACK FindAsYouType(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR data) {
    auto* typing = reinterpret_cast<Typing*>(data);
    if (message == WM_CHAR && wParam >= ' ') {
        SelectTyped(list, *typing, wParam);
        return 0;
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(list, FindAsYouType, id);
        delete typing;
    }
    return DefSubclassProc(list, message, wParam, lParam);
}

int ToPixels(HWND dialog, int units) {
    RECT rectangle{0, 0, units, 0};
    MapDialogRect(dialog, &rectangle);
    return rectangle.right;
}

} // namespace

void ListBoxTarget::Clear() { Send(list_, LB_RESETCONTENT); }
void ListBoxTarget::Add(const std::string& entry) { SendText(list_, LB_ADDSTRING, entry); }
bool ListBoxTarget::Contains(const std::string& entry) const { return HasEntry(list_, kListBox, entry); }

void ComboBoxTarget::Clear() { Send(combo_, CB_RESETCONTENT); }
void ComboBoxTarget::Add(const std::string& entry) { SendText(combo_, CB_ADDSTRING, entry); }
bool ComboBoxTarget::Contains(const std::string& entry) const { return HasEntry(combo_, kComboBox, entry); }

int SelectedEntry(HWND dialog, int list) { return static_cast<int>(Send(GetDlgItem(dialog, list), LB_GETCURSEL)); }

void SelectEntry(HWND dialog, int list, int index) {
    const HWND window = GetDlgItem(dialog, list);
    const int last = static_cast<int>(Send(window, LB_GETCOUNT)) - 1;
    Send(window, LB_SETCURSEL, static_cast<WPARAM>(std::min(index, last)));
}

void PrepareList(HWND dialog, int list, int column) {
    const HWND window = GetDlgItem(dialog, list);
    Send(window, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&column));
    SetWindowSubclass(window, FindAsYouType, kFindAsYouType, reinterpret_cast<DWORD_PTR>(new Typing));
}

void FitListWidth(HWND dialog, int list, int column) {
    const HWND window = GetDlgItem(dialog, list);
    const int tab = ToPixels(dialog, column);
    const HDC drawing = GetDC(window);
    const HGDIOBJ before = SelectObject(drawing, reinterpret_cast<HGDIOBJ>(Send(window, WM_GETFONT)));
    int widest = 0;
    const auto count = static_cast<int>(Send(window, LB_GETCOUNT));
    for (int i = 0; i < count; ++i) {
        const std::string text = EntryText(window, kListBox, i);
        const int length = static_cast<int>(text.size());
        widest = std::max<int>(widest, LOWORD(GetTabbedTextExtentA(drawing, text.c_str(), length, 1, &tab)));
    }
    SelectObject(drawing, before);
    ReleaseDC(window, drawing);
    Send(window, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest + ToPixels(dialog, kTextMargin)));
}

} // namespace bv
