// Users and user groups: the same verbs for both kinds, and the exchange of users with other programs.
#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/csv_import.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/use_change.h"
#include "ctlfile/lines.h"
#include "platform/ascii.h"
#include "users/many_users.h"
#include "users/user_actions.h"
#include "users/user_entry.h"
#include "users/user_export.h"
#include "users/user_import.h"
#include "users/user_list.h"
#include "voice/messages.h"
#include "whereused/where_used.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";

// Whether a text holds another one, in any case.
bool Holds(std::string_view text, std::string_view wanted) {
    const auto equal = [](char a, char b) { return ToLower(a) == ToLower(b); };
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), equal) != text.end();
}

// The rows whose name or full name holds a text, as they are printed.
class FoundRows {
  public:
    FoundRows(const Session& session, std::string_view wanted) : session_(session), wanted_(wanted) {}

    void Add(const UserRow& row, std::initializer_list<std::pair<std::string_view, std::string_view>> columns) {
        if (!wanted_.empty() && !Holds(row.Name, wanted_) && !Holds(row.Fullname, wanted_)) return;
        if (!ArePlainLines(session_)) {
            Record& record = records_.emplace_back();
            for (const auto& [name, value] : columns) record.emplace_back(name, std::string(value));
            return;
        }
        if (pieces_.empty() || pieces_.back().size() >= kPiece) pieces_.emplace_back().reserve(kPiece + kMaxLine);
        std::string& piece = pieces_.back();
        for (const auto& [name, value] : columns) piece.append(value).push_back('\t');
        piece.back() = '\n';
    }

    void Print() const {
        for (const std::string& piece : pieces_) session_.Streams.PrintResult(piece);
        if (!ArePlainLines(session_)) PrintRecords(session_, records_);
    }

  private:
    static constexpr std::size_t kPiece = 256 * 1024;

    const Session& session_;
    std::string_view wanted_;
    std::vector<Record> records_;
    // Of whole lines. Many pieces, since one text of all of them would be copied again and again as it grows.
    std::vector<std::string> pieces_;
};

// False, after a message, when there is no such group.
bool HasGroup(std::string_view name) {
    UserList list;
    const bool has = list && list.Has(name, RecordKind::Group);
    if (!has && list && list.IsRead()) ShowNotFound(name, RecordKind::Group);
    return has;
}

int ListUsers(Session& session, const Arguments& arguments) {
    FoundRows rows(session, arguments["--find"]);
    const auto add = [&rows](const UserRow& row) {
        rows.Add(row, {{"Name", row.Name}, {"Fullname", row.Fullname}, {"Group", row.Group}});
    };
    UserListView view;
    view.Format = UserListFormat::NameAndFullname;
    view.WithGroup = true;
    const std::string& group = arguments["--group"];
    if (!group.empty() && !HasGroup(group)) return kExitRefused;
    if (!(group.empty() ? VisitUserRows(view, add) : VisitGroupMembers(group, view, add))) return kExitRefused;
    rows.Print();
    return kExitDone;
}

int ListGroups(Session& session, const Arguments& arguments) {
    FoundRows rows(session, arguments["--find"]);
    const auto add = [&rows](const UserRow& row) { rows.Add(row, {{"Name", row.Name}, {"Fullname", row.Fullname}}); };
    UserListView view;
    view.Which = UserSelection::None;
    view.IncludeGroups = true;
    view.Format = UserListFormat::NameAndFullname;
    if (!VisitUserRows(view, add)) return kExitRefused;
    rows.Print();
    return kExitDone;
}

int Show(Session& session, const Arguments& arguments, RecordKind kind) {
    std::string name = arguments["NAME"];
    UserRecord record;
    UserList list;
    if (!list || !list.ReadNamed(name, record, kind)) return kExitRefused;
    Record shown = {{"Name", name}};
    for (const RecordKey& key : RecordKeys()) {
        if (HasKey(key, kind)) shown.emplace_back(key.Field.Name(), key.Field.Text(record));
    }
    PrintRecord(session, shown);
    return kExitDone;
}

// The names of a list "ANN,BEN".
std::vector<std::string> SplitNames(std::string_view list) {
    std::vector<std::string> names;
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(','), list.size());
        const std::string_view name = TrimBlanks(list.substr(0, comma));
        if (!name.empty()) names.emplace_back(name);
        list.remove_prefix(std::min(comma + 1, list.size()));
    }
    return names;
}

// Puts the given values into the record; 0 or the exit status, a message shown.
int Enter(const Session& session, const Arguments& arguments, std::string_view name, RecordEntry& entry) {
    auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    DropShown(*assignments, "Name", name);
    for (const auto& [key, value] : *assignments) {
        if (const auto fault = entry.Enter(key, value)) return session.Refuse(*fault);
    }
    const auto fault = entry.FaultOfWhole();
    return fault ? session.Refuse(fault->Text) : 0;
}

