// Where the fax server's files lie.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"
#include "ctlfile/status.h"

namespace bv {

// The server's directories, each ending in "\" (or empty), as BRIVANE.INI gives them, and the log settings of the
// server's SETUP.INI.
struct ServerPaths {
    FixedText<255> AllUserArea;     // holds every user's directory
    FixedText<255> RequestArea;     // the queue
    FixedText<255> ServerArea;      // the server's programs
    FixedText<255> SystemArea;      // the base directory: B-DB\ and the other B- directories
    FixedText<255> MailArea;        // the mail gateway
    bool MailAreaConfigured = true; // false: MailArea was not in the file and was derived
    FixedText<268> LogFile;         // full path
    std::uint16_t LogKeepDays = 0;
    FixedText<3> Language;

    friend bool operator==(const ServerPaths&, const ServerPaths&) = default;
};

// The one record of the process: empty until LoadServerPaths succeeds, read-only for everybody else.
const ServerPaths& Paths();

// The file that leads to them.
inline constexpr std::string_view kIniFile = "BRIVANE.INI";

// Finds the directory (upper-cased, ending in "\") of BRIVANE.INI along BVAXINIT, INIT, PATH, the Windows directory
// and the current directory. 0 or -4072. Shows nothing.
StatusCode FindIniDirectory(std::string& directory);

// Fills the record. 0, or after its messages -4072 (BRIVANE.INI not found), -4084 (not opened), -4071 (no server
// paragraph), -4059 (area lines missing) or -4058 (SETUP.INI not opened). When a save of SETUP.INI was cut off, asks
// 9166 whether to put its new text in place. Hands over the opened SETUP.INI, rewound, when a place is given. May be
// called again to refresh the record.
StatusCode LoadServerPaths(ControlStream* setupFile = nullptr);

// The path of a file in the server's database directory: SystemArea, "B-DB\" and the name.
std::string DatabaseFile(std::string_view name, const ServerPaths& paths = Paths());

// Whether a file, and not a directory, stands at the path.
bool FileExists(const std::string& path);

} // namespace bv
