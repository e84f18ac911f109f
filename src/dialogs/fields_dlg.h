// Controls that show and take the values of a record's keys: a row for each, no code for a single one.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace bv {

// A record as controls see it: its keys, without colons, and their values as files have them.
class FieldRecord {
  public:
    virtual ~FieldRecord() = default;

    [[nodiscard]] virtual std::string TextOf(std::string_view key) const = 0;

    // Takes a value; the fault, in a sentence, when it cannot.
    virtual std::optional<std::string> Enter(std::string_view key, std::string_view text) = 0;

    // The characters that a value has at most, or the largest of a number; 0 for what is not typed.
    [[nodiscard]] virtual std::size_t LimitOf(std::string_view key) const = 0;

    // What a tooltip says of the key (TooltipOf of ctlfile/key_help.h).
    [[nodiscard]] virtual std::string Describe(std::string_view key) const = 0;
};

enum class FieldForm {
    Text,   // an edit control, or a combo box that can be typed into and offers the values
    Number, // an edit control for digits, which gets arrows beside it, or a combo box that offers the values
    Check,  // a check box: YES and NO
    Choice, // a drop-down list of the values
    Radio,  // radio buttons in a row, one of them for each value
    Words,  // check boxes in a row, each a word of the value
};

struct FieldControl {
    int Control;
    std::string_view Key;
    FieldForm Form = FieldForm::Text;
    std::span<const std::string_view> Values = {}; // as the file has them
    std::span<const char* const> Titles = {};      // of a Choice, what the list says for each of them, if not the same
};

// Puts arrows beside an edit control for numbers, once, says how far they go, and limits its digits.
void GiveArrows(HWND dialog, int control, std::size_t smallest, std::size_t largest);

// Fills the controls and gives them their limits.
void ShowFields(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record);

// Takes the values that differ from the record's. Returns the control of the first fault, after its message, or 0.
int TakeFields(HWND dialog, std::span<const FieldControl> fields, FieldRecord& record);

// Takes those of the values that can be, and says nothing of the others: for what is shown while somebody types.
void TakeGoodFields(HWND dialog, std::span<const FieldControl> fields, FieldRecord& record);

// Whether a control says something else than the record, be it a value or not.
bool DifferFrom(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record);

// Gives each control a tooltip: its key and what it takes. Returns the window that shows them, which goes with the
// dialog's.
HWND AddTooltips(HWND dialog, std::span<const FieldControl> fields, const FieldRecord& record);

// Gives one control a tooltip of any text. Returns the window that shows it.
HWND AddTooltip(HWND dialog, int control, std::string text);

// What the controls of a dialog say, in one text, to tell later whether anything was changed.
std::string StateOfControls(HWND dialog);

} // namespace bv
