// What NOTES.INI, in the Windows directory, tells of the Notes program of this workstation.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/fixed_text.h"

namespace bv {

// Reads "KeyFileName" and "Location" of section "Notes", each up to its first comma. When a mail file or a mail server
// is given, "MailFile" or "MailServer" must equal it without case, server names by their common names; false otherwise.
bool ReadNotesSettings(TextPlace keyFile, TextPlace location, std::optional<std::string_view> mailFile = {},
                       std::optional<std::string_view> mailServer = {});

// The common name of a server: "CN=Post/OU=North/O=Org" is "Post/OU=North". Any other form stays.
std::string_view CommonServerName(std::string_view server);

// Puts the Notes program's directory on this process's search path, unless NOTES.INI names none.
void AddNotesDirectoryToPath();

} // namespace bv
