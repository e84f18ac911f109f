#include "users/many_users.h"

#include <algorithm>
#include <functional>
#include <map>
#include <unordered_set>

#include "platform/ascii.h"
#include "users/user_entry.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

void AddFault(std::string_view name, std::string_view text, ManyUsersPlan& plan) {
    plan.Faults.push_back(std::string(name).append(": ").append(text));
}

// Enters the values into one user's record.
void PlanUser(const StoredRecord& stored, const EnteredValues& values, ManyUsersPlan& plan) {
    RecordEntry entry(RecordKind::User, stored);
    for (const EnteredValue& value : values)
        if (const auto fault = entry.Enter(value.Key, value.Value)) return AddFault(stored.Name, *fault, plan);
    if (const auto fault = entry.FaultOfWhole()) return AddFault(stored.Name, fault->Text, plan);
    if (entry.IsToBeWritten()) plan.Updates.push_back({stored.Name, entry.Before(), entry.After()});
}

std::unordered_set<std::string> FoldedNames(std::span<const std::string> names) {
    std::unordered_set<std::string> folded;
    for (const std::string& name : names) folded.insert(UpperText(name));
    return folded;
}

// Whether the groups that users come into are there; false after 9024 or 9011.
bool AreNewGroupsThere(const ManyUsersPlan& plan) {
    UserList list;
    return list && std::ranges::all_of(plan.Updates, [&](const RecordUpdate& update) {
               return update.After.Group == update.Before.Group || CheckGroup(list, update.After);
           });
}

// The keys that many users can have the same value of.
std::vector<const RecordKey*> KeysOfMany() {
    constexpr std::string_view kNames[] = {"Fullname:", "Username:", "Netware:", "LanManager:", "MailName:"};
    std::vector<const RecordKey*> keys;
    for (const RecordKey& key : RecordKeys()) {
        if (!HasKey(key, RecordKind::User) || std::ranges::find(kNames, key.Field.Key) != std::end(kNames)) continue;
        keys.push_back(&key);
    }
    return keys;
}

// The most frequent values first.
std::string SummaryOf(const std::map<std::string, std::size_t>& counts) {
    constexpr std::size_t kMostNamed = 3;
    std::vector<std::pair<std::string, std::size_t>> values(counts.begin(), counts.end());
    std::ranges::stable_sort(values, std::ranges::greater(), &std::pair<std::string, std::size_t>::second);
    std::string text;
    std::size_t others = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto& [value, count] = values[i];
        if (i >= kMostNamed) {
            others += count;
            continue;
        }
        const std::string shown = value.empty() ? "\"\"" : value;
        text.append(text.empty() ? "" : ", ").append(values.size() == 1 ? shown : FormatText("%s %d", shown, count));
    }
    return others == 0 ? text : text.append(", ").append(FillMessage(kOtherValues, others));
}

} // namespace

std::optional<ManyUsersPlan> PlanManyUsers(std::span<const std::string> names, const EnteredValues& values) {
    std::unordered_set<std::string> wanted = FoldedNames(names);
    ManyUsersPlan plan;
    const bool isRead = VisitUserRecords(RecordKind::User, [&](const StoredRecord& stored) {
        if (wanted.erase(UpperText(stored.Name)) > 0) PlanUser(stored, values, plan);
        return !wanted.empty();
    });
    if (!isRead) return std::nullopt;
    if (wanted.empty()) return AreNewGroupsThere(plan) ? std::optional(plan) : std::nullopt;
    ShowNotFound(*wanted.begin(), RecordKind::User);
    return std::nullopt;
}

std::optional<std::vector<ValueSummary>> SummariseUsers(std::span<const std::string> names) {
    const std::unordered_set<std::string> wanted = FoldedNames(names);
    const std::vector<const RecordKey*> keys = KeysOfMany();
    std::vector<std::map<std::string, std::size_t>> counts(keys.size());
    const bool isRead = VisitUserRecords(RecordKind::User, [&](const StoredRecord& stored) {
        if (!wanted.contains(UpperText(stored.Name))) return true;
        for (std::size_t i = 0; i < keys.size(); ++i) ++counts[i][keys[i]->Field.Text(stored.Record)];
        return true;
    });
    if (!isRead) return std::nullopt;
    std::vector<ValueSummary> summaries;
    for (std::size_t i = 0; i < keys.size(); ++i) summaries.push_back({keys[i], SummaryOf(counts[i])});
    return summaries;
}

bool ChangeManyUsers(const ManyUsersPlan& plan) {
    if (plan.Updates.empty()) return true;
    const SavedUsers saved = SaveUsers({}, plan.Updates, RecordKind::User, [](std::size_t) { return true; });
    if (saved.Updated == 0) return false;
    ShowStatus(kUsersChanged, saved.Updated);
    return true;
}

bool ChangeMembers(std::string_view group, std::span<const std::string> come, std::span<const std::string> gone) {
    ManyUsersPlan all;
    const std::pair<std::span<const std::string>, std::string_view> changes[] = {{come, group}, {gone, ""}};
    for (const auto& [names, value] : changes) {
        if (names.empty()) continue;
        auto plan = PlanManyUsers(names, {{"Group", std::string(value)}});
        if (!plan) return false;
        if (!plan->Faults.empty()) {
            ShowError("%s", plan->Faults.front());
            return false;
        }
        std::ranges::move(plan->Updates, std::back_inserter(all.Updates));
    }
    return ChangeManyUsers(all);
}

} // namespace bv
