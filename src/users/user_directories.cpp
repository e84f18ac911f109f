#include "users/user_directories.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "ctlfile/whole_file.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "users/directories.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::array<std::string_view, 4> kWorkDirectories = {"PREVIEW", "G3N", "G3F", "G3S"}; // of B-OUT

// The types of message files; each may have a directory in B-OUT.
constexpr std::array<std::string_view, 11> kFileTypes = {"BIN", "TXT", "POS", "MH",  "G3N", "G3F",
                                                         "G3S", "EPN", "HP1", "HP3", "CTL"};

// The root of a user's directories, or what stands at a path below it.
std::string UserPath(std::string_view name, std::string_view below = {}) {
    return Paths().AllUserArea.String().append(name).append(below);
}

// Whether the user's root, the path below it or a directory between the two is a link: files are deleted only where
// they are the user's own, which those at a link's end need not be.
bool LeadsElsewhere(std::string_view name, std::string_view below) {
    for (std::size_t end = 0; end < below.size(); end = below.find('\\', end + 1)) {
        if (IsLink(UserPath(name, below.substr(0, end)))) return true;
    }
    return IsLink(UserPath(name, below));
}

bool MakeUserDirectory(std::string_view name, std::string_view below) {
    return CreateDirectoryPath(UserPath(name, below)) == 0;
}

bool CreateWorkDirectory(std::string_view name, std::string_view workDirectory) {
    const std::string below = std::string("\\B-OUT\\").append(workDirectory);
    if (!MakeUserDirectory(name, below)) return false;
    // So that a user who is added again begins with nothing.
    if (!LeadsElsewhere(name, below)) EmptyDirectory(UserPath(name, below));
    return true;
}

bool CreateOutDirectories(std::string_view name) {
    if (!MakeUserDirectory(name, "\\B-OUT")) return false;
    for (const std::string_view workDirectory : kWorkDirectories) {
        if (!CreateWorkDirectory(name, workDirectory)) return false;
    }
    return MakeUserDirectory(name, "\\B-GRAPH");
}

bool CreateTree(std::string_view name, RecordKind kind) {
    for (const std::string_view below : {"", "\\B-IN", "\\B-DB"}) {
        if (!MakeUserDirectory(name, below)) return false;
    }
    return kind == RecordKind::Group || CreateOutDirectories(name);
}

// Writes a file beside its place and puts it there, so that it is whole or as it was.
WriteFault PutWholeFile(const std::string& path, std::string_view text) {
    const std::string beside = TemporaryPath(path);
    const WriteFault fault = TryWriteWholeFile(beside, text);
    if (fault != WriteFault::None || PutInPlace(beside, path)) return fault;
    platform::Files().Delete(beside);
    return WriteFault::NotOpened;
}

// An empty one has only been begun, by a program that was ended. False also for one of which nothing can be found out.
bool CreateDirFile(const std::string& path, std::string_view type) {
    const auto info = platform::Files().Find(path);
    if (info && (info->IsDirectory || info->Length > 0)) return true;
    if (!info && !IsMissing(path)) return false;
    return PutWholeFile(path, FormatText("[BRIVANE]\r\nType: %s\r\nRevision: A\r\n", type)) == WriteFault::None;
}

bool ReportNotCreated(std::string_view directory, std::string_view file) {
    ShowError(std::string("Unable to create file %s").append(file).append(" for user"), directory);
    return false;
}

bool CreateDirFiles(std::string_view name, RecordKind kind) {
    if (!CreateReceiveDirFile(name)) return ReportNotCreated("B-IN\\", kDirectoryFile);
    if (kind == RecordKind::User && !CreateSendDirFile(name)) return ReportNotCreated("B-OUT\\", kDirectoryFile);
    return true;
}

// The template's lines with the sender's name in "[OPTIONS]".
class OptionsText {
  public:
    explicit OptionsText(std::string_view senderName) : from_("From: ") {
        for (const char c : senderName) from_ += Cleaned(c);
    }

    void Add(std::string_view line) {
        if (IsParagraphLine(line)) {
            if (inOptions_) LeaveOptions();
            inOptions_ = BeginsWith(line, kOptions);
        }
        if (inOptions_ && BeginsWith(line, "From:")) {
            AddFrom();
        } else {
            AddLine(line);
        }
    }

    // A template that ends in "[OPTIONS]" without a "From:" gets a second one. The server reads both, on purpose.
    std::string Finish() {
        if (!hasFrom_) {
            AddLine("");
            AddLine(kOptions);
            AddFrom();
        }
        return std::move(text_);
    }

  private:
    static constexpr std::string_view kOptions = "[OPTIONS]";

