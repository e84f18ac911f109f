// The user list as a file: B-DB\USERLIST.INI of the system area, with a paragraph "[USER]" for each user and "[GROUP]"
// for each user group. Records are told apart by "Name:". The first record of a kind whose name begins with "(" is
// the default of its kind, what new records begin with.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "ctlfile/reader.h"

namespace bv {

enum class RecordKind { User, Group };

inline constexpr std::string_view kNameKey = "Name:";

// A value as it stands in the file: not cut to the limits that apply when it is used.
using WholeValue = FixedText<kMaxLine>;

// The header of the kind's records, "[USER]" or "[GROUP]".
std::string_view RecordHeader(RecordKind kind);

constexpr bool IsDefaultName(std::string_view name) { return name.starts_with('('); }

// Where a record stands: its header line, its body, the next paragraph's header line or the end of the file.
struct RecordPlace {
    Position Start = 0;
    Position BodyStart = 0;
    Position End = 0;
};

// A record with its name as the list has it.
struct FoundRecord : RecordPlace {
    WholeValue Name;
};

// The first record of the kind with that name, in any case; without a name, the default record. Searches from the
// file's start and leaves the stream anywhere. Shows nothing.
std::optional<FoundRecord> FindRecord(ControlStream& list, RecordKind kind, std::optional<std::string_view> name);

} // namespace bv
