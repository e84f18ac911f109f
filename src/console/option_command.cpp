// The server's options and the types of telephone number.
#include <algorithm>
#include <functional>
#include <optional>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "console/password_input.h"
#include "options/option_messages.h"
#include "options/server_options.h"
#include "options/telephone_types.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kPath = "PARAGRAPH/KEY";
constexpr std::string_view kAssignments = "PARAGRAPH/KEY=VALUE";
constexpr std::string_view kTypeAssignments = "TYPE=DESCRIPTION";

struct Loaded {
    ServerOptions Options;
    SavedOptions Saved;
};

bool Load(const Session& session, Loaded& loaded) {
    session.SayWhatIsDone(false); // what is read is no news here
    const bool isLoaded = LoadServerOptions(loaded.Options, loaded.Saved);
    session.SayWhatIsDone();
    return isLoaded;
}

// A paragraph's name without its brackets.
std::string_view BareName(std::string_view header) {
    if (header.starts_with('[')) header.remove_prefix(1);
    if (header.ends_with(']')) header.remove_suffix(1);
    return header;
}

// The key that "PARAGRAPH/KEY" names; none, after a message, when there is no such option.
const OptionKey* FindOption(const Session& session, std::string_view path) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(std::min(slash + 1, path.size()));
    const OptionKey* key = FindOptionKey(BareName(path.substr(0, slash)), name);
    if (key == nullptr) session.Streams.PrintNotice(FormatText("There is no option %s\n", path));
    return key;
}

std::string ShownValue(const Session& session, const OptionKey& key, const ServerOptions& options) {
    const std::string value = key.Field.Text(options);
    return session.Reveal ? value : ShownText(key.Field.Rule, value);
}

// The password among the options, as 'list' prints it.
std::string PasswordPath() {
    const auto key =
        std::ranges::find_if(OptionKeys(), [](const OptionKey& one) { return one.Field.Rule.IsPassword(); });
    return FormatText("%s/%s", BareName(key->Paragraph), key->Field.Name());
}

