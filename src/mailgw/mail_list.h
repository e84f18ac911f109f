// The mail list: B-DB\MAILLIST.INI of the system area, with a paragraph "[USER]" for each user of the mail system who
// may send faxes, and the server user under whose name they go. Records stand in the order of "Emailname:", byte by
// byte.
//
// Every change rewrites the list once, through MAILLIST.TMP, and holds it against everybody else meanwhile. Lines
// outside the records concerned stay byte for byte, and after a failure the list is as it was, as far as copy_back.h
// can say that. Messages of a change: 5002 "Unable to create file %s", 5001 "Error writing to file %s", 5004 "Unable to
// update file %s", and 413 or 9011 when the user list, which tells the profiles, cannot be read.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "mailgw/mail_record.h"

namespace bv {

// The longest Emailname: that a line of the file holds with its key.
inline constexpr std::size_t kMaxEmailName = 269;

// Reads every record in one pass, in file order, until the visitor returns false; without a list there are none. False
// after 413 or 9011.
using MailUserVisitor = std::function<bool(const MailUser& user)>;
bool VisitMailUsers(const MailUserVisitor& visit);

// The first record of that e-mail name, in any case. False after 413 or 9011.
bool FindMailUser(std::string_view emailName, std::optional<MailUser>& found);

// The number of records whose effective server user is that one, in any case; 0 without a list. None after 413 or 9011.
std::optional<std::size_t> CountMailUsers(std::string_view serverName);

// One change for a server user: a record leaves, the first of that e-mail name in any case, or one comes, or the one
// that comes takes the place of the one that leaves, and what is carried along. Of changes that name one record, each
// takes the next one of that name.
struct MailUserChange {
    std::string_view ServerName;
    std::optional<std::string_view> Leaves = {};
    std::optional<std::string_view> Comes = {};
    std::string_view Account = {}; // the EmailBrivname of the one that comes, if it is to be another one
    bool LeavesOwn = false;        // only a record whose Brivname is the server user leaves, and must if one comes
};

// NotListed: 5427 has been shown of a record that should only leave, and MustDisableInMailSystem is set; everything
// else is done. NoList: none is to come, the list cannot be opened, and nothing has been shown. Failed: after 5021 for
// a record of a default user that would leave, 9025 for one that must leave and is not there, or a message above; then
// nothing is done.
enum class MailListOutcome { Done, NotListed, NoList, Failed };

// All changes in one rewrite, each of the list as it was before. A record that comes goes
// behind all that do not sort after it; the list is made when there is none. Profile is set when the server user's
// "MailName:" begins with "*". Status 474 for each record that has left.
MailListOutcome ChangeMailUsers(std::span<const MailUserChange> changes);

// Adds a record, or replaces that of the previous e-mail name. False after a message; for an empty name without one.
bool AddMailUser(std::string_view serverName, std::string_view emailName,
                 std::optional<std::string_view> previousEmailName = {});

// Removes a record. Failed after 5021 for a default user also when there is no such record.
MailListOutcome RemoveMailUser(std::string_view serverName, std::string_view emailName);

// The same; true when a record was removed.
bool DeleteMailUser(std::string_view serverName, std::string_view emailName);

// The process's mark that a user is still to be disabled in the mail system.
bool& MustDisableInMailSystem();

// Whether the list was written before it noted profiles: its first record has no "Profile:". Shows nothing.
bool NeedsUpgrade();

// Gives every record a "Profile:" line, of the server user EmailBrivname when Brivname is missing, unless the first one
// has it. Known keys come in the order of writing, other lines behind them. False after 5002 without a list.
bool UpgradeMailList();

} // namespace bv
