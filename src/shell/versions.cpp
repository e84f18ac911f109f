#include "shell/versions.h"

#include <string>

#include "ctlfile/control_stream.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "shell/server_paths.h"

namespace bv {
namespace {

using VersionText = FixedText<kMaxLine>;

constexpr std::string_view kAssumedMailGateway = "5.50";

// The blank in the keys is deliberate: a line written without it counts as missing, as it always has.
constexpr std::string_view kServerKey = "Server: ";
constexpr std::string_view kMailGatewayKey = "MailGateway: ";

// The version in the VERSION.DAT of an area, which is loaded first if need be.
bool ReadVersion(const FixedText<255>& area, std::string_view key, VersionText& text) {
    if (area.IsEmpty()) LoadServerPaths();
    if (area.IsEmpty()) return false;
    ControlStream stream = OpenShared(area.String() + "VERSION.DAT", "rb");
    ControlLine header;
    return FindParagraph(stream, "[VERSION]", header) && GetKeyString(stream, key, text);
}

bool ReadServerVersion(VersionText& text) { return ReadVersion(Paths().ServerArea, kServerKey, text); }

void ReadMailGatewayVersion(VersionText& text) {
    if (!ReadVersion(Paths().MailArea, kMailGatewayKey, text)) text = kAssumedMailGateway;
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
    if (!ReadServerVersion(text)) return false;
    version = ParseVersion(text);
    return true;
}

bool GetServerVersionText(TextPlace text) {
    VersionText found;
    if (!ReadServerVersion(found)) return false;
    text.Assign(found);
    return true;
}

bool GetMailGatewayVersion(Version& version) {
    VersionText text;
    ReadMailGatewayVersion(text);
    version = ParseVersion(text);
    return true;
}

bool GetMailGatewayVersionText(TextPlace text) {
    VersionText found;
    ReadMailGatewayVersion(found); // loads the paths, which say whether there is a mail area
    if (!Paths().MailAreaConfigured) {
        text.Assign({});
        return false;
    }
    text.Assign(found);
    return true;
}

} // namespace bv
