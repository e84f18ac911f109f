// Countries, their areas, and regions.
#include <functional>
#include <utility>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/entering.h"
#include "console/located.h"
#include "lcr/destination_edit.h"
#include "lcr/edit_lock.h"
#include "lcr/router_settings.h"
#include "lcr/synonyms.h"
#include "shell/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::size_t kTokenLimit = 100;
constexpr std::size_t kCodeLimit = 19;

constexpr ValueRule Described(std::string_view description, bool (*isGood)(std::string_view)) {
    return {ValueRule::Form::Other, 0, {}, description, isGood};
}

constexpr ValueRule kIdentifierRule =
    Described("a name of 1 to 100 characters without blanks, commas, quotes, / and ;", [](std::string_view text) {
        return IsToken(text, kTokenLimit) && text.find_first_of("/;") == std::string_view::npos;
    });
constexpr ValueRule kDescriptionRule =
    Described("a text of at most 100 characters without quotes", [](std::string_view text) {
        return text.size() <= kTokenLimit && text.find('"') == std::string_view::npos;
    });
constexpr ValueRule kCodeRule =
    Described("a dialling code of 1 to 19 digits that does not begin with 0", [](std::string_view text) {
        return !text.empty() && text.size() <= kCodeLimit && text.front() != '0' && std::ranges::all_of(text, IsDigit);
    });
constexpr ValueRule kFieldRule = {ValueRule::Form::Text, 50};
constexpr ValueRule kMatchesRule =
    Described("names or numbers, parted by blanks", [](std::string_view) { return true; });

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined.append(joined.empty() ? "" : " ").append(text);
    return joined;
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    for (text = SkipBlanks(text); !text.empty(); text = SkipBlanks(text)) {
        const std::string_view word = text.substr(0, text.find(' '));
        words.emplace_back(word);
        text.remove_prefix(word.size());
    }
    return words;
}

template <class Entry>
struct Row {
    KeyField<Entry> Field;
};

template <class Entry, std::string Entry::*Member>
constexpr Row<Entry> TextRow(std::string_view key, const ValueRule& rule) {
    return {{key, rule, [](const Entry& entry) { return entry.*Member; },
             [](Entry& entry, std::string_view text) {
                 entry.*Member = text;
                 return true;
             }}};
}

constexpr Row<MatchEntry> kMatchRows[] = {
    TextRow<MatchEntry, &MatchEntry::Identifier>("Identifier:", kIdentifierRule),
    TextRow<MatchEntry, &MatchEntry::Description>("Description:", kDescriptionRule),
    {{"Matches:", kMatchesRule, [](const MatchEntry& entry) { return Joined(entry.Matches); },
      [](MatchEntry& entry, std::string_view text) {
          entry.Matches = Words(text);
          return true;
      }}},
};
constexpr Row<CountryEntry> kCountryRows[] = {
    TextRow<CountryEntry, &CountryEntry::Identifier>("Identifier:", kIdentifierRule),
    TextRow<CountryEntry, &CountryEntry::Description>("Description:", kDescriptionRule),
    TextRow<CountryEntry, &CountryEntry::DiallingCode>("DiallingCode:", kCodeRule),
    TextRow<CountryEntry, &CountryEntry::LastField>("LastField:", kFieldRule),
};
std::span<const Row<MatchEntry>> RowsOf(const MatchEntry&) { return kMatchRows; }
std::span<const Row<CountryEntry>> RowsOf(const CountryEntry&) { return kCountryRows; }

template <class Entry>
void PrintEntries(const Session& session, const std::vector<Entry>& entries) {
    std::vector<Record> records;
    for (const Entry& entry : entries) {
        Record& record = records.emplace_back();
        for (const auto& row : RowsOf(entry)) record.emplace_back(row.Field.Name(), row.Field.Text(entry));
    }
    PrintRecords(session, records);
}

