#include "shell/server_paths.h"

#include <algorithm>
#include <utility>

#include "ctlfile/file_gate.h"
#include "ctlfile/leftover.h"
#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/replaced_file.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kDatabaseDirectory = "B-DB\\";
constexpr std::size_t kMaxSearchList = 511;
constexpr OpenTimeout kIniTimeout{10};
constexpr OpenTimeout kSetupTimeout{30};

ServerPaths loadedPaths;

// Adds a directory, or a list of them, as far as there is room.
void AddToSearchList(std::string& list, std::string_view directories) {
    if (directories.empty()) return;
    if (!list.empty()) list += ';';
    list += directories;
    if (list.size() > kMaxSearchList) list.resize(kMaxSearchList);
}

std::string SearchList() {
    platform::Environment& environment = platform::TheEnvironment();
    std::string list;
    for (const char* variable : {"BVAXINIT", "INIT", "PATH"}) {
        AddToSearchList(list, environment.Variable(variable).value_or(""));
    }
    AddToSearchList(list, environment.WindowsDirectory());
    AddToSearchList(list, environment.CurrentDirectory());
    return list;
}

struct AreaKey {
    FixedText<255> ServerPaths::*Area;
    std::string_view Name;
};

constexpr AreaKey kAreaKeys[] = {
    {&ServerPaths::AllUserArea, "AllUserArea"}, {&ServerPaths::RequestArea, "RequestArea"},
    {&ServerPaths::ServerArea, "ServerArea"},   {&ServerPaths::SystemArea, "SystemArea"},
    {&ServerPaths::MailArea, "MailArea"},
};

void ReadAreas(ControlStream& iniFile, Position paragraph, ServerPaths& paths) {
    for (const auto& [area, name] : kAreaKeys) {
        FixedText<255> directory;
        const std::string key(name);
        if (!GetKeyString(iniFile, key + ":", directory, paragraph)) {
            GetKeyString(iniFile, key + "=", directory, paragraph);
        }
        paths.*area = WithBackslash(directory);
    }
}

StatusCode ReadIniFile(ServerPaths& paths) {
    std::string directory;
    if (const StatusCode status = FindIniDirectory(directory); status != kDone) {
        ShowError("ERROR - File %s not found", kIniFile);
        return status;
    }
    ControlStream iniFile = OpenShared(directory.append(kIniFile), "rb", kIniTimeout);
    if (!iniFile) {
        ShowError("ERROR - Can't open file %s", directory);
        return kFileFailed;
    }
    ControlLine header;
    Position paragraph = 0;
    SayLeftover(iniFile);
    const bool found = FindParagraph(iniFile, "[SERVER]", header, &paragraph) ||
                       FindParagraph(iniFile, "[SERVER-WKN]", header, &paragraph);
    if (found) ReadAreas(iniFile, paragraph, paths);
    if (!WasRead(iniFile)) return kFileFailed;
    if (found) return kDone;
    ShowError("ERROR - [SERVER] Paragraph missing from %s file", kIniFile);
    return kParagraphMissing;
}

// Shows a message for each area that is required and empty.
bool CheckAreas(const ServerPaths& paths) {
    bool complete = true;
    const auto check = [&](const FixedText<255>& area, const MessageWith<1>& message) {
        if (!area.IsEmpty()) return;
        ShowError(message, kIniFile);
        complete = false;
    };
    check(paths.ServerArea, "ServerArea line missing from %s file");
    check(paths.SystemArea, "SystemArea line missing from %s file");
    check(paths.AllUserArea, "AllUserArea line missing from %s file");
    check(paths.RequestArea, "RequestArea line missing from %s file");
    return complete;
}

// Where the log of that name lies. Empty, after a message, when the path is too long.
std::string LogPath(const ServerPaths& paths, std::string_view name) {
    if (name.empty()) name = "SERVER.LOG";
    if (!DirectoryPart(name).empty()) return std::string(name);
    std::string path = paths.ServerArea.String().append(kDatabaseDirectory).append(name);
    if (path.size() <= kMaxPath) return path;
    ShowError("Invalid log file name '%s%s%s'", paths.ServerArea, kDatabaseDirectory, name);
    return {};
}

void ReadLogSettings(ControlStream& setupFile, ServerPaths& paths) {
    ControlLine header;
    Position paragraph = 0;
    FixedText<kMaxPath> name;
    if (FindParagraph(setupFile, "[OPTIONS]", header, &paragraph)) {
        GetKeyString(setupFile, "LogFile:", name, paragraph);
        // The blank is deliberate: a line written without one counts among the server's options, but not here.
        GetKeyNumber(setupFile, "LogKeepDays: ", paths.LogKeepDays, paragraph);
        GetKeyString(setupFile, "Language:", paths.Language, paragraph);
    }
    paths.LogFile = LogPath(paths, name);
}

// Opens SETUP.INI. A save of it that was cut off left only its new text; then it is offered to put that in place.
ControlStream OpenSetupFile(const ServerPaths& paths, const std::string& path) {
    ControlStream file = OpenToRead(path, kSetupTimeout);
    if (file || !IsMissing(path)) return file;
    ReplacedFile setup = ReplacedFileOf(ServerFile::Setup, paths);
    setup.Path = path;
    if (!OfferRecovery(setup)) return file;
    return OpenToRead(path, kSetupTimeout);
}

} // namespace

const ServerPaths& Paths() { return loadedPaths; }

std::string DatabaseFile(std::string_view name, const ServerPaths& paths) {
    return paths.SystemArea.String().append(kDatabaseDirectory).append(name);
}

bool FileExists(const std::string& path) {
    const auto found = platform::Files().Find(path);
    return found && !found->IsDirectory;
}

StatusCode FindIniDirectory(std::string& directory) {
    const std::string list = SearchList();
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(';', start), list.size());
        // An element of nothing stands for the current directory.
        const std::string_view element = TrimBlanks(std::string_view(list).substr(start, end - start));
        directory = UpperText(WithBackslash(element));
        if (FileExists(directory + std::string(kIniFile))) return kDone;
        start = end + 1;
    }
    directory.clear();
    return kIniFileNotFound;
}

StatusCode LoadServerPaths(ControlStream* setupFile) {
    ServerPaths paths;
    if (const StatusCode status = ReadIniFile(paths); status != kDone) return status;
    const bool complete = CheckAreas(paths);
    if (paths.MailArea.IsEmpty()) {
        paths.MailArea = paths.ServerArea.String() + "B-MAIL\\";
        paths.MailAreaConfigured = false;
    }
    if (!complete) return kKeyMissing;

    const std::string setupPath = DatabaseFile(NameOf(ServerFile::Setup), paths);
    ControlStream opened = OpenSetupFile(paths, setupPath);
    if (!opened) {
        ShowError("ERROR - Unable to open file %s", setupPath);
        return kSetupFileUnreadable;
    }
    SayLeftover(opened);
    ReadLogSettings(opened, paths);
    if (!WasRead(opened)) return kSetupFileUnreadable;
    loadedPaths = paths;
    if (setupFile != nullptr) {
        opened.Rewind();
        *setupFile = std::move(opened);
    }
    return kDone;
}

} // namespace bv
