#include "console/commands.h"
#include "console/output.h"
#include "shell/server_paths.h"

namespace bv::console {
namespace {

int ShowPaths(Session& session, const Arguments&) {
    if (LoadServerPaths() != kDone) return kExitRefused;
    const ServerPaths& paths = Paths();
    PrintRecord(session, {{"AllUserArea", paths.AllUserArea.String()},
                          {"RequestArea", paths.RequestArea.String()},
                          {"ServerArea", paths.ServerArea.String()},
                          {"SystemArea", paths.SystemArea.String()},
                          {"MailArea", paths.MailArea.String()},
                          {"MailAreaConfigured", paths.MailAreaConfigured},
                          {"LogFile", paths.LogFile.String()},
                          {"LogKeepDays", std::int64_t{paths.LogKeepDays}},
                          {"Language", paths.Language.String()}});
    return kExitDone;
}

constexpr Verb kVerbs[] = {{.Run = ShowPaths}};

} // namespace

const Area kPathsArea = {"paths", "Show where the server's files lie, as BRIVANE.INI and SETUP.INI say", kVerbs};

} // namespace bv::console
