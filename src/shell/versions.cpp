#include "shell/versions.h"

#include <string>

#include "ctlfile/control_stream.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "platform/ascii.h"
#include "shell/server_paths.h"

namespace bv {
namespace {

using VersionText = FixedText<kMaxLine>;

constexpr std::string_view kAssumedMailGateway = "5.50";

// The blank in the keys is deliberate: a line written without it counts as missing, as it always has.
constexpr std::string_view kServerKey = "Server: ";
constexpr std::string_view kMailGatewayKey = "MailGateway: ";

enum class VersionSought { Found, Missing, Unreadable };

// The version in the VERSION.DAT of an area, which is loaded first if need be. Unreadable: a message has been shown.
VersionSought ReadVersion(const FixedText<255>& area, std::string_view key, VersionText& text) {
    if (area.IsEmpty()) LoadServerPaths();
    if (area.IsEmpty()) return VersionSought::Missing;
    std::optional<ControlStream> stream = OpenIfThere(area.String() + "VERSION.DAT");
    if (!stream) return VersionSought::Unreadable;
    if (!*stream) return VersionSought::Missing;
    ControlLine header;
    const bool found = FindParagraph(*stream, "[VERSION]", header) && GetKeyString(*stream, key, text);
    if (!WasRead(*stream)) return VersionSought::Unreadable;
    return found ? VersionSought::Found : VersionSought::Missing;
}

VersionSought ReadServerVersion(VersionText& text) { return ReadVersion(Paths().ServerArea, kServerKey, text); }

// The assumed one when there is none.
VersionSought ReadMailGatewayVersion(VersionText& text) {
    const VersionSought sought = ReadVersion(Paths().MailArea, kMailGatewayKey, text);
    if (sought != VersionSought::Found) text = kAssumedMailGateway;
    return sought;
}

} // namespace

Version ParseVersion(std::string_view text) {
    Version version;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!IsDigit(text[i])) continue;
        version.Number = static_cast<std::uint16_t>(version.Number * 16 + (text[i] - '0'));
        version.Revision = i + 1 < text.size() ? text[i + 1] : '\0';
    }
    return version;
}

bool GetServerVersion(Version& version) {
    VersionText text;
    if (ReadServerVersion(text) != VersionSought::Found) return false;
    version = ParseVersion(text);
    return true;
}

bool GetServerVersionText(TextPlace text) {
    VersionText found;
    if (ReadServerVersion(found) != VersionSought::Found) return false;
    text.Assign(found);
    return true;
}

bool GetMailGatewayVersion(Version& version) {
    VersionText text;
    const VersionSought sought = ReadMailGatewayVersion(text);
    version = ParseVersion(text);
    return sought != VersionSought::Unreadable;
}

bool GetMailGatewayVersionText(TextPlace text) {
    VersionText found;
    const VersionSought sought =
        ReadMailGatewayVersion(found); // loads the paths, which say whether there is a mail area
    const bool isConfigured = Paths().MailAreaConfigured;
    text.Assign(isConfigured ? found.View() : std::string_view());
    return isConfigured && sought != VersionSought::Unreadable;
}

std::optional<InstalledVersions> ReadInstalledVersions() {
    VersionText text;
    InstalledVersions versions;
    const VersionSought server = ReadServerVersion(text);
    if (server == VersionSought::Found) versions.Server = text.String();
    const VersionSought gateway = ReadMailGatewayVersion(text);
    if (Paths().MailAreaConfigured) versions.MailGateway = text.String();
    if (server == VersionSought::Unreadable || gateway == VersionSought::Unreadable) return {};
    return versions;
}

} // namespace bv
