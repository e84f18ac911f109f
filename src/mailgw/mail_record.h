// A record of the mail list, and its lines.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "ctlfile/records.h"
#include "users/user_file.h"

namespace bv {

struct MailUser {
    WholeValue Brivname;
    WholeValue Emailname;
    WholeValue EmailBrivname; // the server user instead of Brivname, when Profile is set
    bool Profile = false;     // the server user is a profile of the mail system
    WholeValue SubAddr;       // these three are the gateway's, and only carried along
    WholeValue PrintRecd;
    WholeValue PrintSent;

    friend bool operator==(const MailUser&, const MailUser&) = default;
};

// The server user under whose name the mail user's faxes go.
std::string_view EffectiveUser(const MailUser& user);

inline constexpr std::string_view kMailUserHeader = "[USER]";

// The keys in the order of writing.
struct MailKey {
    enum Index : std::size_t { Brivname, Emailname, EmailBrivname, Profile, SubAddr, PrintRecd, PrintSent };
};
inline constexpr std::array<std::string_view, 7> kMailUserKeys = {
    "Brivname:", "Emailname:", "EmailBrivname:", "Profile:", "SubAddr:", "PrintRecd:", "PrintSent:"};

// The record that a walker with these keys is at.
void ReadMailUser(const RecordWalker& records, MailUser& user);

// What the file has for a key, and whether it has it: of empty values only the first two are written.
std::string MailValue(const MailUser& user, MailKey::Index key);
bool IsWritten(const MailUser& user, MailKey::Index key);

// The lines of its keys.
std::string KeyLines(const MailUser& user);

// The lines of a record's body that have none of the keys, the last one ended, and an empty line at the end.
std::string OtherLines(std::string_view body);

} // namespace bv
