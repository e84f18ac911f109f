// The mail gateway's users and their account names.
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_actions.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kOfUser = "--user";
constexpr std::string_view kReplace = "--replace";
constexpr std::string_view kForce = "--force";
constexpr std::string_view kExpression = "--expression";

Record RecordOf(const Session& session, const MailUser& user) {
    Record record = {
        {"Emailname", user.Emailname.String()}, {"User", std::string(EffectiveUser(user))}, {"Profile", user.Profile}};
    // For people, who sends under which name; for programs, the whole record.
    if (!session.Json) return record;
    record.insert(record.end(), {{"Brivname", user.Brivname.String()},
                                 {"EmailBrivname", user.EmailBrivname.String()},
                                 {"SubAddr", user.SubAddr.String()},
                                 {"PrintRecd", user.PrintRecd.String()},
                                 {"PrintSent", user.PrintSent.String()}});
    return record;
}

int List(Session& session, const Arguments& arguments) {
    std::vector<Record> records;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        const bool isWanted = !arguments.Has(kOfUser) || EqualFolded(EffectiveUser(user), arguments[kOfUser]);
        if (isWanted) records.push_back(RecordOf(session, user));
        return true;
    });
    if (!isRead) return kExitRefused;
    PrintRecords(session, records);
    return kExitDone;
}

int Add(Session& session, const Arguments& arguments) {
    std::optional<std::string_view> previous;
    if (arguments.Has(kReplace)) {
        previous = arguments[kReplace];
        std::optional<MailUser> found;
        if (!FindMailUser(*previous, found)) return kExitRefused;
        if (!found) return session.Refuse(FormatText("Emailname: \"%s\" is not in the mail list", *previous));
    }
    return Perform(session, [&] { return EnableMailUser(arguments["USER"], arguments["EMAILNAME"], previous); });
}

int Delete(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return DisableMailUser(arguments["USER"], arguments["EMAILNAME"]); });
}

int Count(Session& session, const Arguments& arguments) {
    const std::optional<std::size_t> count = CountMailUsers(arguments["USER"]);
    if (!count) return kExitRefused;
    if (session.Json) {
        PrintRecord(session, {{"count", static_cast<std::int64_t>(*count)}});
    } else {
        PrintLines(session, {std::to_string(*count)});
    }
    return kExitDone;
}

int Upgrade(Session& session, const Arguments&) { return Perform(session, UpgradeWholeMailList); }

int Refresh(Session& session, const Arguments& arguments) {
    return Perform(session, [&] {
        if (!EnsureMailUserList(0, arguments.Has(kForce))) return false;
        const bool isThere = session.DryRun || FileExists(PathOf(ServerFile::MailUsers));
        if (!isThere) ShowError("MAILCONF.EXE has made no list of addresses");
        return isThere;
    });
}

int Lookup(Session& session, const Arguments& arguments) {
    const std::string& name = arguments["DISPLAYNAME"];
    std::string address;
    const StatusCode status = LookupMailUser(name, std::string::npos, address);
    if (status == kKeyMissing) return session.Refuse(FormatText("Mail user %s not found", name));
    if (status != kDone) return kExitRefused;
    PrintLines(session, {address});
    return kExitDone;
}

int MakeName(Session& session, const Arguments& arguments) {
    const std::string& given = arguments[kExpression];
    if (arguments.Has(kExpression) && !IsAccountExpression(given))
        return session.Refuse(FormatText("Expression: \"%s\" - Please select a valid expression", given));
    if (!arguments.Has(kExpression) && LoadServerPaths() != kDone) return kExitRefused;

    const std::string& displayName = arguments["DISPLAYNAME"];
    const std::optional<AccountExpression> expression =
        arguments.Has(kExpression) ? AccountExpression(given) : ReadAccountExpression();
    if (!expression) return kExitRefused;
    AccountName name;
    if (!MakeMailAccountName(displayName, *expression, name))
        return session.Refuse(FormatText("The expression %s makes no name of \"%s\"", expression->View(), displayName));
    PrintLines(session, {name.String()});
    return kExitDone;
}

constexpr Parameter kUser = {"USER", "Name of the server user under which the faxes go"};
constexpr Parameter kEmailname = {
    .Name = "EMAILNAME", .Help = "Name of the user in the mail system", .TakesTabs = true};

// Mail systems put a tab behind a name, and more; what follows it does not belong to the name.
constexpr Parameter DisplayName(std::string_view help) {
    return {.Name = "DISPLAYNAME", .Help = help, .TakesTabs = true};
}

constexpr Verb kMailUserVerbs[] = {
    {.Name = "list",
     .Help = "List the mail users who may send, with their server users; YES marks a profile of the mail system",
     .Parameters = {{{kOfUser, "Only those whose faxes go under this name", ParameterKind::Option, "USER"}}},
     .Run = Located<List>},
    {.Name = "add",
     .Help = "Let a mail user send faxes under the name of a server user",
     .Parameters = {{kUser,
                     kEmailname,
                     {kReplace, "Put the record in the place of this mail user's", ParameterKind::Option,
                      "EMAILNAME"}}},
     .Example = "ANN 'Ann Archer'",
     .Change = Located<Add>},
    {.Name = "delete",
     .Help = "Let a mail user send no more faxes",
     .Parameters = {{kUser, kEmailname}},
     .Example = "ANN 'Ann Archer'",
     .Change = Located<Delete>},
    {.Name = "count",
     .Help = "Count the mail users whose faxes go under a name",
     .Parameters = {{kUser}},
     .Run = Located<Count>},
    {.Name = "upgrade", .Help = "Give every record of an old mail list its Profile key", .Change = Located<Upgrade>},
    {.Name = "refresh",
     .Help = "Have MAILCONF.EXE make the list of addresses, when there is none",
     .Parameters = {{{kForce, "Also when there is one", ParameterKind::Flag}}},
     .Change = Located<Refresh>},
    {.Name = "lookup",
     .Help = "Print the mail address of a user of the mail system",
     .Parameters = {{DisplayName("The beginning of the name, either way round: 'Ann Archer', 'Archer Ann'")}},
     .Example = "'Ann Archer'",
     .Run = Located<Lookup>},
};

constexpr Verb kMailNameVerbs[] = {
    {.Help = "Make a server account name of a mail user's name, by the server's expression",
     .Parameters = {{DisplayName("Surname first: 'Archer Ann'"),
                     {kExpression, "Items such as %1First%Last, %First%1Last or %2Second", ParameterKind::Option,
                      "EXPRESSION"}}},
     .Example = "'Archer Ann' --expression %First%1Last",
     .Run = MakeName},
};

} // namespace

const Area kMailUserArea = {"mail-user", "The users of the mail system who may send faxes", kMailUserVerbs};
const Area kMailNameArea = {"mail-name", "Account names of mail users", kMailNameVerbs};

} // namespace bv::console
