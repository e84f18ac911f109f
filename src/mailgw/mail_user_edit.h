// One record of the mail list while a person edits it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mailgw/mail_record.h"

namespace bv {

// The characters that a value of the key has at most.
std::size_t LimitOfMailValue(MailKey::Index key);

// Sets a value of the record as a person types it; the fault in a sentence when the list cannot keep it.
std::optional<std::string> SetMailValue(MailUser& user, MailKey::Index key, std::string_view text);

// Reads the record of that number in the list, from 0. False, with nothing found, after 413 or 9011.
bool ReadListedMailUser(std::size_t number, std::optional<MailUser>& user);

// The key that keeps a record from being saved.
struct MailUserFault {
    MailKey::Index Key = MailKey::Emailname;
};

// Writes a record that a person has changed, but for its e-mail name; one that is as before is left alone. A server
// user that is another one must be in the user list, an account name that is another one nobody else's; Profile is set
// as the user list says. Lines that stay as they are and lines with other keys keep their bytes. Status 456. The fault
// after 9435, 9425, "Brivane user %s not found", or, of the e-mail name, 9025 when the record is another one meanwhile,
// and a message about a file.
std::optional<MailUserFault> SaveMailUser(const MailUser& before, MailUser after);

} // namespace bv
