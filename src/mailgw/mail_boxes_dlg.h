// The boxes of one mail user, and the choice of one from the mail system.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "mailgw/mail_actions.h"
#include "mailgw/mail_record.h"

namespace bv {

// Each changes a record of the mail list, or gives it another e-mail name. The e-mail name; none when it was cancelled.
std::optional<std::string> EditMailUserByDialog(HWND owner, const MailUser& user);
std::optional<std::string> ReplaceMailUserByDialog(HWND owner, const ListedMailUser& user);

// Has the person choose a user of the mail system, of which a part of the name may be given. The name; empty when it
// was cancelled.
std::string PickMailName(HWND owner, const std::string& beginning);

INT_PTR CALLBACK MailUserEditDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK MailReplaceDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK SelectMailNameDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
