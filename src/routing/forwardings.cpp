#include "routing/forwardings.h"

#include "platform/ascii.h"

namespace bv {

Forwardings::Forwardings(const std::vector<ForwardRule>& forwards) {
    for (const ForwardRule& rule : forwards) targets_.emplace(UpperText(rule.User), UpperText(rule.Target));
}

std::optional<std::string> Forwardings::Set(std::string_view user, const std::optional<std::string>& target) {
    const auto at = targets_.find(UpperText(user));
    std::optional<std::string> before;
    if (at != targets_.end()) {
        before = at->second;
        targets_.erase(at);
    }
    if (target) targets_.emplace(UpperText(user), UpperText(*target));
    return before;
}

bool Forwardings::IsInCircle(std::string_view user) const {
    const std::string start = UpperText(user);
    std::unordered_set<std::string_view> seen;
    for (auto at = targets_.find(start); at != targets_.end(); at = targets_.find(at->second)) {
        if (at->second == start) return true;
        if (!seen.insert(at->second).second) return false;
    }
    return false;
}

std::string Forwardings::CircleText(std::string_view user) const {
    constexpr std::size_t kMostShown = 160;
    const std::string start = UpperText(user);
    std::string way = start;
    auto at = targets_.find(start);
    for (; at->second != start && way.size() < kMostShown; at = targets_.find(at->second))
        way.append(" -> ").append(at->second);
    return way.append(at->second == start ? " -> " : " -> ... -> ").append(start);
}

std::unordered_set<std::string_view> Forwardings::InCircles() const {
    std::unordered_set<std::string_view> found;
    std::unordered_map<std::string_view, std::string_view> gone; // with the start of the way
    for (const auto& [start, target] : targets_) {
        auto at = targets_.find(start);
        while (at != targets_.end() && gone.emplace(at->first, start).second) at = targets_.find(at->second);
        if (at == targets_.end() || gone.at(at->first) != start) continue;
        while (found.insert(at->first).second) at = targets_.find(at->second);
    }
    return found;
}

} // namespace bv
