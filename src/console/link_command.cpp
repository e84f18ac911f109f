// Links to remote fax servers.
#include "lcr/links.h"

#include <functional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/entering.h"
#include "console/located.h"
#include "console/password_input.h"
#include "lcr/edit_lock.h"
#include "lcr/link_actions.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kAssignmentsHelp = "Keys and values as 'show' prints them";

LinkTable::iterator FindLink(LinkTable& links, std::string_view identifier) {
    return std::ranges::find_if(links,
                                [&](const LinkRecord& link) { return EqualFolded(link.Identifier, identifier); });
}

std::string NoSuchLink(const Arguments& arguments) { return "There is no link " + arguments["ID"]; }

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
    const auto link = FindLink(links, arguments["ID"]);
    if (link == links.end()) return session.Refuse(NoSuchLink(arguments));
    PrintRecord(session, ShownValues(LinkSettings(), *link, session.Reveal));
    return kExitDone;
}

// Changes and saves the links while nobody else edits routing.
int Edit(const Session& session, const std::function<bool(LinkTable& links, const RouterSettings& router)>& change) {
    return Perform(session, [&] {
        return RunLcrEditor([&] {
            RouterSettings router;
            const RouterReading reading = ReadRouterSettings(router);
            if (reading == RouterReading::NotConfigured)
                ShowError("Unable to load general settings.  Please configure LCR 'General Settings' before "
                          "proceeding");
            LinkTable links;
            TextStamp stamp;
            if (reading != RouterReading::Done || !LoadLinks(links, stamp)) return false;
            const LinkTable before = links;
            return change(links, router) && (links == before || SaveLinks(links, stamp));
        });
    });
}

// Whether the link with these values can be saved; false after a line that says why not.
bool IsGood(const Session& session, const std::vector<Assignment>& values, const LinkRecord& link,
            const LinkTable& others, const RouterSettings& router) {
    if (const auto fault = FaultOfLink(link, others, router))
        return session.Refuse(FormatText("%s: %s", fault->Key, fault->Message)) == kExitDone;
    LinkRecord asRead;
    ReadLink(LinkParagraph(link, {}), asRead);
    return AreKept(session, LinkSettings(), values, link, asRead);
}

int Add(Session& session, const Arguments& arguments) {
    auto values = ReadSettings(session, arguments, kAssignments, PasswordKey(LinkSettings()));
    if (!values) return kExitWrongUsage;
    values->insert(values->begin(), {"RemoteServerID", arguments["ID"]});
    return Edit(session, [&](LinkTable& links, const RouterSettings& router) {
        LinkRecord link = NewLink("");
        if (!EnterValues(session, LinkSettings(), *values, link)) return false;
        if (!IsGood(session, *values, link, links, router)) return false;
        links.push_back(link);
        ShowStatus("Added link %s", link.Identifier);
        return true;
    });
}

int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadChanges(session, arguments, kAssignments, PasswordKey(LinkSettings()));
    if (!values) return kExitWrongUsage;
    return Edit(session, [&](LinkTable& links, const RouterSettings& router) {
        const auto link = FindLink(links, arguments["ID"]);
        if (link == links.end()) return session.Refuse(NoSuchLink(arguments)) == kExitDone;
        LinkRecord changed = *link;
        if (!EnterValues(session, LinkSettings(), *values, changed)) return false;
        if (changed == *link) return true;
        LinkTable others = links;
        others.erase(others.begin() + (link - links.begin()));
        if (!IsGood(session, *values, changed, others, router)) return false;
        if (!EqualFolded(changed.Identifier, link->Identifier) && !AgreeToNewLink(*link, changed)) return false;
        *link = changed;
        ShowStatus("Modified link %s", link->Identifier);
        return true;
    });
}

int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, [&](LinkTable& links, const RouterSettings&) {
        const auto link = FindLink(links, arguments["ID"]);
        if (link == links.end()) return session.Refuse(NoSuchLink(arguments)) == kExitDone;
        return RemoveLink(links, link);
    });
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
     .Run = Located<Add>},
    {.Name = "set",
     .Help = "Change settings of a link; one with another identifier is a new link",
     .Parameters = {{kId, kPasswordFlag, {kAssignments, kAssignmentsHelp, ParameterKind::ZeroOrMore}}},
     .Example = "LONDON LinkDelay=01:30",
     .Run = Located<Set>},
    {.Name = "delete", .Help = "Delete a link", .Parameters = {{kId}}, .Example = "LONDON", .Run = Located<Delete>},
};

} // namespace

const Area kLinkArea = {"link", "Links to remote fax servers", kVerbs};

} // namespace bv::console