// Changes the destinations while nobody else edits routing, and puts the working copies in place if it comes off.
int Edit(const Session& session, const std::function<bool(DestinationEdit& edit)>& change) {
    return Perform(session, [&] {
        return RunLcrEditor([&] {
            DestinationEdit edit;
            if (!BeginDestinationEdit(edit)) return false;
            const bool isChanged = change(edit);
            const bool isDone = isChanged && (!edit.Changed || CommitDestinationEdit(edit));
            DropDestinationEdit(edit);
            return isDone;
        });
    });
}

// What the verbs need to know of each kind of entry.
struct CountryKind {
    using Entry = CountryEntry;
    static constexpr std::string_view kName = "country";

    static const std::vector<CountryEntry>& All(const DestinationEdit& edit) { return edit.Tables.Countries(); }
    static bool Write(DestinationEdit& edit, const CountryEntry& entry) { return WriteCountry(edit, entry); }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteCountry(edit, name); }

    // Why the entry cannot come in the place of the old one; empty when it can.
    static std::string FaultOf(const DestinationEdit&, const CountryEntry& entry, const CountryEntry& old) {
        if (entry.DiallingCode.empty()) return "DiallingCode: \"\" - a country needs one";
        if (entry.DiallingCode != old.DiallingCode && !old.Areas.empty())
            return FormatText("DiallingCode: \"%s\" - the areas of country %s are kept under %s; delete them first",
                              entry.DiallingCode, old.Identifier, old.DiallingCode);
        std::vector<CountryEntry> read = ParseCountries("[COUNTRIES]\n" + CountryLine(entry));
        if (read.size() == 1 && CountryLine(read.front()) == CountryLine(entry)) return "";
        return FormatText("LastField: \"%s\" is not kept beside the other values", entry.LastField);
    }
};

// Why a match cannot be in an entry; empty when it can.
std::string FaultOfMatches(const DestinationFile& file, const MatchEntry& entry, const MatchEntry& old,
                           const std::function<bool(std::string_view match)>& isGood, std::string_view what) {
    for (const std::string& match : entry.Matches) {
        if (std::ranges::find(old.Matches, match) == old.Matches.end() && !isGood(match))
            return FormatText("Matches: \"%s\" is not %s", match, what);
    }
    const std::string text = std::string(file.Paragraph) + "\n" + MatchEntryLines(file, entry);
    return ParseMatchEntries(file, text) == std::vector{entry} ? "" : "Matches: a line of the file cannot keep them";
}

struct RegionKind {
    using Entry = RegionEntry;
    static constexpr std::string_view kName = "region";

    static const std::vector<RegionEntry>& All(const DestinationEdit& edit) { return edit.Tables.Regions(); }
    static bool Write(DestinationEdit& edit, const RegionEntry& entry) { return WriteRegion(edit, entry); }
    static bool Delete(DestinationEdit& edit, std::string_view name) { return DeleteRegion(edit, name); }
    static std::string FaultOf(const DestinationEdit& edit, const RegionEntry& entry, const RegionEntry& old) {
        const auto isThere = [&](std::string_view match) { return edit.Tables.FindPlace(match).has_value(); };
        return FaultOfMatches(kRegionFile, entry, old, isThere, "a country or an area that is there");
    }
};

// The areas of one country.
struct AreaKind {
    using Entry = AreaEntry;
    static constexpr std::string_view kName = "area";
    std::string Code;

    [[nodiscard]] const std::vector<AreaEntry>& All(const DestinationEdit& edit) const {
        return edit.Tables.FindCode(Code)->Areas;
    }
    [[nodiscard]] bool Write(DestinationEdit& edit, const AreaEntry& entry) const {
        return WriteArea(edit, Code, entry);
    }
    [[nodiscard]] bool Delete(DestinationEdit& edit, std::string_view name) const {
        return DeleteArea(edit, Code, name);
    }
    static bool IsNumber(std::string_view match) {
        if (match.ends_with('*')) match.remove_suffix(1);
        return !match.empty() && std::ranges::all_of(match, IsDigit);
    }
    static std::string FaultOf(const DestinationEdit&, const AreaEntry& entry, const AreaEntry& old) {
        return FaultOfMatches(kAreaFile, entry, old, IsNumber, "a number, or the beginning of one and *");
    }
};

