// Editing one routing rule: what a dialog or the console calls to put the parts of a rule together, to check it and to
// take it into the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/rule.h"
#include "lcr/rule_references.h"

namespace bv {

// A rule's time as it is entered. Hours and minutes are what stands in their fields; a time whose two fields are empty
// is left out.
struct RuleTime {
    enum class Choice { Any, Offpeak, Peak, Specific };

    Choice When = Choice::Any;
    std::uint16_t Days = 0; // bit 0 Sunday to bit 6 Saturday; these and the times are of Specific
    std::string AfterHour = {};
    std::string AfterMinute = {};
    std::string BeforeHour = {};
    std::string BeforeMinute = {};
    friend bool operator==(const RuleTime&, const RuleTime&) = default;
};

// One of its hours and minutes; null: its days.
using TimeField = std::string RuleTime::*;

// The rule's time as the file has it: "", "OFFPEAK", "PEAK" or such as "SAT SUN AFTER 18:00 BEFORE 08:00 ". None, after
// a message, for hours from 24, minutes from 60, equal times, and neither days nor times; the field is then the one
// that is wrong.
std::optional<std::string> MakeTimeText(const RuleTime& time, TimeField& wrong);

// A rule's time as its fields show it; none when the text cannot be shown so.
std::optional<RuleTime> ShowTime(std::string_view text);

// A rule's size as it is entered: from so many pages on, or up to so many.
struct RuleSize {
    enum class Choice { Any, Large, Small };

    Choice Which = Choice::Any;
    std::string Pages = {}; // as it stands in its field: 1 to 100
    friend bool operator==(const RuleSize&, const RuleSize&) = default;
};

// The rule's size as the file has it: "", "PAGES GE n" or "PAGES LE n". None, after a message, for other numbers. Large
// from 1 page on is any size, after 5332.
std::optional<std::string> MakeSizeText(const RuleSize& size);

// A rule's size as its fields show it; none when the text cannot be shown so.
std::optional<RuleSize> ShowSize(std::string_view text);

// What stands for "the local server may send the fax" among the names of servers.
inline constexpr std::string_view kLocalServerName = "(local server)";

// Puts the destinations of each kind together, in the order of the first of each: a file gives back one block of a
// kind.
void GroupDestinations(RoutingRule& rule);

// The servers of a rule as a list shows them, and the other way round.
std::vector<std::string> ShowServers(const RoutingRule& rule);
void SetServers(RoutingRule& rule, std::span<const std::string> names);

// False, after 5333, for a rule that no server may send by.
bool CheckServers(const RoutingRule& rule);

enum class RuleCheck {
    Fine,
    Unchanged, // nothing is to be done
    Discarded, // the changes are not wanted
    Refused,   // stay in the editor
};

enum class RuleLeaving { Ok, PreviousOrNext };

// What of a refused rule is to be mended.
enum class RuleField { Nothing, Description, Criteria, Servers };

// Checks an edited rule that is to take the place of the one at the position, or of none, a new one. Its references are
// checked first and those that are not defined removed; an unchanged rule is asked nothing more. On the way to another
// rule, asks 5335 whether to keep the changes. A rule without criteria is refused with 5336 or, when it names remote
// servers, asked about with 5337; one with criteria that no server may send by is refused with 5333, one with another
// rule's description with 5338, and what the file would give back differently with 9136. An empty description becomes
// "(no description)".
RuleCheck CheckRule(const RuleList& rules, std::optional<std::size_t> position, RoutingRule& edited,
                    const RuleNames& names, RuleLeaving leaving, RuleField& wrong);

// Takes a rule whose values have been entered into the list. An unchanged one is asked nothing. Refused, with the list
// as it was, are a new rule without a description (9149), a rule with criteria that no server may send by (5333), what
// CheckRule refuses, and what the file would give back differently (9136). Names that are no longer defined stay, for
// DropLostReferences.
RuleCheck ChangeRule(RuleList& rules, std::optional<std::size_t> position, RoutingRule edited);

// A rule in words: each criterion's name and what the rule says of it, "(any)" without the criterion.
inline constexpr std::string_view kAnyValue = "(any)";
struct SummaryLine {
    std::string_view Name;
    std::string Words;
    friend bool operator==(const SummaryLine&, const SummaryLine&) = default;
};
std::vector<SummaryLine> SummarizeRule(const RoutingRule& rule, const Destinations& places);

} // namespace bv
