// Parts of a control file that become otherwise, and nothing else of it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/control_stream.h"

namespace bv {

// A part of a file and what comes in its place.
struct TextEdit {
    Position From = 0;
    Position To = 0;
    std::string Text;
};
using TextEdits = std::vector<TextEdit>; // in the order of their places, none overlapping

// What becomes of the line that the stream has just read: another line, or none.
TextEdit EditLastLine(const ControlStream& stream, std::optional<std::string_view> newLine);

// Writes the text of a stream that has been read to its end, with the edits made. False when the temporary has failed.
bool WriteEdited(const ControlStream& held, Position size, const TextEdits& edits, ControlStream& temporary);

// Makes the edits that the plan finds in the file, which is held meanwhile, in one rewrite; without any it is not
// written. Status 470 and 471. False after 413, 9011 or 5000.
bool EditControlFile(const std::string& path, const std::function<TextEdits(ControlStream& held)>& plan);

} // namespace bv
