// Results on standard output: lines of text, or one JSON document.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "console/session.h"

namespace bv::console {

// Nothing ("(none)", null), a flag (YES or NO, true or false), a number or a text.
using Value = std::variant<std::monostate, bool, std::int64_t, std::string>;

using Record = std::vector<std::pair<std::string, Value>>;

// A line `Name: value` for each field; an object.
void PrintRecord(const Session& session, const Record& record);

// A line for each record, its values parted by tabs; a list of objects.
void PrintRecords(const Session& session, const std::vector<Record>& records);

// A line for each text; a list.
void PrintLines(const Session& session, const std::vector<std::string>& lines);

void PrintJson(const Session& session, const nlohmann::ordered_json& document);

// The text as it is printed: control characters that come from files would move the cursor of a terminal, or worse, and
// stand as "\x1b" in it. Tabs and line ends part what is printed, and stay.
std::string PrintableText(std::string_view text);

// The text in UTF-8, which JSON must be in: a text that is UTF-8 as it stands, any other as windows-1252.
std::string Utf8Text(std::string_view text);

} // namespace bv::console
