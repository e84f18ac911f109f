// To whom each user's faxes are forwarded, and whose come back.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "routing/routing_lines.h"

namespace bv {

class Forwardings {
  public:
    // Of several forwardings of one user the first counts. Names are compared in upper case, and given so.
    explicit Forwardings(const std::vector<ForwardRule>& forwards);

    // Gives the user another target, or none, and returns the one before.
    std::optional<std::string> Set(std::string_view user, const std::optional<std::string>& target);

    // Whether faxes of the user come back.
    [[nodiscard]] bool IsInCircle(std::string_view user) const;

    // The way from a user whose faxes come back to that user again, of a long one the beginning: "ANNA -> BEN -> ANNA".
    [[nodiscard]] std::string CircleText(std::string_view user) const;

    // The users whose faxes come back to them: each way is gone once, however many begin in it.
    [[nodiscard]] std::unordered_set<std::string_view> InCircles() const;

  private:
    std::unordered_map<std::string, std::string> targets_;
};

} // namespace bv
