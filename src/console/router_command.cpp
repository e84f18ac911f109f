// The general settings of least-cost routing.
#include "lcr/router_settings.h"

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/entering.h"
#include "console/located.h"
#include "console/password_input.h"
#include "lcr/edit_lock.h"
#include "voice/messages.h"

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

// A kind of link is used when its account or directory is given, unless that is said otherwise.
void EnableKinds(const std::vector<Assignment>& values, RouterSettings& settings) {
    if (HasKey(values, "EmailLoginName") && !HasKey(values, "EmailEnabled"))
        settings.EmailEnabled = !settings.EmailLoginName.empty();
    if (HasKey(values, "WanInboxDirectory") && !HasKey(values, "WanEnabled"))
        settings.WanEnabled = !settings.WanInboxDirectory.empty();
}

bool Change(const Session& session, const std::vector<Assignment>& values, RouterSettings& settings) {
    if (!EnterValues(session, RouterKeys(), values, settings)) return false;
    EnableKinds(values, settings);
    if (settings.LocalServerId.empty()) return session.Refuse("LocalServerID: \"\" - this server needs a name") == 0;
    if (const auto fault = FaultOfRouter(settings))
        return session.Refuse(FormatText("%s: %s", fault->Key, fault->Message)) == kExitDone;
    return AreKept(session, RouterKeys(), values, settings, AsRead(settings));
}

int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadChanges(session, arguments, kAssignments, PasswordKey(RouterKeys()));
    if (!values) return kExitWrongUsage;
    bool isChanged = false;
    const auto change = [&](RouterSettings& settings) {
        const RouterSettings before = settings;
        const bool isTaken = Change(session, *values, settings);
        isChanged = settings != before;
        return isTaken;
    };
    return Perform(session, [&] {
        if (!RunLcrEditor([&] { return ChangeRouterSettings(change); })) return false;
        ShowStatus(isChanged ? "Changed the general settings of routing" : "Nothing was to be changed");
        return true;
    });
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
     .Run = Located<Set>},
    {.Name = "test-inbox",
     .Help = "Try whether other servers can leave their faxes in a directory",
     .Parameters =
         {{{.Name = "DIRECTORY", .Help = "Its name in the network, or its path on a network drive", .IsPath = true}}},
     .Example = "'\\\\here\\LCRIN'",
     .Run = Located<TestInbox>},
};

} // namespace

const Area kRouterArea = {"router", "The general settings of least-cost routing", kVerbs};

} // namespace bv::console
