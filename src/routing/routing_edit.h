// Changes of several rules of the routing file in one rewrite.
#pragma once

#include <optional>
#include <vector>

#include "routing/routing_lines.h"

namespace bv {

// A rule is added (no Before), taken away (no After) or changed.
template <class Rule>
struct RuleChange {
    std::optional<Rule> Before;
    std::optional<Rule> After;
};

// The record of a sender's rule that has none yet.
inline constexpr int kNewRecord = -1;

// A sender's rule without an addressee stands for the line that opens the record. A new rule goes into the record of
// its number, whose line becomes as the rule has it, or, with kNewRecord, into one at the end of the paragraph, which
// it shares with others of its key.
struct RoutingChanges {
    std::vector<RuleChange<SenderIdRule>> Senders;
    std::vector<RuleChange<SubAddressRule>> SubAddresses;
    std::vector<RuleChange<ForwardRule>> Forwards;
};

// Makes the changes, or none: each Before must be in the file as it stands. A changed rule keeps its place. A new one
// takes that of the first line with its key, and other lines with that key go. All other lines stay as they are. Status
// 470 and 471; sets SettingsChanged. False after 9025, a message of OpenRoutingFile or EditControlFile.
bool ChangeRoutingRules(const RoutingChanges& changes);

} // namespace bv
