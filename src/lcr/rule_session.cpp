#include "lcr/rule_session.h"

#include <algorithm>
#include <utility>

#include "lcr/lcr_messages.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::size_t kMostSteps = 20;
constexpr std::size_t kMostLosses = 12; // that a question names

template <class Row>
void MoveRow(std::vector<Row>& rows, std::size_t from, std::size_t to) {
    const auto at = [&](std::size_t place) { return rows.begin() + static_cast<std::ptrdiff_t>(place); };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to + 1));
    else
        std::rotate(at(to), at(from), at(from + 1));
}

// The description with a number behind it that no other rule's has.
FixedText<99> FreeDescription(const RuleList& rules, const RoutingRule& rule) {
    const auto isTaken = [&](const std::string& text) {
        return std::ranges::any_of(rules, [&](const RoutingRule& one) { return EqualFolded(one.Description, text); });
    };
    for (int number = 2;; ++number) {
        const std::string suffix = FormatText(" (%d)", number);
        const std::string text =
            std::string(rule.Description.View().substr(0, FixedText<99>::kLimit - suffix.size())) + suffix;
        if (!isTaken(text)) return text;
    }
}

} // namespace

bool RuleSession::Open() {
    if (!LoadRuleNames(names_)) return false;
    offpeak_ = ReadOffpeak();
    if (!offpeak_) ShowWarning(kOffpeakUnknown);
    std::optional<OpenedRules> opened = OpenRules();
    if (!opened) return false;
    rules_ = std::move(opened->Rules);
    stamp_ = opened->Stamp;
    losses_.assign(rules_.size(), {});
    const std::vector<LostReference> lost = CheckReferences(rules_, names_);
    for (const LostReference& one : lost)
        if (one.IsLast) losses_[one.Rule] = DescribeLoss(rules_, one);
    if (!lost.empty()) ShowWarning(kUndefinedNamesRemoved);
    isUnsaved_ = opened->IsRecovered || !lost.empty();
    return true;
}

// Gives back what undoes it.
RuleSession::Step RuleSession::Perform(Step step) {
    using enum Step::Kind;
    const auto at = static_cast<std::ptrdiff_t>(step.Place);
    switch (step.What) {
    case Insert:
        rules_.insert(rules_.begin() + at, std::move(step.Rules.front()));
        losses_.insert(losses_.begin() + at, std::move(step.Losses.front()));
        return {Erase, step.Place};
    case Erase: {
        Step back = {Insert, step.Place, 0, {rules_[step.Place]}, {losses_[step.Place]}};
        rules_.erase(rules_.begin() + at);
        losses_.erase(losses_.begin() + at);
        return back;
    }
    case Replace:
        std::swap(rules_[step.Place], step.Rules.front());
        std::swap(losses_[step.Place], step.Losses.front());
        return step;
    case Move:
        MoveRow(rules_, step.Place, step.To);
        MoveRow(losses_, step.Place, step.To);
        return {Move, step.To, step.Place};
    case ReplaceAll: break;
    }
    rules_.swap(step.Rules);
    losses_.swap(step.Losses);
    return step;
}

// The list as it is waits for its save; one that is as it was read has nothing to wait for.
bool RuleSession::Keep() const { return IsChanged() ? KeepRulesPending(rules_) : DropPendingRules(); }

bool RuleSession::Change(Step step) {
    Step back = Perform(std::move(step));
    ++depth_;
    if (!Keep()) {
        --depth_;
        Perform(std::move(back));
        return false;
    }
    undo_.push_back(std::move(back));
    if (undo_.size() > kMostSteps) undo_.pop_front();
    return true;
}

RuleCheck RuleSession::Accept(std::optional<std::size_t> place, RoutingRule& edited, RuleLeaving leaving,
                              RuleField& wrong) {
    const RuleCheck check = CheckRule(rules_, place, edited, names_, leaving, wrong);
    if (check != RuleCheck::Fine) return check;
    const Step::Kind what = place ? Step::Kind::Replace : Step::Kind::Insert;
    return Change({what, place.value_or(rules_.size()), 0, {edited}, {{}}}) ? RuleCheck::Fine : RuleCheck::Refused;
}

bool RuleSession::Delete(std::size_t place) {
    const std::string description = rules_.at(place).Description.String();
    if (!Change({Step::Kind::Erase, place})) return false;
    ShowStatus(kDeletedRule, description);
    return true;
}

bool RuleSession::Clone(std::size_t place) {
    RoutingRule copy = rules_.at(place);
    copy.Description = FreeDescription(rules_, copy);
    return Change({Step::Kind::Insert, place + 1, 0, {std::move(copy)}, {losses_.at(place)}});
}

bool RuleSession::Move(std::size_t place, std::size_t to) {
    if (place == to || to >= rules_.size()) return true;
    return Change({Step::Kind::Move, place, to});
}

bool RuleSession::Replace(RuleList rules) {
    std::vector<std::string> losses(rules.size());
    for (std::size_t i = 0; i < std::min(rules.size(), rules_.size()); ++i)
        if (rules[i] == rules_[i]) losses[i] = losses_[i];
    return Change({Step::Kind::ReplaceAll, 0, 0, std::move(rules), std::move(losses)});
}

std::optional<std::size_t> RuleSession::Undo() {
    if (undo_.empty()) return {};
    const std::size_t place = undo_.back().What == Step::Kind::Move ? undo_.back().To : undo_.back().Place;
    Step again = Perform(std::move(undo_.back()));
    --depth_;
    if (!Keep()) {
        ++depth_;
        undo_.back() = Perform(std::move(again));
        return {};
    }
    undo_.pop_back();
    ShowStatus(kUndoneRuleChange);
    return place;
}

bool RuleSession::AgreesToLosses() const {
    std::string text;
    std::size_t count = 0;
    for (const std::string& loss : losses_) {
        if (loss.empty() || ++count > kMostLosses) continue;
        text.append(text.empty() ? "" : "\n").append(loss);
    }
    if (count > kMostLosses) text += "\n...";
    return count == 0 || AskWarning(kSaveRulesThatLost, text);
}

bool RuleSession::AgreesToOverwrite() {
    TextStamp now;
    if (!AreChangedSince(stamp_, now)) return true;
    if (!AskWarning(kChangedSinceOpened, RulesPath())) return false;
    stamp_ = now;
    return true;
}

bool RuleSession::Save() {
    if (!IsChanged()) return true;
    RuleNames names;
    if (!LoadRuleNames(names)) return false;
    names_ = std::move(names);
    if (!DropLostReferences(rules_, names_, LostNames::Ask) || !AgreesToLosses() || !AgreesToOverwrite()) return false;
    if (!SaveRules(rules_, stamp_)) return false;
    stamp_ = StampOfSaved(rules_);
    isUnsaved_ = false;
    depth_ = 0;
    losses_.assign(rules_.size(), {});
    return true;
}

} // namespace bv
