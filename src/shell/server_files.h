// The control files of the server's database directory, each named once. Most of the system has a name in capitals;
// where an editor replaces the file as a whole, that editor's spelling is the one that its messages show.
#pragma once

#include <string>
#include <string_view>

#include "ctlfile/replaced_file.h"
#include "shell/server_paths.h"

namespace bv {

enum class ServerFile {
    Setup,
    UserList,
    UserTemplate,
    MailList,
    MailUsers,
    Routing,
    Dialling,
    Links,
    Rules,
    Countries,
    Regions
};

// "SETUP.INI".
std::string_view NameOf(ServerFile file);
std::string PathOf(ServerFile file);

// That a file may not be written, in a sentence for the second status line; empty for one that may, or is not there.
std::string ReadOnlyText(const std::string& path);

// The file as its editor replaces it, in the editor's spelling ("Setup.ini"), with the name of its new text. Only of
// files that are replaced as wholes.
ReplacedFile ReplacedFileOf(ServerFile file, const ServerPaths& paths = Paths());

// The file in each message or catalogue directory that lists what lies there.
inline constexpr std::string_view kDirectoryFile = "MSGDIR.CTL";

} // namespace bv
