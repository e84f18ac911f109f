#include "routing/inward_trace.h"

#include <algorithm>
#include <array>

#include "platform/ascii.h"
#include "routing/routing_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

using Kind = InwardStep::Kind;

const SenderIdRule* FindSenderRule(const InwardRules& rules, const ReceivedFax& fax) {
    const std::string key = SenderRecordKey(fax.Sender);
    if (key.empty()) return nullptr;
    const std::string_view addressee = fax.Addressee.empty() ? kUnaddressed : std::string_view(fax.Addressee);
    const auto found = std::ranges::find_if(rules.Senders, [&](const SenderIdRule& rule) {
        return SenderRecordKey(rule.RecordKey) == key && EqualFolded(rule.Addressee, addressee) && !rule.User.empty();
    });
    return found == rules.Senders.end() ? nullptr : &*found;
}

// Follows the forwardings from the user to whom the last step leads.
void FollowForwards(const std::vector<ForwardRule>& forwards, std::vector<InwardStep>& steps) {
    std::vector<std::string> way = {UpperText(steps.back().To)};
    for (;;) {
        const auto rule = std::ranges::find_if(
            forwards, [&](const ForwardRule& forward) { return EqualFolded(forward.User, way.back()); });
        if (rule == forwards.end() || rule->Target.empty()) return;
        steps.push_back({rule->Deletes ? Kind::Forwards : Kind::Copies, way.back(), rule->Target});
        const auto before = std::ranges::find(way, UpperText(rule->Target));
        if (before != way.end()) {
            std::string text;
            for (auto user = before; user != way.end(); ++user) text.append(*user).append(" -> ");
            steps.push_back({Kind::ComesBack, *before, text + *before});
            return;
        }
        way.push_back(UpperText(rule->Target));
    }
}

} // namespace

std::vector<InwardStep> TraceInward(const InwardRules& rules, const ReceivedFax& fax) {
    std::vector<InwardStep> steps;
    const auto follow = [&](Kind kind, const std::string& from, const std::string& to) {
        steps.push_back({kind, from, UpperText(to)});
        FollowForwards(rules.Forwards, steps);
    };
    const auto subAddress = std::ranges::find_if(rules.SubAddresses, [&](const SubAddressRule& rule) {
        return !fax.SubAddress.empty() && EqualFolded(rule.SubAddress, fax.SubAddress) && !rule.User.empty();
    });
    if (subAddress != rules.SubAddresses.end()) follow(Kind::BySubAddress, subAddress->SubAddress, subAddress->User);
    if (const SenderIdRule* sender = FindSenderRule(rules, fax)) follow(Kind::BySender, sender->Sender, sender->User);
    if (!steps.empty() || fax.Addressee.empty()) return steps;
    follow(Kind::Addressed, fax.Addressee, fax.Addressee);
    if (IsSpecialWord(fax.Addressee)) steps.erase(steps.begin());
    return steps;
}

std::string StepText(const InwardStep& step) {
    switch (step.What) {
    case Kind::BySubAddress: return FillMessage(kRoutedBySubAddress, step.From, step.To);
    case Kind::BySender: return FillMessage(kRoutedBySender, step.To);
    case Kind::Addressed: return FormatText("No rule routes it: %s, whom it names.", step.To);
    case Kind::Forwards: return FillMessage(kForwardsTo, step.From, step.To);
    case Kind::Copies: return FillMessage(kCopiesTo, step.From, step.To);
    case Kind::ComesBack: break;
    }
    return FormatText("It comes back: %s.", step.To);
}

std::string TraceText(const std::vector<InwardStep>& steps) {
    if (steps.empty()) return "No rule routes it.";
    std::string text;
    for (const InwardStep& step : steps) text.append(text.empty() ? "" : " ").append(StepText(step));
    return text;
}

std::string_view StepWord(InwardStep::Kind kind) {
    static constexpr std::array<std::string_view, 6> kWords = {"subaddr", "sender", "addressee",
                                                               "move",    "copy",   "back"};
    return kWords.at(static_cast<std::size_t>(kind));
}

} // namespace bv