template <class Entry>
const Entry* Find(const std::vector<Entry>& entries, std::string_view identifier) {
    const auto found =
        std::ranges::find_if(entries, [&](const Entry& entry) { return EqualFolded(entry.Identifier, identifier); });
    return found == entries.end() ? nullptr : &*found;
}

// An entry is written over the first one that begins with its name, which may be another one.
template <class Kind>
void WarnOfReplaced(const Kind& kind, const DestinationEdit& edit, const std::string& identifier) {
    for (const auto& entry : kind.All(edit)) {
        if (!StartsWithFolded(entry.Identifier, identifier)) continue;
        if (EqualFolded(entry.Identifier, identifier)) return;
        const bool isThere = Find(kind.All(edit), identifier) != nullptr;
        ShowWarning("%s takes the place of %s, which begins with the same name%s", identifier, entry.Identifier,
                    isThere ? ", and is there twice then" : "");
        return;
    }
}

template <class Kind>
bool WriteChecked(const Session& session, const Kind& kind, DestinationEdit& edit, const typename Kind::Entry& entry,
                  const typename Kind::Entry& old) {
    const bool isRenamed = !EqualFolded(entry.Identifier, old.Identifier);
    if (isRenamed && Find(kind.All(edit), entry.Identifier) != nullptr)
        return session.Refuse(FormatText("Identifier: \"%s\" - there is a %s of that name already", entry.Identifier,
                                         Kind::kName)) == kExitDone;
    const std::string fault = kind.FaultOf(edit, entry, old);
    if (!fault.empty()) return session.Refuse(fault) == kExitDone;
    if (isRenamed && !old.Identifier.empty() && !kind.Delete(edit, old.Identifier)) return false;
    WarnOfReplaced(kind, edit, entry.Identifier);
    return kind.Write(edit, entry);
}

template <class Kind>
bool AddEntry(const Session& session, const Kind& kind, DestinationEdit& edit, const std::vector<Assignment>& values) {
    typename Kind::Entry entry;
    if (!EnterValues(session, RowsOf(entry), values, entry) || !WriteChecked(session, kind, edit, entry, {}))
        return false;
    ShowStatus("Added %s %s", Kind::kName, entry.Identifier);
    return true;
}

template <class Kind>
bool SetEntry(const Session& session, const Kind& kind, DestinationEdit& edit, const std::string& identifier,
              const std::vector<Assignment>& values) {
    const auto* found = Find(kind.All(edit), identifier);
    if (found == nullptr) return session.Refuse(FormatText("There is no %s %s", Kind::kName, identifier)) == kExitDone;
    const auto old = *found;
    auto entry = old;
    if (!EnterValues(session, RowsOf(entry), values, entry) || !WriteChecked(session, kind, edit, entry, old))
        return false;
    ShowStatus("Modified %s %s", Kind::kName, entry.Identifier);
    return true;
}

template <class Kind>
bool DeleteEntry(const Kind& kind, DestinationEdit& edit, const std::string& identifier) {
    if (!kind.Delete(edit, identifier)) return false;
    ShowStatus("Deleted %s %s", Kind::kName, identifier);
    return true;
}

// The areas of the country that the arguments name; none, after a message, without one.
std::optional<AreaKind> AreasOf(const Session& session, const Destinations& tables, const Arguments& arguments) {
    const CountryEntry* country = tables.FindCountry(arguments["COUNTRY"]);
    if (country != nullptr) return AreaKind{country->DiallingCode};
    session.Streams.PrintNotice("There is no country " + arguments["COUNTRY"] + '\n');
    return {};
}

