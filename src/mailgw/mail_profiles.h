// The server users that are profiles of the mail system: many mail users send by the rights of one.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/ascii.h"

namespace bv {

// Those whose "MailName:" begins with "*", of each name the first user.
class ProfileUsers {
  public:
    // Without a user list there are none. False after 413 or 9011.
    bool Read();

    [[nodiscard]] bool Has(std::string_view name) const { return names_.contains(UpperText(name)); }

    // Their names, in the order of the user list.
    [[nodiscard]] const std::vector<std::string>& Names() const { return listed_; }

  private:
    std::unordered_set<std::string> names_; // in upper case
    std::vector<std::string> listed_;
};

} // namespace bv
