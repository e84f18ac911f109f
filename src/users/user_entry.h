// Records as a person enters them, key by key: what dialogs, the console and imports ask before anything is written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ctlfile/key_help.h"
#include "users/user_list.h"
#include "users/user_record.h"

namespace bv {

// The key of that name, without its colon and in any case, in the records of the kind; none without one.
const RecordKey* FindRecordKey(RecordKind kind, std::string_view name);

// Puts a value into the record. Returns a sentence that names key and value, and the record stays, when the kind has no
// such key or the key cannot have the value.
std::optional<std::string> EnterValue(UserRecord& record, RecordKind kind, std::string_view keyName,
                                      std::string_view value);

// What a new record begins with: the default one's lines, and its values or, their names excepted, those of the record
// that it is to be like. None after 413, 9011 or, for a name without a record, its "not found".
std::optional<StoredRecord> BeginningOf(RecordKind kind, const std::string& like);

// One record while values are entered into it.
class RecordEntry {
  public:
    struct Fault {
        const RecordKey* Key;
        std::string Text; // names key and value
    };
    struct Change {
        const RecordKey* Key;
        std::string Text; // `Group: "" to "@SALES"`
        bool IsEntered;   // or one that follows from another key's
    };

    // A record of the list that is to be changed.
    RecordEntry(RecordKind kind, StoredRecord stored);

    // A new one, which begins with the default record.
    static RecordEntry OfNew(RecordKind kind, std::string name, StoredRecord defaultRecord);

    // Names a new record, which had no name or another one until now.
    void SetName(std::string name) { stored_.Name = std::move(name); }

    // As EnterValue; a value that is in force already is taken as it is, whether it could be entered or not.
    std::optional<std::string> Enter(std::string_view keyName, std::string_view value);

    // Why the list would not keep a value that was entered, whatever the record had before; none when it would.
    [[nodiscard]] std::optional<Fault> FaultOfWhole() const;

    // Whether the list is to get the record: a new one, a changed one, and one where the line of a key that was entered
    // says other than what it reads as ("Urgent: maybe").
    [[nodiscard]] bool IsToBeWritten() const;

    // What will be read otherwise than before, once the record is written.
    [[nodiscard]] std::vector<Change> Changes() const;

    [[nodiscard]] bool IsNew() const { return isNew_; }
    [[nodiscard]] RecordKind Kind() const { return kind_; }
    [[nodiscard]] const std::string& Name() const { return stored_.Name; }
    [[nodiscard]] const UserRecord& Before() const { return stored_.Record; }
    [[nodiscard]] const UserRecord& After() const { return after_; }

  private:
    [[nodiscard]] bool IsEntered(const RecordKey& key) const;
    [[nodiscard]] bool SaysOtherwise(const RecordKey& key, const UserRecord& readBack) const;
    [[nodiscard]] UserRecord ReadBack() const;
    [[nodiscard]] std::string WhyNotKept(const RecordKey& key, const UserRecord& readBack) const;

    RecordKind kind_;
    StoredRecord stored_;
    UserRecord after_;
    bool isNew_ = false;
    std::vector<const RecordKey*> entered_;
};

// What a person is told of a key: its default is that of a record without lines.
KeyHelp HelpOf(const RecordKey& key, RecordKind kind);

} // namespace bv
