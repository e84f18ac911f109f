#include "users/user_directories.h"

#include <array>
#include <string>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/whole_file.h"
#include "platform/files.h"
#include "shell/messages.h"
#include "shell/server_paths.h"
#include "users/directories.h"

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

bool CreateDirFile(const std::string& path, std::string_view type) {
    if (!IsMissing(path)) return true;
    return WriteWholeFile(path, FormatText("[BRIVANE]\r\nType: %s\r\nRevision: A\r\n", type));
}

bool ReportNotCreated(std::string_view directory, std::string_view file) {
    ShowError(std::string("Unable to create file %s").append(file).append(" for user"), directory);
    return false;
}

bool CreateDirFiles(std::string_view name, RecordKind kind) {
    if (!CreateReceiveDirFile(name)) return ReportNotCreated("B-IN\\", "MSGDIR.CTL");
    if (kind == RecordKind::User && !CreateSendDirFile(name)) return ReportNotCreated("B-OUT\\", "MSGDIR.CTL");
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

void RemoveUserDirectory(std::string_view name, std::string_view below) {
    const std::string path = UserPath(name, below);
    if (LeadsElsewhere(name, below.substr(0, below.rfind('\\')))) return;
    if (!IsLink(path)) EmptyDirectory(path);
    platform::Files().RemoveEmptyDirectory(path);
}

} // namespace

bool CreateUserDirectories(std::string_view name, std::string_view senderName, RecordKind kind) {
    const bool isUser = kind == RecordKind::User;
    ShowStatus(isUser ? "Creating directory structure for user %s" : "Creating directory structure for usergroup %s",
               name);
    if (!IsDirectoryName(name)) {
        ShowError("Unable to create directory %s", UserPath(name));
        return false;
    }
    if (!CreateTree(name, kind) || !CreateDirFiles(name, kind)) return false;
    return WriteUserOptionsFile(name, senderName) || ReportNotCreated("B-DB\\", "USER.INI");
}

bool DeleteUserDirectories(std::string_view name) {
    ShowStatus("Deleting directory structure for user %s", name);
    if (!IsDirectoryName(name)) return true;
    RemoveUserDirectory(name, "\\B-IN");
    for (const std::string_view type : kFileTypes) RemoveUserDirectory(name, std::string("\\B-OUT\\").append(type));
    for (const std::string_view below : {"\\B-OUT\\PREVIEW", "\\B-OUT", "\\B-DB", "\\B-GRAPH"}) {
        RemoveUserDirectory(name, below);
    }
    const platform::FileError error = platform::Files().RemoveEmptyDirectory(UserPath(name));
    if (error != platform::FileError::None && error != platform::FileError::NotFound) {
        ShowStatus("Unable to delete directory %s", UserPath(name));
    }
    return true;
}

bool CreateReceiveDirFile(std::string_view name) {
    return CreateDirFile(UserPath(name, "\\B-IN\\MSGDIR.CTL"), "ReceiveDir");
}

bool CreateSendDirFile(std::string_view name) {
    return CreateDirFile(UserPath(name, "\\B-OUT\\MSGDIR.CTL"), "SendDir");
}

bool WriteUserOptionsFile(std::string_view name, std::string_view senderName) {
    const std::string templatePath = DatabaseFile("USER.INI");
    const std::string path = UserPath(name, "\\B-DB\\USER.INI");
    ControlStream source = OpenShared(templatePath, "rb");
    if (!source) {
        ShowError(413, templatePath);
        return false;
    }
    ControlStream file = OpenShared(path, "wb");
    if (!file) {
        ShowError(5002, path);
        return false;
    }
    OptionsText text(senderName);
    ControlLine line;
    while (ReadControlLine(source, line)) text.Add(line);
    file.Write(text.Finish());
    const bool written = file.Close();
    if (written && !source.Failed()) return true;
    ShowError(5001, path);
    return false;
}

bool IsDirectoryName(std::string_view name) {
    // Windows drops blanks and dots at a name's end.
    if (name.empty() || name.ends_with('.') || name.ends_with(' ')) return false;
    return name.find_first_of("\\/:*?") == std::string_view::npos;
}

} // namespace bv
