// The general settings of least-cost routing.
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/password_input.h"
#include "console/shown_values.h"
#include "lcr/edit_lock.h"
#include "lcr/router_actions.h"
#include "platform/drives.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";

int Show(Session& session, const Arguments&) {
    RouterSettings settings;
    switch (ReadRouterSettings(settings)) {
    case RouterReading::Failed: return kExitRefused;
    case RouterReading::NotConfigured: return session.Refuse("The general settings of routing are not configured");
    case RouterReading::Done: break;
    }
    PrintRecord(session, ShownValues(RouterKeys(), settings, session.Reveal));
    return kExitDone;
}

int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadChanges(session, arguments, kAssignments, PasswordKey(RouterKeys()));
    if (!values) return kExitWrongUsage;
    return Perform(session,
                   [&] { return RunLcrEditor([&] { return EnterRouterSettings(*values); }, "general settings"); });
}

int TestInbox(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return TestWanInbox(arguments["DIRECTORY"]); });
}

constexpr Verb kVerbs[] = {
    {.Name = "show",
     .Help = "Show this server's name and how faxes come to it from other servers",
     .Run = Located<Show>},
    {.Name = "set",
     .Help = "Change these settings; an account or a directory given enables its kind of link",
     .Parameters = {{kPasswordFlag,
                     {kAssignments, "Keys and values as 'show' prints them", ParameterKind::ZeroOrMore}}},
     .Example = "LocalServerID=LONDON 'WanInboxDirectory=\\\\here\\LCRIN' WanInboxPollFreq=00:05",
     .Change = Located<Set>},
    {.Name = "test-inbox",
     .Help = "Try whether other servers can leave their faxes in a directory",
     .Parameters =
         {{{.Name = "DIRECTORY", .Help = "Its name in the network, or its path on a network drive", .IsPath = true}}},
     .Example = "'\\\\here\\LCRIN'",
     .Change = Located<TestInbox>},
};

} // namespace

const Area kRouterArea = {"router", "The general settings of least-cost routing", kVerbs};

} // namespace bv::console