int AddLike(Session& session, const Arguments& arguments, RecordKind kind, std::string_view like,
            const std::string& name) {
    auto beginning = BeginningOf(kind, std::string(like));
    if (!beginning) return kExitRefused;
    RecordEntry entry = RecordEntry::OfNew(kind, name, std::move(*beginning));
    if (const int fault = Enter(session, arguments, name, entry)) return fault;
    {
        UserList list;
        if (!list || !CheckNewUser(list, name, entry.After(), kind)) return kExitRefused;
    }
    return Perform(session, [&] { return AddUser(name, entry.After(), kind); });
}

int Add(Session& session, const Arguments& arguments, RecordKind kind) {
    return AddLike(session, arguments, kind, {}, arguments["NAME"]);
}

int Clone(Session& session, const Arguments& arguments, RecordKind kind) {
    return AddLike(session, arguments, kind, arguments["NAME"], arguments["NEW"]);
}

// Several users get the same values; nothing is written when one of them cannot.
int SetMany(Session& session, const Arguments& arguments, const std::vector<std::string>& names) {
    const auto values = ReadAssignments(session, arguments, kAssignments);
    if (!values) return kExitWrongUsage;
    const auto plan = PlanManyUsers(names, *values);
    if (!plan) return kExitRefused;
    for (const std::string& fault : plan->Faults) ShowError("%s", fault);
    if (!plan->Faults.empty()) return kExitRefused;
    return Perform(session, [&] { return ChangeManyUsers(*plan); });
}

int Set(Session& session, const Arguments& arguments, RecordKind kind) {
    std::optional<RecordEntry> entry;
    {
        UserList list;
        auto stored = list ? list.ReadStored(arguments["NAME"], kind) : std::nullopt;
        if (!stored) return kExitRefused;
        entry.emplace(kind, std::move(*stored));
        if (const int fault = Enter(session, arguments, arguments["NAME"], *entry)) return fault;
        const bool hasNewGroup = entry->After().Group != entry->Before().Group;
        if (hasNewGroup && !CheckGroup(list, entry->After())) return kExitRefused;
    }
    return Perform(session, [&] { return UpdateUser(*entry); });
}

int SetUser(Session& session, const Arguments& arguments) {
    const std::vector<std::string> names = SplitNames(arguments["NAME"]);
    return names.size() > 1 ? SetMany(session, arguments, names) : Set(session, arguments, RecordKind::User);
}

int Delete(Session& session, const Arguments& arguments, NamedThing kind) {
    const std::vector<std::string> names = arguments.All("NAME");
    if (HasSeveralUseChanges(arguments)) return session.WrongUsage(kOneUseChange);
    const auto goOn = [](std::size_t) { return true; };
    return Perform(session, [&] {
        if (const auto change = ChosenUseChange(arguments)) return DeleteWithUses(kind, names, *change, goOn);
        if (!AgreeToDeletion(kind, names)) return false;
        const RecordKind records = RecordKindOf(kind);
        return names.size() == 1 ? DeleteUser(names.front(), records) : DeleteUsers(names, records, goOn);
    });
}

int ShowWhereUsed(Session& session, const Arguments& arguments, NamedThing kind) {
    const auto uses = FindUses(kind, {arguments["NAME"]});
    if (!uses) return kExitRefused;
    UseEffects effects({UseChange::Kind::TakeOut});
    std::vector<Record> records;
    for (const Use& use : *uses)
        records.push_back({{"File", std::string(use.File)}, {"Place", use.Where}, {"TakenOut", effects.TextOf(use)}});
    PrintRecords(session, records);
    if (uses->empty() && !session.Json && !session.Quiet)
        session.Streams.PrintNotice(CountText(kind, {arguments["NAME"]}, 0) + '\n');
    return kExitDone;
}

int Export(Session& session, const Arguments& arguments) {
    const std::optional<std::string> text = UsersAsCsv();
    if (!text) return kExitRefused;
    PrintCsv(session, arguments, *text);
    return kExitDone;
}

int Import(Session& session, const Arguments& arguments) {
    UserImport users;
    return ImportFile(session, arguments, users);
}

// The command for one kind.
template <auto command, auto kind>
int Of(Session& session, const Arguments& arguments) {
    return command(session, arguments, kind);
}
template <auto command, auto kind>
constexpr Command kFor = Located<Of<command, kind>>;

constexpr Parameter kName = {"NAME", "Name, at most 8 characters"};
constexpr Parameter kFind = {"--find", "Only those with this text in name or full name", ParameterKind::Option, "TEXT"};
constexpr std::string_view kKeysHelp = "Keys and values as 'show' prints them";
constexpr Parameter kSomeKeys = {kAssignments, kKeysHelp, ParameterKind::ZeroOrMore};
constexpr Parameter kKeys = {kAssignments, kKeysHelp, ParameterKind::OneOrMore};

constexpr Parameter kNames = {"NAME", "Names of those who go", ParameterKind::OneOrMore};

