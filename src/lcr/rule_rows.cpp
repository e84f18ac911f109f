#include "lcr/rule_rows.h"

#include <algorithm>

#include "lcr/lcr_messages.h"
#include "platform/ascii.h"
#include "platform/clock.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::size_t kSlice = 50; // rules between two looks at the clock

std::string CriteriaText(const std::vector<SummaryLine>& summary, const RoutingRule& rule) {
    if (!HasCriteria(rule)) return "every fax";
    std::string text = rule.Destinations.empty() ? "every destination" : "";
    for (const auto& [name, words] : summary) {
        const bool isCriterion = name != "Description" && name != "Servers";
        if (isCriterion && words != kAnyValue) text.append(text.empty() ? "" : "; ").append(words);
    }
    return text;
}

std::vector<std::string> FoldedWords(std::string_view text) {
    std::vector<std::string> words;
    for (std::string_view rest = SkipBlanks(text); !rest.empty(); rest = SkipBlanks(rest)) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        words.push_back(UpperText(word));
        rest.remove_prefix(word.size());
    }
    return words;
}

} // namespace

RuleRows::RuleRows(const RuleSession& session, const CalendarTime& today) : session_(session), today_(today) {}

void RuleRows::Show(RulesShown shown, FilterEntry entry, std::vector<RuleFilter> filters) {
    shown_ = shown;
    entry_ = std::move(entry);
    filters_ = std::move(filters);
    met_.clear();
    texts_.clear();
    for (std::size_t i = 0; shown_ != RulesShown::All && i < session_.Rules().size(); ++i)
        if (MeetsAll(session_.Rules()[i], filters_, Basis())) met_.push_back(i);
}

void RuleRows::Refresh() {
    search_.reset();
    dead_.clear();
    folded_.clear();
    noted_ = 0;
    deciding_.reset();
    if (shown_ == RulesShown::All)
        texts_.clear(); // what meets the filter is looked for when it is shown
    else
        Show(shown_, entry_, filters_);
}

std::string RuleRows::FilterText() const {
    if (shown_ == RulesShown::All || filters_.empty()) return {};
    return FillMessage(kFilterCount, DescribeFilter(entry_), met_.size(), session_.Rules().size());
}

void RuleRows::SetDeciding(std::optional<std::size_t> place) {
    deciding_ = place;
    texts_.clear();
}

bool RuleRows::LookForDead(std::int64_t milliseconds) {
    if (!search_)
        search_ = std::make_unique<DeadRuleSearch>(session_.Rules(), session_.Names().Places, session_.Offpeak());
    const std::int64_t end = platform::TheClock().Ticks() + milliseconds;
    bool goesOn = true;
    while (goesOn && platform::TheClock().Ticks() < end) goesOn = search_->Continue(kSlice);
    const std::vector<DeadRule>& found = search_->Found();
    if (noted_ < found.size()) texts_.clear();
    for (; noted_ < found.size(); ++noted_) dead_.emplace(found[noted_].Rule, found[noted_]);
    return goesOn;
}

std::size_t RuleRows::Count() const { return shown_ == RulesShown::Filtered ? met_.size() : session_.Rules().size(); }

std::size_t RuleRows::RuleAt(std::size_t row) const { return shown_ == RulesShown::Filtered ? met_.at(row) : row; }

std::optional<std::size_t> RuleRows::RowOf(std::size_t place) const {
    if (shown_ != RulesShown::Filtered) return place < session_.Rules().size() ? std::optional(place) : std::nullopt;
    const auto found = std::ranges::lower_bound(met_, place);
    if (found == met_.end() || *found != place) return {};
    return static_cast<std::size_t>(found - met_.begin());
}

bool RuleRows::MeetsFilter(std::size_t place) const {
    return shown_ != RulesShown::All && !filters_.empty() && std::ranges::binary_search(met_, place);
}

RuleRows::Texts RuleRows::TextsOf(std::size_t place) const {
    const RoutingRule& rule = session_.Rules()[place];
    const std::vector<SummaryLine> summary = SummarizeRule(rule, session_.Names().Places);
    std::string number = std::to_string(place + 1);
    std::string marks;
    if (MeetsFilter(place)) marks += '*';
    if (deciding_ == place) marks += '>';
    if (dead_.contains(place)) marks += 'x';
    if (!session_.LossOf(place).empty()) marks += '!';
    if (!marks.empty()) number.append(" ").append(marks);
    return {number, summary.front().Words, CriteriaText(summary, rule), summary.back().Words};
}

std::string_view RuleRows::Text(std::size_t row, std::size_t column) const {
    const std::size_t place = RuleAt(row);
    auto found = texts_.find(place);
    if (found == texts_.end()) found = texts_.emplace(place, TextsOf(place)).first;
    return found->second.at(column);
}

const std::string& RuleRows::Folded(std::size_t place) const {
    folded_.resize(session_.Rules().size());
    std::string& text = folded_[place];
    if (text.empty())
        for (const std::string& cell : TextsOf(place)) text.append(UpperText(cell)).append("\n");
    return text;
}

std::optional<std::size_t> RuleRows::Find(std::string_view words, std::size_t from) const {
    const std::vector<std::string> wanted = FoldedWords(words);
    for (std::size_t i = 0; !wanted.empty() && i < Count(); ++i) {
        const std::size_t row = (from + i) % Count();
        const std::string& text = Folded(RuleAt(row));
        if (std::ranges::all_of(wanted, [&](const auto& word) { return text.find(word) != std::string::npos; }))
            return row;
    }
    return {};
}

std::string RuleRows::WhyDead(std::size_t place) const {
    const auto found = dead_.find(place);
    return found == dead_.end() ? std::string() : DescribeDeadRule(session_.Rules(), found->second);
}

std::string RuleRows::DescribeMarks(std::size_t place) const {
    std::vector<std::string> sentences;
    if (dead_.contains(place)) sentences.push_back(WhyDead(place));
    if (!session_.LossOf(place).empty()) sentences.push_back(session_.LossOf(place));
    if (deciding_ == place) sentences.push_back(FillMessage(kDecidesTriedFax));
    if (MeetsFilter(place)) sentences.push_back(FillMessage(kMeetsFilter));
    std::string text;
    for (const std::string& sentence : sentences) text.append(text.empty() ? "" : ". ").append(sentence);
    return text;
}

} // namespace bv
