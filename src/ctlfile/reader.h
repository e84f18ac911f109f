// Reading control files: plain text files of paragraphs and keyed lines.
//
//   [OPTIONS]                a paragraph's header: "[" in column 1
//   ; text                   ignored, as are empty lines and lines that begin with a blank
//   LogFile: SERVER.LOG      a key, its separator (the first ":" or "=") and its value
//
// Keys and headers compare over their own length without regard to case, so a key is given with its separator.
// A line ends at LF; at most 280 of its characters are kept. No operation here shows a message, and each search
// that fails leaves the stream where it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"

namespace bv {

inline constexpr std::size_t kMaxLine = 280;
using ControlLine = FixedText<kMaxLine>;

// Reads the next line: at most 280 characters, control characters (below 32, and 127) turned into blanks, trailing
// blanks removed. Stores where the line began. False at the end of the file.
bool ReadControlLine(ControlStream& stream, ControlLine& line, Position* lineStart = nullptr);

bool IsParagraphLine(std::string_view line);

// Not empty, not indented, not a comment.
bool IsSignificantLine(std::string_view line);

// Finds the next paragraph whose header begins with the text ("[OPTIONS]"); without a text, the next paragraph.
// Stores the header line and the position after it. False with an empty line.
bool FindParagraph(ControlStream& stream, std::optional<std::string_view> header, ControlLine& line,
                   Position* bodyStart = nullptr);

// Finds, in the current paragraph, the next line that begins with the key ("SystemArea:"); without a key, the next
// significant line. Starts at `start`, or at the current position when that is 0. Stores the line and where it
// began. The search also ends at a line that begins with the stop character. False with an empty line.
bool FindKeyLine(ControlStream& stream, std::optional<std::string_view> key, ControlLine& line, Position start = 0,
                 Position* lineStart = nullptr, char stop = '\0');

// The value on a keyed line, leading blanks skipped; none when nothing follows the separator.
std::optional<std::string_view> KeyValue(std::string_view line);

// The value of a key of the current paragraph (see FindKeyLine). A string is cut to its place and may be empty; a
// number is the low 16 bits of its leading decimal digits, and an empty one counts as absent; a boolean is one of
// Y YES TRUE ON 1 N NO FALSE OFF 0 in any case, or empty for true, and any other word counts as absent. False, with
// the place untouched, when the key is absent.
bool GetKeyString(ControlStream& stream, std::string_view key, TextPlace place, Position start = 0);
bool GetKeyNumber(ControlStream& stream, std::string_view key, std::uint16_t& place, Position start = 0);
bool GetKeyBool(ControlStream& stream, std::string_view key, bool& place, Position start = 0);

// The same for the next significant line of the paragraph, which must carry the key when one is given: for
// records whose keys always stand in one order. On failure the line stays unread.
bool ReadKeyString(ControlStream& stream, std::optional<std::string_view> key, TextPlace place, Position start = 0);
bool ReadKeyNumber(ControlStream& stream, std::optional<std::string_view> key, std::uint16_t& place,
                   Position start = 0);
bool ReadKeyBool(ControlStream& stream, std::optional<std::string_view> key, bool& place, Position start = 0);

// Decimal digits after optional blanks and a sign, up to the first other character; its low 16 bits.
std::uint16_t ParseNumber(std::string_view text);

// A boolean word (see GetKeyBool), or none.
std::optional<bool> ParseBool(std::string_view text);

// The first token of a list: a text in double quotes, its quotes included (without a closing quote, to the end of
// the text), or what stands before the next blank or comma. `rest` begins at the next token.
struct QuotedToken {
    std::optional<std::string_view> Token; // none for no text
    std::optional<std::string_view> Rest;  // none at the end
};
QuotedToken ParseQuotedToken(std::optional<std::string_view> text);

// The token after the one at the start of the text, or none; blanks, ",", ":" and "=" part tokens.
std::optional<std::string_view> NextListToken(std::string_view text);

// A token without one leading and one trailing double quote.
std::string_view StripQuotes(std::string_view token);

// Removes every space; returns the new length.
std::size_t RemoveSpaces(std::string& text);

} // namespace bv