constexpr auto kUser = RecordKind::User;
constexpr auto kGroup = RecordKind::Group;

constexpr Verb kUserVerbs[] = {
    {.Name = "list",
     .Help = "List the users with full name and group",
     .Parameters = {{kFind, {"--group", "Only the members of a group", ParameterKind::Option, "GROUP"}}},
     .Example = "--group @SALES",
     .Run = Located<ListUsers>},
    {.Name = "show",
     .Help = "Show every key of a user with the value that is in force",
     .Parameters = {{{kName.Name, "Name, in any case; '(default)' or so for the default user"}}},
     .Example = "IRIS",
     .Run = kFor<Show, kUser>},
    {.Name = "add",
     .Help = "Add a user, who begins with what the default user has, and make the user's directories",
     .Parameters = {{kName, kSomeKeys}},
     .Example = "IRIS 'Fullname=Iris Moor' Group=@SALES Admin=YES",
     .Change = kFor<Add, kUser>},
    {.Name = "set",
     .Help = "Change keys of a user, or the same keys of several",
     .Parameters = {{{"NAME", "Name, or several: ANNA,BEN"}, kKeys}},
     .Example = "IRIS 'Dial=Local National' 'SendTime=AFTER 18:00 BEFORE 08:00 MON TUE'",
     .Change = Located<SetUser>},
    {.Name = "clone",
     .Help = "Add a user, who begins with what another one has, names excepted, and make the user's directories",
     .Parameters = {{kName, {"NEW", "Name of the new user, at most 8 characters"}, kSomeKeys}},
     .Example = "IRIS JUNE 'Fullname=June Moor'",
     .Change = kFor<Clone, kUser>},
    {.Name = "delete",
     .Help = "Delete users and their directories; places that name them are asked about, or changed as is said",
     .Parameters = {{kTakeOut, kDeleteEmptied, kReplaceBy, kLeave, kNames}},
     .Example = "IRIS --replace-by JUNE",
     .Change = kFor<Delete, NamedThing::User>},
    {.Name = "export",
     .Help = "Print all users as comma-separated values, with a first line of the keys' names",
     .Parameters = {{kUtf8Flag}},
     .Example = "> users.csv",
     .Run = Located<Export>},
    {.Name = "import",
     .Help = "Add and change users as a file of comma-separated values says; those it does not name stay",
     .Parameters = {{{.Name = "FILE",
                      .Help = "File with a first line of keys, one of them Name; the others may be left out",
                      .IsPath = true},
                     kUtf8Flag}},
     .Example = "users.csv --dry-run",
     .Change = Located<Import>},
};

constexpr Verb kGroupVerbs[] = {
    {.Name = "list", .Help = "List the user groups", .Parameters = {{kFind}}, .Run = Located<ListGroups>},
    {.Name = "show",
     .Help = "Show every key of a user group with the value that is in force",
     .Parameters = {{{kName.Name, "Name, in any case"}}},
     .Example = "@SALES",
     .Run = kFor<Show, kGroup>},
    {.Name = "add",
     .Help = "Add a user group and make its directories",
     .Parameters = {{kName, kSomeKeys}},
     .Example = "@SALES 'Fullname=Sales office'",
     .Change = kFor<Add, kGroup>},
    {.Name = "set",
     .Help = "Change keys of a user group",
     .Parameters = {{kName, kKeys}},
     .Example = "@SALES PrintRecdDevice=PRINT-1",
     .Change = kFor<Set, kGroup>},
    {.Name = "delete",
     .Help = "Delete user groups and their directories; their members stay",
     .Parameters = {{kTakeOut, kReplaceBy, kLeave, kNames}},
     .Example = "@SALES --take-out",
     .Change = kFor<Delete, NamedThing::UserGroup>},
};

constexpr Verb kWhereUsedVerbs[] = {
    {.Name = "user",
     .Help = "List the places that name a user, with what becomes of each when the name is taken out",
     .Parameters = {{kName}},
     .Example = "IRIS",
     .Run = kFor<ShowWhereUsed, NamedThing::User>},
    {.Name = "group",
     .Help = "List the members of a user group and the places that name it",
     .Parameters = {{kName}},
     .Example = "@SALES",
     .Run = kFor<ShowWhereUsed, NamedThing::UserGroup>},
    {.Name = "printer",
     .Help = "List the places where faxes are printed on a printer: users, groups and the server's options",
     .Parameters = {{{"NAME", "Name of the printer"}}},
     .Example = "PRINT-1",
     .Run = kFor<ShowWhereUsed, NamedThing::Printer>},
};

} // namespace

const Area kUserArea = {"user", "The users of the fax server", kUserVerbs};
const Area kGroupArea = {"group", "The groups of users", kGroupVerbs};
const Area kWhereUsedArea = {"where-used", "Where the server's files name a user, a group or a printer",
                             kWhereUsedVerbs};

} // namespace bv::console