int List(Session& session, const Arguments& arguments) {
    const std::string_view wanted = BareName(arguments["PARAGRAPH"]);
    const auto isWanted = [wanted](const OptionKey& key) {
        return wanted.empty() || EqualFolded(BareName(key.Paragraph), wanted);
    };
    if (std::ranges::none_of(OptionKeys(), isWanted))
        return session.Refuse(FormatText("There are no options in a paragraph [%s]", wanted));
    Loaded loaded;
    if (!Load(session, loaded)) return kExitRefused;
    std::vector<Record> records;
    for (const OptionKey& key : OptionKeys()) {
        if (!isWanted(key)) continue;
        const std::string value = ShownValue(session, key, loaded.Options);
        const bool isSet = StoredValueOf(loaded.Saved, key).has_value();
        const std::string paragraph(BareName(key.Paragraph));
        const std::string name(key.Field.Name());
        if (session.Json)
            records.push_back({{"paragraph", paragraph}, {"key", name}, {"value", value}, {"set", isSet}});
        else
            records.push_back({{"", paragraph + '/' + name}, {"", value}, {"", isSet ? "set" : "default"}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

int Get(Session& session, const Arguments& arguments) {
    const OptionKey* key = FindOption(session, arguments[kPath]);
    Loaded loaded;
    if (key == nullptr || !Load(session, loaded)) return kExitRefused;
    const std::string value = ShownValue(session, *key, loaded.Options);
    if (session.Json)
        PrintRecord(session, {{std::string(key->Field.Name()), value}});
    else
        PrintLines(session, {value});
    return kExitDone;
}

int Set(Session& session, const Arguments& arguments) {
    const auto assignments = ReadChanges(session, arguments, kAssignments, PasswordPath());
    if (!assignments) return kExitWrongUsage;
    Loaded loaded;
    if (!Load(session, loaded)) return kExitRefused;
    for (const auto& [path, value] : *assignments) {
        const OptionKey* key = FindOption(session, path);
        if (key == nullptr || !EnterOption(*key, value, loaded.Options)) return kExitRefused;
    }
    return Perform(session, [&] { return SaveServerOptions(loaded.Options, loaded.Saved); });
}

int Find(Session& session, const Arguments& arguments) {
    const std::vector<OptionHit> hits = FindOptions(arguments["TEXT"]);
    if (hits.empty()) return session.Refuse(FillMessage(kNothingFits, arguments["TEXT"]));
    std::vector<Record> records;
    for (const OptionHit& hit : hits) {
        const std::string_view paragraph = BareName(hit.Paragraph);
        const OptionKey* key = FindOptionKey(paragraph, hit.Key);
        const bool isSettable = key != nullptr && key->Trait != OptionKey::Traits::OnlyRead;
        records.push_back({{"Option", FormatText("%s/%s", paragraph, hit.Key)},
                           {"Title", std::string(hit.Title)},
                           {"Page", std::string(TitleOf(hit.Page))},
                           {"Takes", isSettable ? TakesText(HelpOf(*key)) : ""}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

int ListTypes(Session& session, const Arguments&) {
    TelephoneTypes types;
    const bool isWhole = LoadTelephoneTypes(types);
    std::vector<Record> records;
    for (const auto& [code, description] : types)
        records.push_back({{"Type", TelephoneTypeWord(code)}, {"Description", description.String()}});
    PrintRecords(session, records);
    return isWhole ? kExitDone : kExitRefused;
}

// Changes the list in memory, and saves it when that could be done.
int ChangeTypes(const Session& session, const std::function<bool(TelephoneTypes& types)>& change) {
    TelephoneTypes before;
    if (!LoadTelephoneTypes(before)) return kExitRefused;
    TelephoneTypes types = before;
    if (!change(types)) return kExitRefused;
    return Perform(session, [&] { return SaveTelephoneTypes(types, before); });
}

int SetTypes(Session& session, const Arguments& arguments) {
    const auto assignments = ReadAssignments(session, arguments, kTypeAssignments);
    if (!assignments) return kExitWrongUsage;
    std::vector<TypeDescription> descriptions;
    for (const auto& [word, description] : *assignments) descriptions.push_back({word, description});
    return ChangeTypes(session, [&](TelephoneTypes& types) { return DescribeTelephoneTypes(descriptions, types); });
}

int AddType(Session& session, const Arguments& arguments) {
    return ChangeTypes(session, [&](TelephoneTypes& types) {
        const auto added = EnterType(types, types.size(), arguments["TYPE"], arguments["DESCRIPTION"]);
        if (!added) return false;
        types.push_back(*added);
        WarnOfShifts(types);
        return true;
    });
}

int DeleteType(Session& session, const Arguments& arguments) {
    return ChangeTypes(session, [&](TelephoneTypes& types) {
        const auto place = PlaceOfType(types, arguments["TYPE"]);
        if (!place) return false;
        types.erase(types.begin() + static_cast<std::ptrdiff_t>(*place));
        WarnOfShifts(types);
        return true;
    });
}

template <MoveBy kWay>
int MoveListed(Session& session, const Arguments& arguments) {
    return ChangeTypes(session, [&](TelephoneTypes& types) {
        const auto place = PlaceOfType(types, arguments["TYPE"]);
        if (!place) return false;
        if (!MoveType(types, *place, kWay)) {
            ShowError(kTypeAtEnd, arguments["TYPE"], kWay == MoveBy::Up ? "first" : "last");
            return false;
        }
        WarnOfShifts(types);
        return true;
    });
}

constexpr Parameter kType = {"TYPE", "A type as 'telnum list' prints it; of several the first"};

constexpr Verb kVerbs[] = {
    {.Name = "list",
     .Help = "List the options with their values, and whether each is set or has its default as it is not there",
     .Parameters = {{{"PARAGRAPH", "Only the options of a paragraph", ParameterKind::Optional}}},
     .Example = "QUEUEMAN",
     .Run = Located<List>},
    {.Name = "get",
     .Help = "Show the value that is in force",
     .Parameters = {{{kPath, "Paragraph and key as 'list' prints them"}}},
     .Example = "QUEUEMAN/SendTries",
     .Run = Located<Get>},
    {.Name = "set",
     .Help = "Set options; those that are not in the file yet are written, too",
     .Parameters = {{kPasswordFlag,
                     {kAssignments, "Options and values as 'list' prints them", ParameterKind::ZeroOrMore}}},
     .Example = "QUEUEMAN/SendTries=3 WORKSTATION/ChargeCode=OPTIONAL",
     .Change = Located<Set>},
    {.Name = "find",
     .Help = "Find options by words of their titles, pages and keys, and say what each takes and its default",
     .Parameters = {{{"TEXT", "Words that must all stand somewhere"}}},
     .Example = "'sent directory'",
     .Run = Located<Find>},
    {.Name = "telnum list",
     .Help = "List the types of telephone number that users may be allowed to dial",
     .Run = Located<ListTypes>},
    {.Name = "telnum set",
     .Help = "Describe types of telephone number; the other types stay",
     .Parameters = {{{kTypeAssignments,
                      "Local, National1 to National9 or International2 to International9, and what it is called",
                      ParameterKind::OneOrMore}}},
     .Example = "'National1=Inland calls' 'International2=Europe'",
     .Change = Located<SetTypes>},
    {.Name = "telnum add",
     .Help = "Describe a type of telephone number that has no description yet",
     .Parameters = {{{"TYPE", "Local, National1 to National9 or International2 to International9"},
                     {"DESCRIPTION", "What it is called, at most 100 characters"}}},
     .Example = "National2 'Mobile phones'",
     .Change = Located<AddType>},
    {.Name = "telnum delete",
     .Help = "Take a type of telephone number out of the list",
     .Parameters = {{kType}},
     .Example = "National2",
     .Change = Located<DeleteType>},
    {.Name = "telnum up",
     .Help = "Move a type of telephone number one place up in the list",
     .Parameters = {{kType}},
     .Example = "National2",
     .Change = Located<MoveListed<MoveBy::Up>>},
    {.Name = "telnum down",
     .Help = "Move a type of telephone number one place down in the list",
     .Parameters = {{kType}},
     .Example = "Local",
     .Change = Located<MoveListed<MoveBy::Down>>},
};

} // namespace

const Area kOptionArea = {"option", "The options of the server", kVerbs};

} // namespace bv::console
