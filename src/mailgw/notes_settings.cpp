#include "mailgw/notes_settings.h"

#include <algorithm>

#include "mailgw/profile_file.h"
#include "platform/ascii.h"
#include "platform/environment.h"

namespace bv {
namespace {

std::string NotesText(std::string_view key) { return ReadProfileText("NOTES.INI", "Notes", key); }

std::string BeforeComma(std::string text) {
    text.erase(std::min(text.find(','), text.size()));
    return text;
}

} // namespace

bool ReadNotesSettings(TextPlace keyFile, TextPlace location, std::optional<std::string_view> mailFile,
                       std::optional<std::string_view> mailServer) {
    location.Assign(BeforeComma(NotesText("Location")));
    keyFile.Assign(BeforeComma(NotesText("KeyFileName")));
    if (mailFile && !EqualFolded(NotesText("MailFile"), *mailFile)) return false;
    if (!mailServer) return true;
    const std::string server = NotesText("MailServer");
    return EqualFolded(CommonServerName(server), CommonServerName(*mailServer));
}

std::string_view CommonServerName(std::string_view server) {
    constexpr std::string_view kCommon = "CN=";
    constexpr std::string_view kOrganisation = "/O=";
    if (!StartsWithFolded(server, kCommon)) return server;
    server.remove_prefix(kCommon.size());
    for (std::size_t at = 0; at < server.size(); ++at) {
        if (StartsWithFolded(server.substr(at), kOrganisation)) return server.substr(0, at);
    }
    return server;
}

void AddNotesDirectoryToPath() {
    const std::string directory = NotesText("Directory");
    if (directory.empty()) return;
    platform::Environment& environment = platform::TheEnvironment();
    const std::string path = environment.Variable("PATH").value_or("");
    environment.SetVariable("PATH", path.empty() ? directory : path + ';' + directory);
}

} // namespace bv