// Runs the procedure with the kind of entry, of the country in question when that is an area.
template <class Kind, class Procedure>
bool WithKind(const Session& session, const DestinationEdit& edit, const Arguments& arguments, Procedure procedure) {
    if constexpr (std::is_same_v<Kind, AreaKind>) {
        const std::optional<AreaKind> areas = AreasOf(session, edit.Tables, arguments);
        return areas && procedure(*areas);
    } else {
        return procedure(Kind());
    }
}

template <class Kind>
int Add(Session& session, const Arguments& arguments) {
    auto values = ReadAssignments(session, arguments, kAssignments);
    if (!values) return kExitWrongUsage;
    values->insert(values->begin(), {"Identifier", arguments["ID"]});
    return Edit(session, [&](DestinationEdit& edit) {
        return WithKind<Kind>(session, edit, arguments,
                              [&](const auto& kind) { return AddEntry(session, kind, edit, *values); });
    });
}

template <class Kind>
int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadAssignments(session, arguments, kAssignments);
    if (!values) return kExitWrongUsage;
    return Edit(session, [&](DestinationEdit& edit) {
        return WithKind<Kind>(session, edit, arguments, [&](const auto& kind) {
            return SetEntry(session, kind, edit, arguments["ID"], *values);
        });
    });
}

template <class Kind>
int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, [&](DestinationEdit& edit) {
        return WithKind<Kind>(session, edit, arguments,
                              [&](const auto& kind) { return DeleteEntry(kind, edit, arguments["ID"]); });
    });
}

template <class Kind>
int List(Session& session, const Arguments& arguments) {
    DestinationEdit tables; // only its tables are used
    if (!LoadDestinations(tables.Tables)) return kExitRefused;
    const bool isListed = WithKind<Kind>(session, tables, arguments, [&](const auto& kind) {
        PrintEntries(session, kind.All(tables));
        return true;
    });
    return isListed ? kExitDone : kExitRefused;
}

int PrintAnswer(const Session& session, std::string_view name, Value answer) {
    if (session.Json)
        PrintRecord(session, {{std::string(name), std::move(answer)}});
    else
        PrintRecords(session, {{{std::string(name), std::move(answer)}}});
    return kExitDone;
}

int Contains(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    if (tables.FindRegion(arguments["REGION"]) == nullptr)
        return session.Refuse("There is no region " + arguments["REGION"]);
    return PrintAnswer(session, "contains", tables.RegionContains(arguments["REGION"], arguments["REFERENCE"]));
}

int Name(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    const std::string& reference = arguments["REFERENCE"];
    std::optional<std::string> synonym;
    if (!tables.FindPlace(reference)) {
        const auto synonyms = LoadSynonyms();
        if (!synonyms) return kExitRefused;
        synonym = FindSynonymText(tables, *synonyms, reference);
    }
    return PrintAnswer(session, "name", synonym.value_or(FindDestinationName(tables, reference)));
}

int ListSynonyms(Session& session, const Arguments&) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    const auto synonyms = LoadSynonyms();
    if (!synonyms) return kExitRefused;
    std::vector<Record> records;
    for (const Synonym& synonym : *synonyms)
        records.push_back(
            {{"Name", synonym.Name}, {"Reference", synonym.Reference}, {"Text", SynonymText(tables, synonym)}});
    PrintRecords(session, records);
    return kExitDone;
}

// Into the other form: a reference by dialling code into the one by identifier, any other into that by dialling code.
int Convert(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    const std::string& reference = arguments["REFERENCE"];
    const std::string country = reference.substr(0, reference.find('/'));
    const bool isIdentifier = Find(tables.Countries(), country) != nullptr;
    const std::optional<std::string> converted =
        ConvertReference(tables, reference, isIdentifier ? ReferenceForm::DiallingCode : ReferenceForm::Identifier);
    if (!converted) return session.Refuse("There is no destination " + reference);
    return PrintAnswer(session, "reference", *converted);
}

