#include "console/command_line.h"
#include "console/output.h"
#include "shell/server_paths.h"

namespace bv::console {
namespace {

// What said the values of an option, and they.
Value OriginOf(const GivenValues& given) {
    if (given.From.empty()) return {};
    std::string text = given.From + ':';
    for (const std::string& value : given.Values) text.append(" ").append(value);
    return text;
}

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
                          {"Language", paths.Language.String()},
                          {"IniFrom", OriginOf(session.Given.Ini)},
                          {"DriveFrom", OriginOf(session.Given.Drives)},
                          {"CodePageFrom", OriginOf(session.Given.CodePage)}});
    return kExitDone;
}

constexpr Verb kVerbs[] = {{.Run = ShowPaths}};

} // namespace

const Area kPathsArea = {
    "paths", "Show where the server's files lie, as BRIVANE.INI and SETUP.INI say, and what said where these are",
    kVerbs};

} // namespace bv::console
