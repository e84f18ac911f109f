// The installed versions, from the VERSION.DAT files of the server and of the mail gateway.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ctlfile/fixed_text.h"

namespace bv {

// A version as a number, its decimal digits read as hexadecimal ones ("5.50" is 0x550), and the character that
// follows its last digit, or '\0'.
struct Version {
    std::uint16_t Number = 0;
    char Revision = '\0';
    friend bool operator==(const Version&, const Version&) = default;
};

Version ParseVersion(std::string_view text);

// Each loads the server's paths first when they are empty. The mail gateway's version is "5.50" when its file or key
// is missing. A file that is there and cannot be read counts as missing, too, and then each is false after 413 or 9011.
bool GetServerVersion(Version& version);        // false also when the file or key is missing
bool GetServerVersionText(TextPlace text);      // the same
bool GetMailGatewayVersion(Version& version);   // else always true
bool GetMailGatewayVersionText(TextPlace text); // false also, with an empty text, when no mail area is configured

struct InstalledVersions {
    std::optional<std::string> Server;      // none when the file or key is missing
    std::optional<std::string> MailGateway; // none when no mail area is configured
};

// Both; none after 413 or 9011.
std::optional<InstalledVersions> ReadInstalledVersions();

} // namespace bv
