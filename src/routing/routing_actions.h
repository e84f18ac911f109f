// What a person does to the inward routing, whole: names are held to the user list, and a rule is looked for before it
// is changed. Each is false after a message.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "routing/routing_file.h"

namespace bv {

// All rules of a kind, in file order; none, after a message of the reader, when they cannot be read.
std::optional<std::vector<SenderIdRule>> SenderRules();
std::optional<std::vector<SubAddressRule>> SubAddressRules();
std::optional<std::vector<ForwardRule>> ForwardRules();

// Each adds a rule as the Save of its kind (inward_actions.h), by what a person types: the rule that is there gives
// way. A sender keeps its organisation unless one is given.
bool EnterSenderRule(std::string_view sender, std::string_view addressee, std::string_view user,
                     std::optional<std::string_view> organisation);
bool EnterSubAddressRule(std::string_view subAddress, std::string_view user);
bool EnterForwardRule(std::string_view user, std::string_view target, bool deletes);

// Each takes a rule away, or with RemoveSender without an addressee all records of a sender; 9140 says that there is
// none.
bool RemoveSender(std::string_view sender, std::optional<std::string_view> addressee);
bool RemoveSubAddressRule(std::string_view subAddress);
bool RemoveForwardRule(std::string_view user);

} // namespace bv
