#include "dialogs/fields_dlg.h"

#include <commctrl.h>

#include <algorithm>

#include "dialogs/dialog_dlg.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kYes = "YES";
constexpr std::string_view kNo = "NO";

void SetChecked(HWND dialog, int control, bool checked) {
    CheckDlgButton(dialog, control, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool IsChecked(HWND dialog, int control) { return IsDlgButtonChecked(dialog, control) == BST_CHECKED; }

bool HasWord(std::string_view text, std::string_view word) {
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        if (EqualFolded(text.substr(0, length), word)) return true;
        text = SkipBlanks(text.substr(length));
    }
    return false;
}

void AddEntries(HWND dialog, const FieldControl& field) {
    SendDlgItemMessageA(dialog, field.Control, CB_RESETCONTENT, 0, 0);
    for (std::size_t i = 0; i < field.Values.size(); ++i) {
        const std::string entry = field.Titles.empty() ? std::string(field.Values[i]) : field.Titles[i];
        SendDlgItemMessageA(dialog, field.Control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    }
}

// The place of the text among the values, or -1.
int ValueIndex(const FieldControl& field, std::string_view text) {
    const auto isText = [text](std::string_view value) { return EqualFolded(value, text); };
    const auto found = std::ranges::find_if(field.Values, isText);
    return found == field.Values.end() ? -1 : static_cast<int>(found - field.Values.begin());
}

void LimitText(HWND dialog, int control, std::size_t limit) {
    if (limit == 0) return;
    const bool isCombo = IsOfClass(GetDlgItem(dialog, control), "ComboBox");
    SendDlgItemMessageA(dialog, control, isCombo ? CB_LIMITTEXT : EM_LIMITTEXT, limit, 0);
}

void ShowText(HWND dialog, const FieldControl& field, const FieldRecord& record, const std::string& text) {
    if (!field.Values.empty()) AddEntries(dialog, field);
    LimitText(dialog, field.Control, record.LimitOf(field.Key));
    SetText(dialog, field.Control, text);
}

void ShowNumber(HWND dialog, const FieldControl& field, const FieldRecord& record, const std::string& text) {
    const std::size_t largest = record.LimitOf(field.Key);
    if (field.Values.empty()) {
        GiveArrows(dialog, field.Control, 0, largest);
    } else {
        AddEntries(dialog, field);
        LimitText(dialog, field.Control, std::to_string(largest).size());
    }
    SetText(dialog, field.Control, text);
}

void ShowField(HWND dialog, const FieldControl& field, const FieldRecord& record) {
    const std::string text = record.TextOf(field.Key);
    switch (field.Form) {
    case FieldForm::Text: return ShowText(dialog, field, record, text);
    case FieldForm::Number: return ShowNumber(dialog, field, record, text);
    case FieldForm::Check: return SetChecked(dialog, field.Control, text == kYes);
    case FieldForm::Choice:
        AddEntries(dialog, field);
        SendDlgItemMessageA(dialog, field.Control, CB_SETCURSEL, static_cast<WPARAM>(ValueIndex(field, text)), 0);
        break;
    case FieldForm::Radio:
        for (int i = 0; i < static_cast<int>(field.Values.size()); ++i)
            SetChecked(dialog, field.Control + i, i == ValueIndex(field, text));
        break;
    case FieldForm::Words:
        for (std::size_t i = 0; i < field.Values.size(); ++i)
            SetChecked(dialog, field.Control + static_cast<int>(i), HasWord(text, field.Values[i]));
        break;
    }
}

std::string TickedWords(HWND dialog, const FieldControl& field) {
    std::string text;
    for (std::size_t i = 0; i < field.Values.size(); ++i) {
        if (!IsChecked(dialog, field.Control + static_cast<int>(i))) continue;
        text.append(text.empty() ? "" : " ").append(field.Values[i]);
    }
    return text;
}

// The words of the text that have a check box; there may be others, which are kept with them.
std::string KnownWords(const FieldControl& field, std::string_view text) {
    std::string known;
    for (const std::string_view word : field.Values)
        if (HasWord(text, word)) known.append(known.empty() ? "" : " ").append(word);
    return known;
}

// The place of the value that is chosen, or -1.
int ChosenIndex(HWND dialog, const FieldControl& field) {
    if (field.Form == FieldForm::Choice)
        return static_cast<int>(SendDlgItemMessageA(dialog, field.Control, CB_GETCURSEL, 0, 0));
    for (int i = 0; i < static_cast<int>(field.Values.size()); ++i)
        if (IsChecked(dialog, field.Control + i)) return i;
    return -1;
}

// What the controls say; none after kNotInCodePage. As long as nothing is chosen, the value is what it was.
std::optional<std::string> FieldText(HWND dialog, const FieldControl& field, const FieldRecord& record) {
    switch (field.Form) {
    case FieldForm::Check: return std::string(IsChecked(dialog, field.Control) ? kYes : kNo);
    case FieldForm::Words: {
        const std::string before = record.TextOf(field.Key);
        const std::string words = TickedWords(dialog, field);
        return words == KnownWords(field, before) ? before : words;
    }
    case FieldForm::Choice:
    case FieldForm::Radio: {
        const int chosen = ChosenIndex(dialog, field);
        if (chosen < 0 || chosen == ValueIndex(field, record.TextOf(field.Key))) return record.TextOf(field.Key);
        return std::string(field.Values[static_cast<std::size_t>(chosen)]);
    }
    default: break;
    }
    std::string text;
    return TakeText(dialog, field.Control, text) ? std::optional(text) : std::nullopt;
}

// The same as far as it can be told without a message.
std::string ShownText(HWND dialog, const FieldControl& field, const FieldRecord& record) {
    const bool isTyped = field.Form == FieldForm::Text || field.Form == FieldForm::Number;
    return isTyped ? GetText(dialog, field.Control) : FieldText(dialog, field, record).value_or("");
}

// The control that the field's last value is shown by.
int LastControl(const FieldControl& field) {
    const bool isRow = field.Form == FieldForm::Words || field.Form == FieldForm::Radio;
    return field.Control + (isRow ? static_cast<int>(field.Values.size()) - 1 : 0);
}

HWND MakeTooltips(HWND dialog) {
    constexpr int kWidest = 250; // dialog units, then lines are broken
    const HWND tips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, dialog, nullptr,
                                      GetModuleHandleA(nullptr), nullptr);
    SendMessageA(tips, TTM_SETMAXTIPWIDTH, 0, UnitsAcross(dialog, kWidest));
    return tips;
}

void AddTo(HWND tips, HWND dialog, int control, std::string& text) {
    TOOLINFOA tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
    tool.hwnd = dialog;
    tool.uId = reinterpret_cast<UINT_PTR>(GetDlgItem(dialog, control));
    tool.lpszText = text.data();
    SendMessageA(tips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    tool.uId = reinterpret_cast<UINT_PTR>(GetWindow(GetDlgItem(dialog, control), GW_CHILD));
    if (tool.uId != 0) SendMessageA(tips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool)); // of a combo box
}

void AppendState(HWND control, std::string& state) {
    if (IsOfClass(control, "Button")) {
        state += static_cast<char>('0' + SendMessageA(control, BM_GETCHECK, 0, 0));
    } else if (IsOfClass(control, "Edit") || IsOfClass(control, "ComboBox")) {
        wchar_t text[512] = L"";
        GetWindowTextW(control, text, 512);
        state.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(lstrlenW(text)) * sizeof(wchar_t));
    }
    state += '\n';
}

} // namespace

