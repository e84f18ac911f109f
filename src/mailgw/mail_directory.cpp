#include "mailgw/mail_directory.h"

#include "ctlfile/paths.h"
#include "ctlfile/reading.h"
#include "ctlfile/whole_file.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "voice/messages.h"

namespace bv {
namespace {

// "John Smith" as "Smith John"; empty for one word.
std::string Reversed(std::string_view name) {
    const std::size_t blank = name.find(' ');
    if (blank == std::string_view::npos) return {};
    return std::string(name.substr(blank + 1)).append(" ").append(name.substr(0, blank));
}

std::string_view WithoutLineEnd(std::string_view line) {
    while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

enum class Made { Failed, Nothing, List };

// Runs MAILCONF.EXE and puts what it has made in place; Failed after a message.
Made RunCompanion(std::uintptr_t ownerWindow) {
    const std::string directory = WithBackslash(platform::TheEnvironment().ProgramDirectory());
    if (!RunProgram(FormatText("%s%s -SE -H%X", directory, "MAILCONF.EXE", ownerWindow), WaitForProgram::Yes))
        return Made::Failed;
    const std::string made = DatabaseFile("MAILUSER.TMP");
    if (!FileExists(made)) return Made::Nothing;
    if (PutInPlace(made, PathOf(ServerFile::MailUsers))) return Made::List;
    ShowError(kUnableToUpdateFile, PathOf(ServerFile::MailUsers));
    return Made::Failed;
}

} // namespace

bool EnsureMailUserList(std::uintptr_t ownerWindow, bool force) {
    if (!force && OpenShared(PathOf(ServerFile::MailUsers), "rb")) return true;
    return RunCompanion(ownerWindow) != Made::Failed;
}

bool RemakeMailUserList(std::uintptr_t ownerWindow) {
    const Made made = RunCompanion(ownerWindow);
    if (made == Made::Nothing) ShowError(kNoMailUserListMade);
    return made == Made::List;
}

bool DeleteMailUserList() {
    const platform::FileError error = platform::Files().Delete(PathOf(ServerFile::MailUsers));
    return error == platform::FileError::None || error == platform::FileError::NotFound;
}

bool ReadMailDirectory(std::vector<MailPerson>& people) {
    people.clear();
    if (IsMissing(PathOf(ServerFile::MailUsers))) return true;
    ControlStream file = OpenForReading(PathOf(ServerFile::MailUsers));
    if (!file) return false;
    for (std::string_view line = file.NextRawLine(); !line.empty(); line = file.NextRawLine()) {
        const std::size_t tab = line.find('\t');
        if (tab == 0 || tab == std::string_view::npos) continue;
        people.push_back({std::string(line.substr(0, tab)), std::string(WithoutLineEnd(line.substr(tab + 1)))});
    }
    return WasRead(file);
}

StatusCode LookupMailUser(std::string_view displayName, std::size_t size, std::string& address) {
    if (displayName.empty() || IsMissing(PathOf(ServerFile::MailUsers))) return kKeyMissing;
    ControlStream file = OpenForReading(PathOf(ServerFile::MailUsers));
    if (!file) return kFileFailed;
    const std::string reversed = Reversed(displayName);
    for (std::string_view line = file.NextRawLine(); !line.empty(); line = file.NextRawLine()) {
        const bool begins =
            StartsWithFolded(line, displayName) || (!reversed.empty() && StartsWithFolded(line, reversed));
        const std::size_t tab = line.find('\t');
        if (!begins || tab == std::string_view::npos) continue;
        address = WithoutLineEnd(line.substr(tab + 1)).substr(0, size);
        return kDone;
    }
    return WasRead(file) ? kKeyMissing : kFileFailed;
}

} // namespace bv
