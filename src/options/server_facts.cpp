#include "options/server_facts.h"

#include "ctlfile/key_fields.h"
#include "options/option_messages.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "shell/versions.h"
#include "voice/messages.h"

namespace bv {

std::vector<ServerFact> ReadServerFacts(const ServerOptions& options) {
    constexpr std::string_view kVersionFile = "VERSION.DAT";
    const ServerPaths& paths = Paths();
    const auto yesOrNo = [](bool value) { return ValueCodec<bool>::Text(value); };
    const InstalledVersions versions = ReadInstalledVersions().value_or(InstalledVersions{});
    const std::string unknown = FillMessage(kVersionUnknown);
    return {
        {"Log file", paths.LogFile.String(), "LogFile"},
        {"Language", paths.Language.String(), "Language"},
        {"Routing in the menu", yesOrNo(Switches().EnableRouting), "EnableRouting"},
        {"Mark of user groups", std::string(1, Switches().UserGroupIdentifier), "UserGroupIdentifier"},
        {"Users from the network", yesOrNo(Switches().EnableAutoAdd), "EnableAutoAdd"},
        {"Newer mail gateway", yesOrNo(options.MailGatewayV6), "MailGatewayV6"},
        {"Server's version", versions.Server.value_or(unknown), kVersionFile},
        {"Mail gateway's version", versions.MailGateway.value_or(unknown), kVersionFile},
        {"Server area", paths.ServerArea.String(), kIniFile},
        {"System area", paths.SystemArea.String(), kIniFile},
        {"Users' area", paths.AllUserArea.String(), kIniFile},
        {"Request area", paths.RequestArea.String(), kIniFile},
        {"Mail area", paths.MailArea.String(), kIniFile},
    };
}

} // namespace bv
