#include "console/commands.h"
#include "console/output.h"
#include "shell/server_paths.h"
#include "shell/startup.h"
#include "shell/versions.h"

namespace bv::console {
namespace {

Value Shown(const std::optional<std::string>& version) { return version ? Value(*version) : Value(); }

int ShowVersions(Session& session, const Arguments&) {
    if (LoadServerPaths() != kDone) return kExitRefused;
    const std::optional<InstalledVersions> installed = ReadInstalledVersions();
    if (!installed) return kExitRefused;
    PrintRecord(session, {{"Program", std::string(kProgramVersion)},
                          {"Server", Shown(installed->Server)},
                          {"MailGateway", Shown(installed->MailGateway)}});
    return kExitDone;
}

constexpr Verb kVerbs[] = {{.Run = ShowVersions}};

} // namespace

const Area kVersionArea = {"version", "Show the versions of the program, the server and the mail gateway", kVerbs};

} // namespace bv::console
