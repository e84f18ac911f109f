#include "users/user_rewrite.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "ctlfile/lines.h"
#include "ctlfile/records.h"
#include "ctlfile/saving.h"
#include "ctlfile/text_edits.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_file.h"
#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

// The list while it is rewritten: whole in memory, and held.
struct HeldList {
    ControlStream& Stream;
    std::size_t Size;

    [[nodiscard]] std::string_view Text(Position from, Position to) const {
        return Stream.Seen(from, static_cast<std::size_t>(to - from));
    }
    [[nodiscard]] std::string_view Body(const RecordPlace& record) const { return Text(record.BodyStart, record.End); }
};

// Rewrites the list with the edits that the plan makes of it; without any, the plan has shown a message.
template <class Plan>
bool RewriteUserList(Plan plan) {
    Rewrite rewrite(PathOf(ServerFile::UserList));
    if (rewrite.Fault() == Rewrite::Problem::Temporary) {
        ShowError(kUnableToCreateFile, rewrite.TemporaryName());
        return false;
    }
    if (!CheckOpened(rewrite)) return false;
    const HeldList list{rewrite.Control, rewrite.Control.Rest().size()};
    const bool isRead = !rewrite.Control.Failed();
    const std::optional<TextEdits> edits = isRead ? plan(list) : std::nullopt;
    if (isRead && !edits) return false;
    if (isRead && !WriteEdited(list.Stream, list.Size, *edits, rewrite.Temporary)) {
        ShowError(kErrorWritingFile, rewrite.TemporaryName());
        return false;
    }
    if (isRead && rewrite.CopyBack() && rewrite.Finish()) return true;
    ShowError(kUnableToUpdateFile, rewrite.Path());
    return false;
}

// Finds the places of changes in one pass over the records.
class ChangePlanner {
  public:
    ChangePlanner(const UserListChanges& changes, RecordKind kind) : changes_(changes), kind_(kind) {
        for (const NamedRecord& added : changes.Added) pending_.push_back(&added);
        // Records of one name stay in their order, as if they came one by one.
        std::ranges::stable_sort(pending_, {}, &NamedRecord::Name);
        for (std::size_t i = 0; i < changes.Updated.size(); ++i) {
            const UserRecord* before = changes.Before.empty() ? nullptr : &changes.Before[i];
            updates_.insert_or_assign(UpperText(changes.Updated[i].Name), Update{&changes.Updated[i], before});
        }
        for (const NamedRecord& deleted : changes.Deleted)
            updates_.insert_or_assign(UpperText(deleted.Name), Update{&deleted, nullptr, true});
    }

    // None, after a message, when a record to be updated is not there, or the list is not as it is to be.
    std::optional<TextEdits> Plan(const HeldList& list) {
        if (changes_.NamesAreFree && !CheckNamesAreFree(list)) return {};
        FindPlaces(list);
        if (!updates_.empty()) {
            ShowNotFound(updates_.begin()->second.Record->Name, kind_);
            return {};
        }
        TextEdits edits;
        for (const Placed& placed : placed_) {
            if (!placed.IsNew && !CheckIsAsBefore(list, placed)) return {};
            edits.push_back(placed.IsNew ? Addition(list, placed) : Replacement(list, placed));
        }
        AppendPending(list, edits);
        return edits;
    }

  private:
    struct Update {
        const NamedRecord* Record;
        const UserRecord* Before; // what the record must still be; null: whatever it is
        bool Goes = false;
    };
    struct Placed : Update {
        bool IsNew;
        RecordPlace Place; // of the record to be updated, or of that which the new one goes before
    };

