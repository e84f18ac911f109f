// The server account name of a mail user, made from the display name by an expression of the administrator's.
//
// An expression is a text of items: "%", a count 1 to 9 if wanted, and "First", "Second" or "Last" in any case; the
// other text does not count. "%1First%Last" takes one character of the word First and then all of Last. Display names
// are taken as surname first: their first word is Last, the second First, the third Second.
#pragma once

#include <optional>
#include <string_view>

#include "ctlfile/fixed_text.h"

namespace bv {

using AccountName = FixedText<27>;
using AccountExpression = FixedText<27>;

inline constexpr std::string_view kDefaultAccountExpression = "%1First%Last";

// Whether the text is an expression: of at most 27 characters, with an item at least.
bool IsAccountExpression(std::string_view text);

// The expression of "MailUserAlias:" in "[OPTIONS]" of SETUP.INI; the default without one. None after 413 or 9011.
std::optional<AccountExpression> ReadAccountExpression();

// Makes the account name from the display name up to its first tab. False, the name empty, when nothing comes of it.
bool MakeMailAccountName(std::string_view displayName, std::string_view expression, AccountName& name);

// The same with the expression of SETUP.INI; false also after its messages.
bool MakeMailAccountName(std::string_view displayName, AccountName& name);

} // namespace bv
