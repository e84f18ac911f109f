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

// A line for each record, its values parted by tabs, after the names of the columns when they are wanted; on a terminal
// a table that fits its width. A list of objects.
void PrintRecords(const Session& session, const std::vector<Record>& records);

// The records, and after them as a line what the result says in its last value; an object of the result's values, and
// of the records under the name.
void PrintFindings(const Session& session, const std::string& name, const std::vector<Record>& records,
                   const Record& result);

// Whether records are neither a table nor an object, and have no names: then their lines can be printed as they are.
bool ArePlainLines(const Session& session);

// A line for each text; a list.
void PrintLines(const Session& session, const std::vector<std::string>& lines);

void PrintJson(const Session& session, const nlohmann::ordered_json& document);

} // namespace bv::console
