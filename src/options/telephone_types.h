// The types of telephone number that a user may be allowed to dial, and what they are called: up to 20 lines
// `TelnumType: TYPE "description"` of "[QUEUEMAN]".
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"

namespace bv {

inline constexpr std::size_t kMaxTelephoneTypes = 20;

// 1 Local, 2 to 10 National1 to National9, 11 to 19 International1 to International9.
using TelephoneTypeCode = std::uint16_t;

struct TelephoneType {
    TelephoneTypeCode Code = 0;
    FixedText<100> Description;
    friend bool operator==(const TelephoneType&, const TelephoneType&) = default;
};
using TelephoneTypes = std::vector<TelephoneType>;

// The word of a code as it is written; "Local" for a number that is no code.
std::string TelephoneTypeWord(TelephoneTypeCode code);

// The code of a word, in any case, as it is read; none for another word. Deliberately no inverse: "International" is
// 11, and "International1", which is what 11 is written as, is 12. The server reads it so, too.
std::optional<TelephoneTypeCode> ParseTelephoneType(std::string_view word);

// Why a person may not give the text as a description, in a sentence; none when it is fine.
std::optional<std::string> FaultOfTypeDescription(std::string_view text);

// The words of the types that are read as themselves once they are written, which alone a person may give anew.
std::vector<std::string> KeptTypeWords();

// What a person may not do with the entry at `place`, behind the last one a new one: two descriptions of one type, a
// word that is read as another type, more than 20. The type that an entry has may stay. The entry; none after a
// message.
std::optional<TelephoneType> EnterType(const TelephoneTypes& types, std::size_t place, std::string_view word,
                                       std::string_view description);

// The place of the first entry with the word, as it is written; none after 9305.
std::optional<std::size_t> PlaceOfType(const TelephoneTypes& types, std::string_view word);

// Moves the entry at `place` one place up or down. False, with nothing moved, at that end of the list.
enum class MoveBy { Up, Down };
bool MoveType(TelephoneTypes& types, std::size_t place, MoveBy way);

// The word under which the server knows the type of an entry once it is written.
std::string TypeReadBack(TelephoneTypeCode code);

// Warns of each type of a list to be written that will be read as another one from then on.
void WarnOfShifts(const TelephoneTypes& types);

// A description that a person gives to the type of a word.
struct TypeDescription {
    std::string Word;
    std::string Description;
};

// Enters the descriptions into a list, which keeps its other types. False, with the list as it was, after a message: a
// word is none, is read as another type once it is written, or means a type that was given before; a description does
// not fit; there are too many types. Warns of types that stay and will be read as others from then on.
bool DescribeTelephoneTypes(std::span<const TypeDescription> descriptions, TelephoneTypes& types);

// Reads the list from SETUP.INI's first "[QUEUEMAN]". False, with the entries before it, at a line of another form or
// beyond the twentieth.
bool ReadTelephoneTypes(ControlStream& setup, TelephoneTypes& types);

// The same from SETUP.INI, which is opened for it. False after a message, also 413 or 9011.
bool LoadTelephoneTypes(TelephoneTypes& types);

// Replaces the list in the file, by one rewrite; the same list again writes and says nothing. An entry of code 0 ends
// the list. Status 470 and 471; sets SettingsChanged. False after 413 or 5000, and then `saved` stays.
bool SaveTelephoneTypes(const TelephoneTypes& types, TelephoneTypes& saved);

} // namespace bv
