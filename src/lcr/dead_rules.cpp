#include "lcr/dead_rules.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

#include "lcr/lcr_messages.h"
#include "lcr/rule_match.h"
#include "lcr/rule_references.h"
#include "lcr/week_mask.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::uint8_t kEveryPriority = 7;

// Places that follow each other in their order.
struct Span {
    std::size_t First = 0;
    std::size_t End = 0;
};
using Spans = std::vector<Span>; // in order, with places between them

bool Covers(const Spans& wide, const Spans& narrow) {
    auto span = wide.begin();
    return std::ranges::all_of(narrow, [&](const Span& one) {
        while (span != wide.end() && span->End < one.End) ++span;
        return span != wide.end() && span->First <= one.First;
    });
}

void Join(Spans& spans) {
    std::ranges::sort(spans, {}, &Span::First);
    Spans joined;
    for (const Span& span : spans) {
        if (span.First == span.End) continue;
        if (joined.empty() || joined.back().End < span.First)
            joined.push_back(span);
        else
            joined.back().End = std::max(joined.back().End, span.End);
    }
    spans = std::move(joined);
}

// Every country and area, in the order of their references in upper case: what a country covers stands together.
class PlaceOrder {
  public:
    explicit PlaceOrder(const Destinations& places) : places_(places) {
        for (const CountryEntry& country : places.Countries()) {
            names_.push_back(UpperText(country.Identifier));
            for (const AreaEntry& area : country.Areas)
                names_.push_back(UpperText(country.Identifier + '/' + area.Identifier));
        }
        std::ranges::sort(names_);
        names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
    }

    // The places that a rule's destination covers (CoversPlace).
    [[nodiscard]] Spans CoveredBy(const RuleDestination& destination) const {
        if (!IsRegion(destination)) return {Covered(destination.Key)};
        Spans spans;
        const RegionEntry* region = places_.FindRegion(destination.Key);
        for (const std::string& match : region != nullptr ? region->Matches : std::vector<std::string>()) {
            if (const auto place = places_.Convert(match, ReferenceForm::Identifier)) spans.push_back(Covered(*place));
        }
        Join(spans);
        return spans;
    }

    [[nodiscard]] const std::string& Name(std::size_t place) const { return names_[place]; }

  private:
    [[nodiscard]] Span Covered(std::string_view reference) const {
        const std::string name = UpperText(reference);
        const bool isArea = name.find('/') != std::string::npos;
        const auto first = std::ranges::lower_bound(names_, name);
        const auto isCovered = [&](const std::string& one) { return isArea ? one == name : one.starts_with(name); };
        const auto end = std::partition_point(first, names_.end(), isCovered);
        return {static_cast<std::size_t>(first - names_.begin()), static_cast<std::size_t>(end - names_.begin())};
    }

    const Destinations& places_;
    std::vector<std::string> names_;
};

struct Week {
    WeekMask Minutes;
    bool IsKnown = true; // else it goes by an off-peak period that is not known
};

// The faxes that a rule takes: those that meet each of these.
struct Reach {
    std::optional<Spans> Places;                   // none: all there are, known or not
    std::optional<std::vector<std::string>> Users; // the same; in upper case and order
    PageRange Pages;
    std::uint8_t Priorities = kEveryPriority;
    const Week* Time = nullptr; // one for each text
};

bool Covers(const Week& wide, const Week& narrow) {
    if (&wide == &narrow || wide.Minutes.all()) return true;
    return wide.IsKnown && narrow.IsKnown && (narrow.Minutes & ~wide.Minutes).none();
}

bool Covers(const Reach& wide, const Reach& narrow) {
    if ((narrow.Priorities & ~wide.Priorities) != 0) return false;
    if (narrow.Pages.Least < wide.Pages.Least || narrow.Pages.Most > wide.Pages.Most) return false;
    if (wide.Users && (!narrow.Users || !std::ranges::includes(*wide.Users, *narrow.Users))) return false;
    if (wide.Places && (!narrow.Places || !Covers(*wide.Places, *narrow.Places))) return false;
    return Covers(*wide.Time, *narrow.Time);
}

} // namespace

// Goes through the rules in their order. Each rule that is not dead is noted under every destination with every user of
// its own. What covers a rule covers its first place and its first user, and so is found under one of their names.
class DeadRuleSearch::Search {
  public:
    Search(const RuleList& rules, const Destinations& places, const std::optional<TimeRange>& offpeak)
        : rules_(rules), order_(places), offpeak_(offpeak), reaches_(rules.size()) {}

    bool Continue(std::size_t count) {
        const std::size_t end = next_ + std::min(count, rules_.size() - next_);
        for (; next_ < end; ++next_) Look(next_);
        return next_ < rules_.size();
    }

    [[nodiscard]] const std::vector<DeadRule>& Found() const { return dead_; }

  private:
    using Names = std::vector<std::string>;
    static constexpr std::string_view kAll{}; // in place of a name

    static std::string KeyOf(std::string_view place, std::string_view user) {
        return std::string(place).append("\n").append(user);
    }

    static std::string PlaceName(const RuleDestination& destination) {
        return (IsRegion(destination) ? ":" : "") + UpperText(destination.Key);
    }

    void Look(std::size_t place) {
        Reach& reach = reaches_[place] = ReachOf(rules_[place]);
        const std::string_view neverMet = NeverMet(reach);
        const std::optional<std::size_t> by = neverMet.empty() ? FindCovering(reach) : std::nullopt;
        if (!neverMet.empty() || by)
            dead_.push_back({place, by, neverMet});
        else
            Note(place);
    }

