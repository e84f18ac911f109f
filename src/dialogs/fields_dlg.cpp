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

bool IsOfClass(HWND window, const char* name) {
    char found[32] = "";
    GetClassNameA(window, found, sizeof found);
    return lstrcmpiA(found, name) == 0;
}

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

void FillChoice(HWND dialog, const FieldControl& field, const std::string& text) {
    SendDlgItemMessageA(dialog, field.Control, CB_RESETCONTENT, 0, 0);
    for (const std::string_view value : field.Values)
        SendDlgItemMessageA(dialog, field.Control, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(std::string(value).c_str()));
    SendDlgItemMessageA(dialog, field.Control, CB_SELECTSTRING, static_cast<WPARAM>(-1),
                        reinterpret_cast<LPARAM>(text.c_str()));
}

void LimitText(HWND dialog, int control, std::size_t limit) {
    if (limit == 0) return;
    const bool isCombo = IsOfClass(GetDlgItem(dialog, control), "ComboBox");
    SendDlgItemMessageA(dialog, control, isCombo ? CB_LIMITTEXT : EM_LIMITTEXT, limit, 0);
}

void ShowField(HWND dialog, const FieldControl& field, const FieldRecord& record) {
    const std::string text = record.TextOf(field.Key);
    switch (field.Form) {
    case FieldForm::Text:
        LimitText(dialog, field.Control, record.LimitOf(field.Key));
        SetText(dialog, field.Control, text);
        break;
    case FieldForm::Check: SetChecked(dialog, field.Control, text == kYes); break;
    case FieldForm::Choice: FillChoice(dialog, field, text); break;
    case FieldForm::Words:
        for (std::size_t i = 0; i < field.Values.size(); ++i)
            SetChecked(dialog, field.Control + static_cast<int>(i), HasWord(text, field.Values[i]));
        break;
    }
}

// What the controls say; none after kNotInCodePage.
std::optional<std::string> FieldText(HWND dialog, const FieldControl& field) {
    std::string text;
    switch (field.Form) {
    case FieldForm::Check: return std::string(IsChecked(dialog, field.Control) ? kYes : kNo);
    case FieldForm::Words:
        for (std::size_t i = 0; i < field.Values.size(); ++i) {
            if (!IsChecked(dialog, field.Control + static_cast<int>(i))) continue;
            text.append(text.empty() ? "" : " ").append(field.Values[i]);
        }
        return text;
    default: return TakeText(dialog, field.Control, text) ? std::optional(text) : std::nullopt;
    }
}

HWND MakeTooltips(HWND dialog) {
    constexpr int kWidest = 250; // dialog units, then lines are broken
    const HWND tips = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, dialog, nullptr,
                                      GetModuleHandleA(nullptr), nullptr);
    SendMessageA(tips, TTM_SETMAXTIPWIDTH, 0, UnitsAcross(dialog, kWidest));
    return tips;
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

void ShowFields(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record) {
    for (const FieldControl& field : fields) ShowField(dialog, field, record);
}

int TakeFields(HWND dialog, std::span<const FieldControl> fields, FieldRecord& record) {
    for (const FieldControl& field : fields) {
        const std::optional<std::string> text = FieldText(dialog, field);
        if (!text) return field.Control;
        if (*text == record.TextOf(field.Key)) continue;
        if (const std::optional<std::string> fault = record.Enter(field.Key, *text)) {
            ShowError("%s", *fault);
            return field.Control;
        }
    }
    return 0;
}

HWND AddTooltips(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record) {
    const HWND tips = MakeTooltips(dialog);
    for (const FieldControl& field : fields) {
        std::string text = std::string(field.Key) + ": " + record.Describe(field.Key);
        const int last =
            field.Control + (field.Form == FieldForm::Words ? static_cast<int>(field.Values.size()) - 1 : 0);
        for (int control = field.Control; control <= last; ++control) {
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
    }
    return tips;
}

std::string StateOfControls(HWND dialog) {
    std::string state;
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr; control = GetWindow(control, GW_HWNDNEXT))
        AppendState(control, state);
    return state;
}

} // namespace bv
