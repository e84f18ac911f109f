// The mail gateway: its users, their account names, and its log-in.
#include <unordered_map>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/password_input.h"
#include "mailgw/account_name.h"
#include "mailgw/mail_actions.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_login.h"
#include "mailgw/mail_messages.h"
#include "mailgw/mail_user_edit.h"
#include "mailgw/mail_user_rows.h"
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
constexpr std::string_view kDirectory = "--directory";
constexpr std::string_view kSystem = "--system";
constexpr std::string_view kLogin = "--name";
constexpr std::string_view kAssignments = "KEY=VALUE";

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

// The users of the mail system, and as whom those send who are in the list.
int ListDirectory(Session& session) {
    std::vector<MailPerson> people;
    if (!ReadMailDirectory(people)) return kExitRefused;
    std::unordered_map<std::string, std::string> senders;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        senders.try_emplace(UpperText(user.Emailname), EffectiveUser(user));
        return true;
    });
    if (!isRead) return kExitRefused;
    std::vector<Record> records;
    for (const MailPerson& person : people)
        records.push_back(
            {{"Emailname", person.Name}, {"Address", person.Address}, {"User", senders[UpperText(person.Name)]}});
    PrintRecords(session, records);
    return kExitDone;
}

int List(Session& session, const Arguments& arguments) {
    if (arguments.Has(kDirectory)) return ListDirectory(session);
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

// The key of that name, in any case; none for another one.
std::optional<MailKey::Index> FindKey(std::string_view name) {
    for (std::size_t i = 0; i < kMailUserKeys.size(); ++i)
        if (EqualFolded(kMailUserKeys[i], std::string(name) + ':')) return static_cast<MailKey::Index>(i);
    return {};
}

bool SetValues(const std::string& emailName, const std::vector<Assignment>& values) {
    std::optional<MailUser> found;
    if (!FindMailUser(emailName, found)) return false;
    if (!found) ShowError("Emailname: \"%s\" is not in the mail list", emailName);
    if (!found) return false;
    MailUser after = *found;
    for (const auto& [name, value] : values) {
        const auto key = FindKey(name);
        if (!key) ShowError(kNoSuchKey, name, value, "mail users");
        if (!key) return false;
        const std::optional<std::string> fault = SetMailValue(after, *key, value);
        if (fault) ShowError("%s", *fault);
        if (fault) return false;
    }
    return !SaveMailUser(*found, after);
}

int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadAssignments(session, arguments, kAssignments);
    if (!values) return kExitWrongUsage;
    return Perform(session, [&] { return SetValues(arguments["EMAILNAME"], *values); });
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
        const bool isToBeMade = arguments.Has(kForce) || !FileExists(PathOf(ServerFile::MailUsers));
        return session.DryRun || !isToBeMade ? EnsureMailUserList(0, isToBeMade) : RemakeMailUserList(0);
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

// The account names that all users of the mail system would get, and what is wrong with them.
int CheckNames(Session& session, const Arguments& arguments) {
    const std::string& given = arguments[kExpression];
    if (arguments.Has(kExpression) && !IsAccountExpression(given)) {
        ShowError(kSelectExpression);
        return kExitRefused;
    }
    const auto stored = arguments.Has(kExpression) ? AccountExpression(given) : ReadAccountExpression();
    MailPeople people;
    if (!stored || !people.Read()) return kExitRefused;
    people.GiveAccounts(true, stored->View());
    std::vector<Record> records;
    for (std::size_t row = 0; row < people.Count(); ++row)
        records.push_back({{"Emailname", std::string(people.Text(row, kPersonName))},
                           {"Account", std::string(people.Text(row, kPersonAccount))},
                           {"State", std::string(people.Text(row, kPersonState))}});
    PrintRecords(session, records);
    return kExitDone;
}

int SetExpression(Session& session, const Arguments& arguments) {
    return Perform(session, [&] { return WriteAccountExpression(arguments["EXPRESSION"]); });
}

// What is given, and the rest as SETUP.INI has it.
std::optional<MailLogin> LoginOf(const Session& session, const Arguments& arguments) {
    std::optional<MailLogin> login = ReadGatewayLogin();
    if (!login) return {};
    if (arguments.Has(kSystem)) login->System = UpperText(arguments[kSystem]);
    if (arguments.Has(kLogin)) login->Name = arguments[kLogin];
    if (!arguments.Has(kPasswordStdin)) return login;
    const auto typed = ReadOnlyLine(session, "Password", "The password");
    if (!typed) return {};
    login->Password = {*typed, false};
    return login;
}

int Test(Session& session, const Arguments& arguments) {
    const std::optional<MailLogin> login = LoginOf(session, arguments);
    if (!login) return kExitRefused;
    PrintLines(session, {DescribeMailLibrary(login->System)});
    session.SayWhatIsDone();
    MailWait wait; // Ctrl+C ends it
    return TestMailLogin(*login, wait) ? kExitDone : kExitRefused;
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
     .Parameters = {{{kOfUser, "Only those whose faxes go under this name", ParameterKind::Option, "USER"},
                     {kDirectory, "All users of the mail system instead, with their addresses", ParameterKind::Flag}}},
     .Run = Located<List>},
    {.Name = "add",
     .Help = "Let a mail user send faxes under the name of a server user",
     .Parameters = {{kUser,
                     kEmailname,
                     {kReplace, "Put the record in the place of this mail user's", ParameterKind::Option,
                      "EMAILNAME"}}},
     .Example = "ANN 'Ann Archer'",
     .Change = Located<Add>},
    {.Name = "set",
     .Help = "Change values of a mail user: Brivname, EmailBrivname, SubAddr, PrintRecd, PrintSent",
     .Parameters = {{kEmailname,
                     {kAssignments, "A key and its new value; without a value the line goes",
                      ParameterKind::OneOrMore}}},
     .Example = "'Ann Archer' SubAddr=201",
     .Change = Located<Set>},
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
    {.Name = "names",
     .Help = "List the account names that the users of the mail system would get, and what is wrong with them",
     .Parameters = {{{kExpression, "By this expression instead of the server's", ParameterKind::Option, "EXPRESSION"}}},
     .Run = Located<CheckNames>},
    {.Name = "expression",
     .Help = "Set the expression that makes account names of mail users' names",
     .Parameters = {{{"EXPRESSION", "Items such as %1First%Last, %First%1Last or %2Second"}}},
     .Example = "%First%1Last",
     .Change = Located<SetExpression>},
};

constexpr Verb kMailVerbs[] = {
    {.Name = "test",
     .Help = "Log into the mail system of the mail gateway, from this workstation, and out again",
     .Parameters = {{{kSystem, "Another one than the server's: EXCHANGE, MSMAIL, MAPI ...", ParameterKind::Option,
                      "SYSTEM"},
                     {kLogin, "Another log-in name than the server's", ParameterKind::Option, "NAME"},
                     kPasswordFlag}},
     .Run = Located<Test>},
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
const Area kMailArea = {"mail", "The mail system that the mail gateway works with", kMailVerbs};
const Area kMailNameArea = {"mail-name", "Account names of mail users", kMailNameVerbs};

} // namespace bv::console
