#include "console/commands.h"
#include "console/output.h"
#include "ctlfile/reader.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "shell/versions.h"

namespace bv::console {
namespace {

using VersionText = FixedText<kMaxLine>;

// The text that a version operation delivers; nothing when it says there is none.
Value Installed(bool (*getText)(TextPlace)) {
    VersionText text;
    if (!getText(text)) return std::monostate{};
    return text.String();
}

int ShowVersions(Session& session, const Arguments&) {
    if (LoadServerPaths() != kDone) return kExitRefused;
    PrintRecord(session, {{"Program", std::string(kProgramVersion)},
                          {"Server", Installed(GetServerVersionText)},
                          {"MailGateway", Installed(GetMailGatewayVersionText)}});
    return kExitDone;
}

constexpr Verb kVerbs[] = {{.Run = ShowVersions}};

} // namespace

const Area kVersionArea = {"version", "Show the versions of the program, the server and the mail gateway", kVerbs};

} // namespace bv::console