    void LeaveOptions() {
        if (!hasFrom_) AddFrom();
        AddLine("");
    }
    void AddFrom() {
        AddLine(from_);
        hasFrom_ = true;
    }
    void AddLine(std::string_view line) { text_.append(line).append(kLineEnd); }

    std::string from_;
    std::string text_;
    bool inOptions_ = false;
    bool hasFrom_ = false;
};

// What may stand below a user's root, what lies deeper first.
std::vector<std::string> DirectoriesBelow() {
    std::vector<std::string> all = {"\\B-IN"};
    for (const std::string_view type : kFileTypes) all.push_back(std::string("\\B-OUT\\").append(type));
    all.insert(all.end(), {"\\B-OUT\\PREVIEW", "\\B-OUT", "\\B-DB", "\\B-GRAPH"});
    return all;
}

// Adds the directory's files or, without any, the directory itself, unless something in it has been added.
void AddWhatIsLeft(const std::string& directory, std::vector<std::string>& left) {
    const auto info = platform::Files().Find(directory);
    if (!info || !info->IsDirectory) return;
    const std::vector<std::string> files = ListDirectoryFiles(directory, "*.*");
    left.insert(left.end(), files.begin(), files.end());
    const auto isInside = [&](const std::string& path) { return path.starts_with(directory + '\\'); };
    if (std::ranges::none_of(left, isInside)) left.push_back(directory);
}

void RemoveUserDirectory(std::string_view name, std::string_view below) {
    const std::string path = UserPath(name, below);
    if (LeadsElsewhere(name, below.substr(0, below.rfind('\\')))) return;
    if (!IsLink(path)) EmptyDirectory(path);
    platform::Files().RemoveEmptyDirectory(path);
}

} // namespace

bool CreateUserDirectories(std::string_view name, std::string_view senderName, RecordKind kind) {
    const bool isUser = kind == RecordKind::User;
    constexpr MessageWith<1> kForUser = "Creating directory structure for user %s";
    constexpr MessageWith<1> kForGroup = "Creating directory structure for usergroup %s";
    ShowStatus(isUser ? kForUser : kForGroup, name);
    if (!IsDirectoryName(name)) {
        ShowError("Unable to create directory %s", UserPath(name));
        return false;
    }
    if (!CreateTree(name, kind) || !CreateDirFiles(name, kind)) return false;
    return WriteUserOptionsFile(name, senderName) || ReportNotCreated("B-DB\\", NameOf(ServerFile::UserTemplate));
}

bool DeleteUserDirectories(std::string_view name) {
    ShowStatus("Deleting directory structure for user %s", name);
    if (!IsDirectoryName(name)) return true;
    for (const std::string& below : DirectoriesBelow()) RemoveUserDirectory(name, below);
    const platform::FileError error = platform::Files().RemoveEmptyDirectory(UserPath(name));
    if (error != platform::FileError::None && error != platform::FileError::NotFound) {
        ShowStatus("Unable to delete directory %s", UserPath(name));
    }
    return true;
}

std::vector<std::string> LeftOfUserDirectories(std::string_view name) {
    std::vector<std::string> left;
    if (!IsDirectoryName(name)) return left;
    for (const std::string& below : DirectoriesBelow()) AddWhatIsLeft(UserPath(name, below), left);
    AddWhatIsLeft(UserPath(name), left);
    return left;
}

bool CreateReceiveDirFile(std::string_view name) {
    return CreateDirFile(UserPath(name, "\\B-IN\\").append(kDirectoryFile), "ReceiveDir");
}

bool CreateSendDirFile(std::string_view name) {
    return CreateDirFile(UserPath(name, "\\B-OUT\\").append(kDirectoryFile), "SendDir");
}

bool WriteUserOptionsFile(std::string_view name, std::string_view senderName) {
    const std::string templatePath = PathOf(ServerFile::UserTemplate);
    const std::string path = UserPath(name, "\\B-DB\\").append(NameOf(ServerFile::UserTemplate));
    ControlStream source = OpenShared(templatePath, "rb");
    if (!source) {
        ShowError(kUnableToOpenFile, templatePath);
        return false;
    }
    OptionsText text(senderName);
    ControlLine line;
    while (ReadControlLine(source, line)) text.Add(line);
    const WriteFault fault = source.Failed() ? WriteFault::NotWritten : PutWholeFile(path, text.Finish());
    if (fault == WriteFault::None) return true;
    ShowError(fault == WriteFault::NotOpened ? kUnableToCreateFile : kErrorWritingFile, path);
    return false;
}

bool IsDirectoryName(std::string_view name) {
    // Windows drops blanks and dots at a name's end.
    if (name.empty() || name.ends_with('.') || name.ends_with(' ')) return false;
    return name.find_first_of("\\/:*?") == std::string_view::npos;
}

} // namespace bv
