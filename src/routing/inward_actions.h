// What a person does to rules of inward routing that are listed: adds, changes and deletes them, with all questions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "routing/routing_lines.h"

namespace bv {

// What of a rule is wrong, after its message; Nothing: it is saved.
enum class RuleField { Nothing, Key, Organisation, Addressee, User, File };

// Whether the rule that is there already gives way (9320).
enum class Replacing { Asked, Agreed };

// Each adds a rule, or changes the one that it was before, which keeps its place; one that is as before is not written.
// A value as it was is never refused; else users must be in the user list, and an addressee and the user of a
// forwarding may also be a word in parentheses. Faults: 9324, 9325, 9326, 9138 for what the file cannot keep, 9139 for
// a sender with several records, 9025 when the rule is another one meanwhile. Questions: 9320, 9321 for a line that no
// reader understands, 9322 when a sender's last rule goes to another sender, 9327 for faxes that would come back, 9329
// for the identifier of a sender with several rules. Status 455 or 456.
RuleField SaveSenderRule(const std::optional<SenderIdRule>& before, SenderIdRule rule, Replacing replacing);
RuleField SaveSubAddressRule(const std::optional<SubAddressRule>& before, SubAddressRule rule, Replacing replacing);
RuleField SaveForwardRule(const std::optional<ForwardRule>& before, ForwardRule rule, Replacing replacing);

// The organisation of a sender who has a record; none for another one.
std::optional<std::string> OrganisationOf(const std::vector<SenderIdRule>& rules, std::string_view sender);

// Under which key a sender is filed, and who else is (9331); empty for none. Apart: the number of the record that is
// the sender's own.
std::string FiledText(const std::vector<SenderIdRule>& rules, std::string_view sender, int apart);

// Each takes rules away after the question, in one rewrite; a sender's rule without an addressee is the record itself.
// When senders lose their last rule, asks whether they go, too (9322, 9328). Status 458 or 9229. False also when the
// answer is No, and after 9025.
bool DeleteSenderRules(const std::vector<SenderIdRule>& rules);
bool DeleteSubAddressRules(const std::vector<SubAddressRule>& rules);
bool DeleteForwardRules(const std::vector<ForwardRule>& rules);

} // namespace bv
