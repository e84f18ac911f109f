// Links to remote fax servers.
#include <functional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/password_input.h"
#include "console/shown_values.h"
#include "lcr/edit_lock.h"
#include "lcr/link_actions.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kAssignmentsHelp = "Keys and values as 'show' prints them";

int List(Session& session, const Arguments&) {
    LinkTable links;
    if (!ReadLinks(links)) return kExitRefused;
    std::vector<Record> records;
    for (const LinkRecord& link : links)
        records.push_back({{"RemoteServerID", link.Identifier},
                           {"Description", link.Description},
                           {"LinkType", ValueCodec<LinkType>::Text(link.Type)},
                           {"RemoteServerAddress", link.Address}});
    PrintRecords(session, records);
    return kExitDone;
}

int Show(Session& session, const Arguments& arguments) {
    LinkTable links;
    if (!ReadLinks(links)) return kExitRefused;
    const LinkRecord* link = FindLink(links, arguments["ID"]);
    if (link == nullptr) return kExitRefused;
    PrintRecord(session, ShownValues(LinkSettings(), *link, session.Reveal));
    return kExitDone;
}

// Changes and saves the links while nobody else edits routing.
int Edit(const Session& session, const std::function<bool(LinkEdit& edit)>& change) {
    return Perform(session, [&] { return RunLcrEditor([&] { return ChangeLinks(change); }, "links"); });
}

int Add(Session& session, const Arguments& arguments) {
    auto values = ReadSettings(session, arguments, kAssignments, PasswordKey(LinkSettings()));
    if (!values) return kExitWrongUsage;
    values->insert(values->begin(), {"RemoteServerID", arguments["ID"]});
    return Edit(session, [&](LinkEdit& edit) { return AddLink(edit, *values); });
}

int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadChanges(session, arguments, kAssignments, PasswordKey(LinkSettings()));
    if (!values) return kExitWrongUsage;
    return Edit(session, [&](LinkEdit& edit) { return ChangeLink(edit, arguments["ID"], *values); });
}

int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, [&](LinkEdit& edit) { return RemoveLink(edit, arguments["ID"]); });
}

constexpr Parameter kId = {"ID", "The remote server's identifier, in any case"};

constexpr Verb kVerbs[] = {
    {.Name = "list", .Help = "List the links with their types and addresses", .Run = Located<List>},
    {.Name = "show",
     .Help = "Show every setting of a link",
     .Parameters = {{kId}},
     .Example = "LONDON",
     .Run = Located<Show>},
    {.Name = "add",
     .Help = "Add a link",
     .Parameters = {{kId, kPasswordFlag, {kAssignments, kAssignmentsHelp, ParameterKind::ZeroOrMore}}},
     .Example = "LONDON LinkType=WAN 'RemoteServerAddress=\\\\city\\LCRIN' BrivaneAccountName=ROUTER "
                "RejectHigherPriorityMsg=NO",
     .Change = Located<Add>},
    {.Name = "set",
     .Help = "Change settings of a link; one with another identifier is a new link",
     .Parameters = {{kId, kPasswordFlag, {kAssignments, kAssignmentsHelp, ParameterKind::ZeroOrMore}}},
     .Example = "LONDON LinkDelay=01:30",
     .Change = Located<Set>},
    {.Name = "delete", .Help = "Delete a link", .Parameters = {{kId}}, .Example = "LONDON", .Change = Located<Delete>},
};

} // namespace

const Area kLinkArea = {"link", "Links to remote fax servers", kVerbs};

} // namespace bv::console
