// The boxes of one rule of inward routing, one for each kind.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "routing/inward_rules.h"

namespace bv {

// Each changes the rule, or adds a new one without one. The name that the list has for it (InwardRows::Name); none when
// it was cancelled.
std::optional<std::string> SenderRuleByDialog(HWND owner, const InwardRules& rules,
                                              const std::optional<SenderIdRule>& before);
std::optional<std::string> SubAddressRuleByDialog(HWND owner, const std::optional<SubAddressRule>& before);
std::optional<std::string> ForwardRuleByDialog(HWND owner, const InwardRules& rules,
                                               const std::optional<ForwardRule>& before);

INT_PTR CALLBACK SenderRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK SubAddressRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK ForwardRuleDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
