// Rules that can never decide.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"
#include "lcr/rule.h"
#include "lcr/time_range.h"

namespace bv {

struct DeadRule {
    std::size_t Rule = 0;           // its place
    std::optional<std::size_t> By;  // the first earlier rule that takes every fax which this one would take
    std::string_view NeverMet = {}; // without one: "destinations", "size" or "time", that no fax can meet

    friend bool operator==(const DeadRule&, const DeadRule&) = default;
};

// The rules, whose references have been checked, that can never decide on a fax to a number: an earlier rule takes all
// their faxes, or one of their criteria is never met. Several earlier rules that do so together do not count. By their
// places. Without an off-peak period, PEAK and OFFPEAK cover nothing but themselves. Shows nothing.
std::vector<DeadRule> FindDeadRules(const RuleList& rules, const Destinations& places,
                                    const std::optional<TimeRange>& offpeak);

// The same in slices, for who has other things to do meanwhile. What it is given must stay as it is until the search
// has ended.
class DeadRuleSearch {
  public:
    DeadRuleSearch(const RuleList& rules, const Destinations& places, const std::optional<TimeRange>& offpeak);
    ~DeadRuleSearch();
    DeadRuleSearch(const DeadRuleSearch&) = delete;
    DeadRuleSearch& operator=(const DeadRuleSearch&) = delete;

    // Looks at so many more rules; whether there are others.
    bool Continue(std::size_t count);

    // Those of the rules looked at so far.
    [[nodiscard]] const std::vector<DeadRule>& Found() const;

  private:
    class Search;
    std::unique_ptr<Search> search_;
};

// Why a rule is dead, in a sentence without a full stop.
std::string DescribeDeadRule(const RuleList& rules, const DeadRule& dead);

} // namespace bv