constexpr Parameter kId = {"ID", "Its identifier, in any case"};
constexpr Parameter kCountry = {"COUNTRY", "The country's identifier or dialling code"};
constexpr Parameter kReference = {"REFERENCE", "A country, or a country, / and an area, such as UK/LON or 44/LON"};
constexpr Parameter kSome = {kAssignments, "Keys and values as 'list --json' prints them", ParameterKind::ZeroOrMore};
constexpr Parameter kOne = {kAssignments, "Keys and values as 'list --json' prints them", ParameterKind::OneOrMore};

constexpr Verb kVerbs[] = {
    {.Name = "country list", .Help = "List the countries", .Run = Located<List<CountryKind>>},
    {.Name = "country add",
     .Help = "Add a country",
     .Parameters = {{kId, kSome}},
     .Example = "UK DiallingCode=44 'Description=United Kingdom'",
     .Run = Located<Add<CountryKind>>},
    {.Name = "country set",
     .Help = "Change a country",
     .Parameters = {{kId, kOne}},
     .Example = "UK 'Description=Great Britain'",
     .Run = Located<Set<CountryKind>>},
    {.Name = "country delete",
     .Help = "Delete a country; its areas stay in their file",
     .Parameters = {{kId}},
     .Example = "UK",
     .Run = Located<Delete<CountryKind>>},
    {.Name = "region list", .Help = "List the regions with their destinations", .Run = Located<List<RegionKind>>},
    {.Name = "region add",
     .Help = "Add a region",
     .Parameters = {{kId, kSome}},
     .Example = "EU 'Description=The Union' 'Matches=UK/LON FR'",
     .Run = Located<Add<RegionKind>>},
    {.Name = "region set",
     .Help = "Change a region",
     .Parameters = {{kId, kOne}},
     .Example = "EU 'Matches=FR DE'",
     .Run = Located<Set<RegionKind>>},
    {.Name = "region delete",
     .Help = "Delete a region",
     .Parameters = {{kId}},
     .Example = "EU",
     .Run = Located<Delete<RegionKind>>},
    {.Name = "area list",
     .Help = "List the areas of a country with their numbers",
     .Parameters = {{kCountry}},
     .Example = "UK",
     .Run = Located<List<AreaKind>>},
    {.Name = "area add",
     .Help = "Add an area to a country",
     .Parameters = {{kCountry, kId, kSome}},
     .Example = "UK LON Description=London 'Matches=171* 181*'",
     .Run = Located<Add<AreaKind>>},
    {.Name = "area set",
     .Help = "Change an area",
     .Parameters = {{kCountry, kId, kOne}},
     .Example = "UK LON 'Matches=20*'",
     .Run = Located<Set<AreaKind>>},
    {.Name = "area delete",
     .Help = "Delete an area",
     .Parameters = {{kCountry, kId}},
     .Example = "UK LON",
     .Run = Located<Delete<AreaKind>>},
    {.Name = "synonym list",
     .Help = "List the other names of destinations: name, reference, text",
     .Run = Located<ListSynonyms>},
    {.Name = "contains",
     .Help = "Tell whether a region contains a destination",
     .Parameters = {{{"REGION", "The region's identifier"}, kReference}},
     .Example = "EU UK/LON",
     .Run = Located<Contains>},
    {.Name = "name",
     .Help = "Show what a reference, or another name of a destination, stands for",
     .Parameters = {{kReference}},
     .Example = "UK/LON",
     .Run = Located<Name>},
    {.Name = "convert",
     .Help = "Show a reference with the country's dialling code in place of its identifier, or the other way",
     .Parameters = {{kReference}},
     .Example = "UK/LON",
     .Run = Located<Convert>},
};

} // namespace

const Area kDestinationArea = {"destination", "The countries, areas and regions that faxes go to", kVerbs};

} // namespace bv::console
