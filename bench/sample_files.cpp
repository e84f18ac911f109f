#include "sample_files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <unistd.h>

#include "platform/drives.h"
#include "platform/environment.h"
#include "shell/server_paths.h"
#include "voice/format.h"

namespace bv::bench {
namespace {

class Scratch {
  public:
    Scratch() : path_(std::filesystem::temp_directory_path() / FormatText("bv-bench-%d", getpid())) {}
    ~Scratch() { std::filesystem::remove_all(path_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    [[nodiscard]] std::filesystem::path Place(const std::string& name) const { return path_ / name; }

    SampleFile Write(const std::string& name, const std::string& text) const {
        const std::filesystem::path path = Place(name);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return {path, platform::ToWindowsPath(path)};
    }

  private:
    std::filesystem::path path_;
};

const Scratch& TheScratch() {
    static const Scratch scratch;
    return scratch;
}

std::string SetupText(std::size_t lines) {
    std::string text =
        "[BRIVANE]\r\nType: Setup\r\nRevision: A\r\n\r\n[OPTIONS]\r\nLogFile: SERVER.LOG\r\nLogKeepDays: 30\r\n\r\n";
    std::size_t written = 8;
    for (; written + 16 <= lines; written += 12) {
        text += FormatText("[FAX-%d]\r\n; line %d of the exchange\r\n", written, written);
        for (int key = 0; key < 9; ++key) text += FormatText("Setting%d: value number %d\r\n", key, written);
        text += "\r\n";
    }
    for (; written + 4 < lines; ++written) text += "; filler\r\n";
    return text + "[LAST]\r\nFirst: 1\r\nWanted: old\r\nThird: 3\r\n";
}

std::string UserListText(std::size_t records) {
    std::string text = "[BRIVANE]\r\nType: UserList\r\nRevision: A\r\n";
    for (std::size_t n = 0; n < records; ++n) {
        text +=
            FormatText("\r\n[USER]\r\nName: %s\r\nFullname: Person number %06d\r\nGroup: SALES\r\n", RecordName(n), n);
        text += FormatText("Username: person%06d\r\nNetware: person%06d\r\nLanManager: person%06d\r\n", n, n, n);
        text += "PrintRecdDevice: PRINT-1\r\nPrintRecdBin: Upper\r\n";
        text += FormatText("MailGateway: YES\r\nMailName: person%06d@example.com\r\n", n);
    }
    return text;
}

std::string IniText(const std::string& directory) {
    std::string text = "[SERVER]\r\n";
    for (const char* area : {"AllUserArea", "RequestArea", "ServerArea", "SystemArea"})
        text += FormatText("%s: %s\r\n", area, directory);
    return text;
}

SampleServer MakeServer(std::size_t records) {
    constexpr std::size_t kSetupLines = 2000;
    const std::string name = FormatText("SERVER%d", records);
    const std::string directory = platform::ToWindowsPath(TheScratch().Place(name));
    TheScratch().Write(name + "/BRIVANE.INI", IniText(directory));
    return {directory, TheScratch().Write(name + "/B-DB/USERLIST.INI", UserListText(records)),
            TheScratch().Write(name + "/B-DB/SETUP.INI", SetupText(kSetupLines))};
}

} // namespace

std::string RecordName(std::size_t n) { return FormatText("U%06d", 2 * n); }

std::string NewName(std::size_t n) { return FormatText("U%06d", 2 * n + 1); }

const SampleFile& SetupFile(std::size_t lines) {
    static std::map<std::size_t, SampleFile> made;
    auto [at, isNew] = made.try_emplace(lines);
    if (isNew) at->second = TheScratch().Write(FormatText("SETUP%d.INI", lines), SetupText(lines));
    return at->second;
}

const SampleFile& UserList(std::size_t records) {
    static std::map<std::size_t, SampleFile> made;
    auto [at, isNew] = made.try_emplace(records);
    if (isNew) at->second = TheScratch().Write(FormatText("USERS%d.INI", records), UserListText(records));
    return at->second;
}

const SampleServer& UseServer(std::size_t records) {
    static std::map<std::size_t, SampleServer> made;
    auto [at, isNew] = made.try_emplace(records);
    if (isNew) at->second = MakeServer(records);
    platform::TheEnvironment().SetVariable("BVAXINIT", at->second.Directory);
    if (LoadServerPaths() != kDone) std::abort();
    return at->second;
}

} // namespace bv::bench