    [[nodiscard]] bool CheckNamesAreFree(const HeldList& list) const {
        static constexpr std::array kKeys = {kNameKey};
        std::set<std::string> names;
        for (const NamedRecord* added : pending_) names.insert(UpperText(added->Name));
        WholeValue name;
        for (const RecordKind kind : {RecordKind::User, RecordKind::Group}) {
            list.Stream.Rewind();
            RecordWalker records(list.Stream, RecordHeader(kind), kKeys);
            while (records.Next()) {
                records.Get(0, name);
                if (!names.contains(UpperText(name))) continue;
                ShowError(kNameTaken, name.View());
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] bool CheckIsAsBefore(const HeldList& list, const Placed& placed) const {
        if (placed.Before == nullptr) return true;
        UserRecord current;
        list.Stream.Seek(placed.Place.BodyStart);
        ReadRecordBody(list.Stream, kind_, IsDefaultName(placed.Record->Name), current);
        if (current == *placed.Before) return true;
        ShowError(kChangedMeanwhile, placed.Record->Name);
        return false;
    }

    void FindPlaces(const HeldList& list) {
        static constexpr std::array kKeys = {kNameKey};
        list.Stream.Rewind();
        RecordWalker records(list.Stream, RecordHeader(kind_), kKeys);
        WholeValue name;
        while (records.Next()) {
            records.Get(0, name);
            const RecordPlace place{records.Start(), records.BodyStart(), records.End()};
            if (IsDefaultName(name) && !defaultRecord_) defaultRecord_ = place;
            PlacePending(name, place);
            PlaceUpdate(name, place);
        }
    }

    // Those that sort before the record, which are the first of the sorted ones, go before it.
    void PlacePending(std::string_view name, const RecordPlace& place) {
        for (; next_ < pending_.size() && name > pending_[next_]->Name; ++next_) {
            placed_.push_back({{pending_[next_], nullptr}, true, place});
        }
    }

    void PlaceUpdate(std::string_view name, const RecordPlace& place) {
        if (updates_.empty()) return;
        const auto update = updates_.find(UpperText(name));
        if (update == updates_.end()) return;
        placed_.push_back({update->second, false, place});
        updates_.erase(update);
    }

    [[nodiscard]] std::string NewRecord(const HeldList& list, const NamedRecord& added) const {
        std::optional<std::string_view> inherited;
        if (defaultRecord_) inherited = list.Body(*defaultRecord_);
        std::string text(RecordHeader(kind_));
        return text.append(kLineEnd).append(UserRecordLines(added.Name, added.Record, inherited, kind_));
    }

    [[nodiscard]] TextEdit Addition(const HeldList& list, const Placed& placed) const {
        return {placed.Place.Start, placed.Place.Start, NewRecord(list, *placed.Record).append(kLineEnd)};
    }

    [[nodiscard]] TextEdit Replacement(const HeldList& list, const Placed& placed) const {
        const auto& [name, record] = *placed.Record;
        if (placed.Goes) return {placed.Place.Start, placed.Place.End, {}};
        return {placed.Place.BodyStart, placed.Place.End,
                UserRecordLines(name, record, list.Body(placed.Place), kind_)};
    }

    void AppendPending(const HeldList& list, TextEdits& edits) const {
        if (next_ == pending_.size()) return;
        const bool endIsNew = !edits.empty() && edits.back().To == list.Size;
        TextEdit end{list.Size, list.Size, {}};
        if (!endIsNew && list.Size != 0 && !list.Text(0, list.Size).ends_with('\n')) end.Text = kLineEnd;
        for (std::size_t i = next_; i < pending_.size(); ++i)
            end.Text.append(kLineEnd).append(NewRecord(list, *pending_[i]));
        edits.push_back(std::move(end));
    }

    const UserListChanges& changes_;
    RecordKind kind_;
    std::vector<const NamedRecord*> pending_; // to be added, by name; those from next_ on have no place yet
    std::size_t next_ = 0;
    std::map<std::string, Update> updates_; // by name in upper case, those not found yet
    std::vector<Placed> placed_;
    std::optional<RecordPlace> defaultRecord_;
};

} // namespace

bool AddUserRecord(std::string_view name, const UserRecord& record, RecordKind kind) {
    const NamedRecord added[] = {{std::string(name), record}};
    return ChangeUserRecords({added, {}}, kind);
}

bool UpdateUserRecord(std::string_view name, const UserRecord& record, RecordKind kind) {
    const NamedRecord updated[] = {{std::string(name), record}};
    return ChangeUserRecords({{}, updated}, kind);
}

bool DeleteUserRecord(std::string_view name, RecordKind kind) {
    if (!CheckDeletable(name)) return false;
    const auto cutRecord = [&](const HeldList& list) -> std::optional<TextEdits> {
        const std::optional<RecordPlace> place = FindRecord(list.Stream, kind, name);
        if (place) return TextEdits{{place->Start, place->End, {}}};
        ShowNotFound(name, kind);
        return {};
    };
    if (!RewriteUserList(cutRecord)) return false;
    ShowStatus(kUserDeleted, kind == RecordKind::Group ? " group" : "", name);
    return true;
}

bool ChangeUserRecords(const UserListChanges& changes, RecordKind kind) {
    return RewriteUserList([&](const HeldList& list) { return ChangePlanner(changes, kind).Plan(list); });
}

bool CheckDeletable(std::string_view name) {
    if (!IsDefaultName(name)) return true;
    ShowError(kDefaultUserStays, name);
    return false;
}

} // namespace bv
