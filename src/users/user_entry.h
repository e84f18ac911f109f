// Records as a person enters them, key by key: what dialogs and the console ask before anything is written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "users/user_record.h"

namespace bv {

// The key of that name, without its colon and in any case, in the records of the kind; none without one.
const RecordKey* FindRecordKey(RecordKind kind, std::string_view name);

// The name of a key without its colon.
constexpr std::string_view KeyName(const RecordKey& key) { return key.Key.substr(0, key.Key.size() - 1); }

// Puts a value into the record. Returns a sentence that names key and value, and the record stays, when the kind has no
// such key or the key cannot have the value.
std::optional<std::string> EnterValue(UserRecord& record, RecordKind kind, std::string_view keyName,
                                      std::string_view value);

// The record as the user list would give it back under that name, once it is written.
UserRecord AsReadBack(std::string_view name, const UserRecord& record, RecordKind kind);

// Why the list would not keep what a person has changed, in a sentence that names key and value; none when it would.
std::optional<std::string> FaultOfChange(std::string_view name, const UserRecord& before, const UserRecord& after,
                                         RecordKind kind);

} // namespace bv