    static std::string_view NeverMet(const Reach& reach) {
        if (reach.Places && reach.Places->empty()) return "destinations";
        if (reach.Pages.Least > reach.Pages.Most) return "size";
        return reach.Time->IsKnown && reach.Time->Minutes.none() ? "time" : "";
    }

    Reach ReachOf(const RoutingRule& rule) {
        Reach reach;
        if (!rule.Destinations.empty()) reach.Places = PlacesOf(rule);
        if (!rule.Users.empty()) {
            reach.Users.emplace();
            for (const std::string& user : rule.Users) reach.Users->push_back(UpperText(user));
            std::ranges::sort(*reach.Users);
        }
        reach.Pages = {0}; // a fax without pages has no size
        if (!rule.Size.IsEmpty()) reach.Pages = PagesOfSize(rule.Size).value_or(PageRange{1, 0});
        if (rule.Priorities != 0) reach.Priorities = rule.Priorities;
        reach.Time = &WeekOfText(rule.Time.String());
        return reach;
    }

    Spans PlacesOf(const RoutingRule& rule) {
        Spans all;
        for (const RuleDestination& destination : rule.Destinations) {
            const std::string name = PlaceName(destination);
            auto found = covered_.find(name);
            if (found == covered_.end()) {
                found = covered_.emplace(name, order_.CoveredBy(destination)).first;
                if (IsRegion(destination)) regions_.emplace_back(name, found->second);
            }
            all.insert(all.end(), found->second.begin(), found->second.end());
        }
        Join(all);
        return all;
    }

    const Week& WeekOfText(const std::string& text) {
        const auto [found, isNew] = weeks_.try_emplace(UpperText(text));
        Week& week = found->second;
        if (!isNew) return week;
        week.IsKnown = offpeak_ || !NeedsOffpeak(text);
        week.Minutes = WeekOfTime(text, offpeak_).value_or(WeekMask());
        return week;
    }

    void Note(std::size_t place) {
        const RoutingRule& rule = rules_[place];
        Names places;
        for (const RuleDestination& destination : rule.Destinations) places.push_back(PlaceName(destination));
        if (places.empty()) places.emplace_back(kAll);
        const Names users = reaches_[place].Users.value_or(Names{std::string(kAll)});
        for (const std::string& name : places) {
            for (const std::string& user : users) byNames_[KeyOf(name, user)].push_back(place);
        }
    }

    // What the destinations are called under which rules that cover the place are noted, and some others.
    [[nodiscard]] Names NamesFor(const Reach& reach) const {
        Names names = {std::string(kAll)};
        if (!reach.Places) return names;
        const std::size_t place = reach.Places->front().First;
        const std::string& name = order_.Name(place);
        for (std::size_t size = 1; size <= name.size(); ++size) {
            if (covered_.contains(name.substr(0, size))) names.push_back(name.substr(0, size));
        }
        const Spans wanted = {{place, place + 1}};
        for (const auto& [region, spans] : regions_) {
            if (Covers(spans, wanted)) names.push_back(region);
        }
        return names;
    }

    // The first rule noted that covers it.
    [[nodiscard]] std::optional<std::size_t> FindCovering(const Reach& reach) const {
        Names users = {std::string(kAll)};
        if (reach.Users) users.push_back(reach.Users->front());
        std::size_t first = rules_.size();
        for (const std::string& name : NamesFor(reach)) {
            for (const std::string& user : users) {
                const auto noted = byNames_.find(KeyOf(name, user));
                if (noted == byNames_.end()) continue;
                for (const std::size_t earlier : noted->second) {
                    if (earlier >= first) break;
                    if (Covers(reaches_[earlier], reach)) first = earlier;
                }
            }
        }
        return first < rules_.size() ? std::optional(first) : std::nullopt;
    }

    const RuleList& rules_;
    PlaceOrder order_;
    const std::optional<TimeRange>& offpeak_;
    std::vector<Reach> reaches_;
    std::size_t next_ = 0;
    std::vector<DeadRule> dead_;
    std::map<std::string, Week> weeks_;
    std::unordered_map<std::string, Spans> covered_; // by names of destinations
    std::vector<std::pair<std::string, Spans>> regions_;
    std::unordered_map<std::string, std::vector<std::size_t>> byNames_;
};

DeadRuleSearch::DeadRuleSearch(const RuleList& rules, const Destinations& places,
                               const std::optional<TimeRange>& offpeak)
    : search_(std::make_unique<Search>(rules, places, offpeak)) {}
DeadRuleSearch::~DeadRuleSearch() = default;

bool DeadRuleSearch::Continue(std::size_t count) { return search_->Continue(count); }
const std::vector<DeadRule>& DeadRuleSearch::Found() const { return search_->Found(); }

std::vector<DeadRule> FindDeadRules(const RuleList& rules, const Destinations& places,
                                    const std::optional<TimeRange>& offpeak) {
    DeadRuleSearch search(rules, places, offpeak);
    search.Continue(rules.size());
    return search.Found();
}

std::string DescribeDeadRule(const RuleList& rules, const DeadRule& dead) {
    if (!dead.By) return FillMessage(kRuleNeverMet, dead.NeverMet);
    return FillMessage(kTakenByEarlierRule, *dead.By + 1, rules[*dead.By].Description.View());
}

} // namespace bv
