// The users of the mail system with their addresses: B-DB\MAILUSER.DAT of the system area, a line of display name, tab
// and address for each. MAILCONF.EXE, in the program's directory, makes it from the mail system's own directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/status.h"

namespace bv {

// Runs MAILCONF.EXE, unless the file is there and this is not forced, and puts the file that it has made in place; when
// it made none, the old one stays. The window is that which the program shows itself over, 0 for none. False after 5031
// (not started) or 5004 (not put in place: then the new file lies beside, as MAILUSER.TMP).
bool EnsureMailUserList(std::uintptr_t ownerWindow, bool force);

// Has MAILCONF.EXE make the file anew. False after 5031, 5004 or 9421: it has made none, and the old one stays.
bool RemakeMailUserList(std::uintptr_t ownerWindow);

// Deletes the file, so that the next EnsureMailUserList makes it anew. False when it is still there.
bool DeleteMailUserList();

struct MailPerson {
    std::string Name;
    std::string Address;
};

// Reads all users of the mail system in one pass, in file order; lines without a tab are none. Without a file there are
// none. False, with those that were read, after 413 or 9011.
bool ReadMailDirectory(std::vector<MailPerson>& people);

// The address, of at most `size` characters, on the first line that has a tab and begins with the display name, in any
// case, or with its words after the first followed by the first ("John Smith" finds "Smith John"). kKeyMissing where
// there is none, also without a file or a name; kFileFailed after 413 or 9011, when nobody can tell.
StatusCode LookupMailUser(std::string_view displayName, std::size_t size, std::string& address);

} // namespace bv
