// The server account name of a mail user, made from the display name by an expression of the administrator's.
//
// An expression is a text of items: "%", a count 1 to 9 if wanted, and "First", "Second" or "Last" in any case; the
// other text does not count. "%1First%Last" takes one character of the word First and then all of Last. Display names
// are taken as surname first: their first word is Last, the second First, the third Second.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/fixed_text.h"
#include "shell/name_set.h"

namespace bv {

using AccountName = FixedText<27>;
using AccountExpression = FixedText<27>;

inline constexpr std::string_view kDefaultAccountExpression = "%1First%Last";

// Whether the text is an expression: of at most 27 characters, with an item at least.
bool IsAccountExpression(std::string_view text);

// The expression of "MailUserAlias:" in "[OPTIONS]" of SETUP.INI; the default without one. None after 413 or 9011.
std::optional<AccountExpression> ReadAccountExpression();

// Writes it there; one that is no expression is not written. Status 470 and 471. False after 9442, 413 or 5000.
bool WriteAccountExpression(std::string_view expression);

// Makes the account name from the display name up to its first tab. False, the name empty, when nothing comes of it.
bool MakeMailAccountName(std::string_view displayName, std::string_view expression, AccountName& name);

// The same with the expression of SETUP.INI; false also after its messages.
bool MakeMailAccountName(std::string_view displayName, AccountName& name);

// The account names that a mail user cannot get: those that mail users have, and the names of users and user groups.
// Those of these e-mail names, the first record of each, leave. None after 413 or 9011.
std::optional<NameSet> ReadTakenAccounts(NameSet leaving = {});

// Which of the account names clash: with one that is taken, or among themselves. An empty one does not.
std::vector<bool> ClashingAccountNames(std::span<const std::string> accounts, const NameSet& taken);

} // namespace bv
