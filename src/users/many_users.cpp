#include "users/many_users.h"

#include <unordered_set>

#include "platform/ascii.h"
#include "users/user_entry.h"
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

} // namespace

std::optional<ManyUsersPlan> PlanManyUsers(std::span<const std::string> names, const EnteredValues& values) {
    std::unordered_set<std::string> wanted;
    for (const std::string& name : names) wanted.insert(UpperText(name));
    ManyUsersPlan plan;
    const bool isRead = VisitUserRecords(RecordKind::User, [&](const StoredRecord& stored) {
        if (wanted.erase(UpperText(stored.Name)) > 0) PlanUser(stored, values, plan);
        return !wanted.empty();
    });
    if (!isRead) return std::nullopt;
    if (wanted.empty()) return plan;
    ShowNotFound(*wanted.begin(), RecordKind::User);
    return std::nullopt;
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