void GiveArrows(HWND dialog, int control, std::size_t smallest, std::size_t largest) {
    const HWND edit = GetDlgItem(dialog, control);
    HWND arrows = ArrowsOf(edit);
    if (arrows == nullptr) {
        constexpr DWORD kStyle =
            WS_CHILD | WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_NOTHOUSANDS;
        arrows = CreateWindowExA(0, UPDOWN_CLASSA, nullptr, kStyle, 0, 0, 0, 0, dialog, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
        SetWindowPos(arrows, edit, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        SendMessageA(arrows, UDM_SETBUDDY, reinterpret_cast<WPARAM>(edit), 0);
    }
    SendMessageA(arrows, UDM_SETRANGE32, smallest, static_cast<LPARAM>(largest));
    SendMessageA(edit, EM_LIMITTEXT, std::to_string(largest).size(), 0);
}

void ShowFields(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record) {
    for (const FieldControl& field : fields) ShowField(dialog, field, record);
}

int TakeFields(HWND dialog, std::span<const FieldControl> fields, FieldRecord& record) {
    for (const FieldControl& field : fields) {
        const std::optional<std::string> text = FieldText(dialog, field, record);
        if (!text) return field.Control;
        if (*text == record.TextOf(field.Key)) continue;
        if (const std::optional<std::string> fault = record.Enter(field.Key, *text)) {
            ShowError("%s", *fault);
            return field.Control;
        }
    }
    return 0;
}

void TakeGoodFields(HWND dialog, std::span<const FieldControl> fields, FieldRecord& record) {
    for (const FieldControl& field : fields) {
        const std::string text = ShownText(dialog, field, record);
        if (text != record.TextOf(field.Key)) record.Enter(field.Key, text);
    }
}

bool DifferFrom(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record) {
    return std::ranges::any_of(fields, [&](const FieldControl& field) {
        return ShownText(dialog, field, record) != record.TextOf(field.Key);
    });
}

HWND AddTooltips(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record) {
    const HWND tips = MakeTooltips(dialog);
    for (const FieldControl& field : fields) {
        std::string text = std::string(field.Key) + ": " + record.Describe(field.Key);
        for (int control = field.Control; control <= LastControl(field); ++control) AddTo(tips, dialog, control, text);
    }
    return tips;
}

HWND AddTooltip(HWND dialog, int control, std::string text) {
    const HWND tips = MakeTooltips(dialog);
    AddTo(tips, dialog, control, text);
    return tips;
}

std::string StateOfControls(HWND dialog) {
    std::string state;
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT))
        AppendState(control, state);
    return state;
}

} // namespace bv
