// Countries, their areas, and regions.
#include <algorithm>
#include <functional>
#include <utility>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/csv_import.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "lcr/destination_entry.h"
#include "lcr/destination_import.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_messages.h"
#include "lcr/number_place.h"
#include "lcr/router_settings.h"
#include "lcr/synonyms.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";

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
        return RunLcrEditor(
            [&] {
                DestinationEdit edit;
                if (!BeginDestinationEdit(edit)) return false;
                const bool isChanged = change(edit);
                const bool isDone = isChanged && (!edit.Changed || CommitDestinationEdit(edit));
                DropDestinationEdit(edit);
                return isDone;
            },
            "destinations");
    });
}

template <class Kind>
bool AddEntry(const Kind& kind, DestinationEdit& edit, const std::vector<Assignment>& values) {
    typename Kind::Entry entry;
    return EnterValues(kind.kPlural, RowsOf(entry), values, entry) && AddDestination(kind, edit, entry);
}

template <class Kind>
bool SetEntry(const Kind& kind, DestinationEdit& edit, const std::string& identifier,
              const std::vector<Assignment>& values) {
    const auto* found = FindEntry(kind, edit, identifier);
    if (found == nullptr) return false;
    auto entry = *found;
    return EnterValues(kind.kPlural, RowsOf(entry), values, entry) && ChangeDestination(kind, edit, identifier, entry);
}

// Runs the procedure with the kind of entry, of the country in question when that is an area.
template <class Kind, class Procedure>
bool WithKind(const DestinationEdit& edit, const Arguments& arguments, Procedure procedure) {
    if constexpr (std::is_same_v<Kind, AreaKind>) {
        const std::optional<AreaKind> areas = AreasOf(edit.Tables, arguments["COUNTRY"]);
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
        return WithKind<Kind>(edit, arguments, [&](const auto& kind) { return AddEntry(kind, edit, *values); });
    });
}

template <class Kind>
int Set(Session& session, const Arguments& arguments) {
    const auto values = ReadAssignments(session, arguments, kAssignments);
    if (!values) return kExitWrongUsage;
    return Edit(session, [&](DestinationEdit& edit) {
        return WithKind<Kind>(edit, arguments,
                              [&](const auto& kind) { return SetEntry(kind, edit, arguments["ID"], *values); });
    });
}

template <class Kind>
int Delete(Session& session, const Arguments& arguments) {
    return Edit(session, [&](DestinationEdit& edit) {
        return WithKind<Kind>(edit, arguments,
                              [&](const auto& kind) { return RemoveDestination(kind, edit, arguments["ID"]); });
    });
}

template <class Kind>
int List(Session& session, const Arguments& arguments) {
    DestinationEdit tables; // only its tables are used
    if (!LoadDestinations(tables.Tables)) return kExitRefused;
    const bool isListed = WithKind<Kind>(tables, arguments, [&](const auto& kind) {
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
    if (tables.FindPlace(reference)) return PrintAnswer(session, "name", FindDestinationName(tables, reference));
    const auto synonyms = LoadSynonyms();
    if (!synonyms) return kExitRefused;
    const std::optional<std::string> synonym = FindSynonymText(tables, *synonyms, reference);
    if (!synonym) return session.Refuse("There is no destination " + reference);
    return PrintAnswer(session, "name", *synonym);
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list.append(list.empty() ? "" : " ").append(name);
    return list;
}

// The country, the areas and the regions of a number.
int Find(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    const std::optional<NumberPlace> place = EnterNumber(tables, arguments["NUMBER"]);
    if (!place) return kExitRefused;
    std::vector<std::string> areas;
    for (const auto& [reference, match] : place->Areas) areas.push_back(reference + " (" + match + ")");
    PrintRecord(session, {{"Number", place->Number},
                          {"Country", place->Country},
                          {"Areas", Listed(areas)},
                          {"Regions", Listed(place->Regions)}});
    return kExitDone;
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

int AddSynonym(Session& session, const Arguments& arguments) {
    return Edit(session, [&](DestinationEdit& edit) {
        return SaveSynonym(edit, {}, {arguments["NAME"], arguments["REFERENCE"]}).empty();
    });
}

int SetSynonym(Session& session, const Arguments& arguments) {
    return Edit(session, [&](DestinationEdit& edit) {
        const std::string& name = arguments["NAME"];
        const auto isIt = [&](const Synonym& synonym) { return EqualFolded(synonym.Name, name); };
        const auto old = std::ranges::find_if(edit.Synonyms, isIt);
        if (old == edit.Synonyms.end()) {
            ShowError(kThereIsNo, "other name", name);
            return false;
        }
        return SaveSynonym(edit, Synonym(*old), {old->Name, arguments["REFERENCE"]}).empty();
    });
}

int DropSynonym(Session& session, const Arguments& arguments) {
    return Edit(session, [&](DestinationEdit& edit) { return RemoveSynonym(edit, arguments["NAME"]); });
}

// Into the other form: a reference by dialling code into the one by identifier, any other into that by dialling code.
int Convert(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    const std::string& reference = arguments["REFERENCE"];
    const std::string country = reference.substr(0, reference.find('/'));
    const bool isIdentifier = tables.HasIdentifier(country);
    const std::optional<std::string> converted =
        ConvertReference(tables, reference, isIdentifier ? ReferenceForm::DiallingCode : ReferenceForm::Identifier);
    if (!converted) return session.Refuse("There is no destination " + reference);
    return PrintAnswer(session, "reference", *converted);
}

int Import(Session& session, const Arguments& arguments) {
    DestinationImport destinations;
    return ImportFile(session, arguments, destinations);
}

int Export(Session& session, const Arguments& arguments) {
    Destinations tables;
    if (!LoadDestinations(tables)) return kExitRefused;
    PrintCsv(session, arguments, DestinationsAsCsv(tables));
    return kExitDone;
}

constexpr Parameter kId = {"ID", "Its identifier, in any case"};
constexpr Parameter kCountry = {"COUNTRY", "The country's identifier or dialling code"};
constexpr Parameter kReference = {"REFERENCE", "A country, or a country, / and an area, such as UK/LON or 44/LON"};
constexpr Parameter kOtherName = {"NAME", "The other name, in any case"};
constexpr Parameter kSome = {kAssignments, "Keys and values as 'list --json' prints them", ParameterKind::ZeroOrMore};
constexpr Parameter kOne = {kAssignments, "Keys and values as 'list --json' prints them", ParameterKind::OneOrMore};

constexpr Verb kVerbs[] = {
    {.Name = "country list", .Help = "List the countries", .Run = Located<List<CountryKind>>},
    {.Name = "country add",
     .Help = "Add a country",
     .Parameters = {{kId, kSome}},
     .Example = "UK DiallingCode=44 'Description=United Kingdom'",
     .Change = Located<Add<CountryKind>>},
    {.Name = "country set",
     .Help = "Change a country",
     .Parameters = {{kId, kOne}},
     .Example = "UK 'Description=Great Britain'",
     .Change = Located<Set<CountryKind>>},
    {.Name = "country delete",
     .Help = "Delete a country; its areas stay in their file",
     .Parameters = {{kId}},
     .Example = "UK",
     .Change = Located<Delete<CountryKind>>},
    {.Name = "region list", .Help = "List the regions with their destinations", .Run = Located<List<RegionKind>>},
    {.Name = "region add",
     .Help = "Add a region",
     .Parameters = {{kId, kSome}},
     .Example = "EU 'Description=The Union' 'Matches=UK/LON FR'",
     .Change = Located<Add<RegionKind>>},
    {.Name = "region set",
     .Help = "Change a region",
     .Parameters = {{kId, kOne}},
     .Example = "EU 'Matches=FR DE'",
     .Change = Located<Set<RegionKind>>},
    {.Name = "region delete",
     .Help = "Delete a region",
     .Parameters = {{kId}},
     .Example = "EU",
     .Change = Located<Delete<RegionKind>>},
    {.Name = "area list",
     .Help = "List the areas of a country with their numbers",
     .Parameters = {{kCountry}},
     .Example = "UK",
     .Run = Located<List<AreaKind>>},
    {.Name = "area add",
     .Help = "Add an area to a country",
     .Parameters = {{kCountry, kId, kSome}},
     .Example = "UK LON Description=London 'Matches=171* 181*'",
     .Change = Located<Add<AreaKind>>},
    {.Name = "area set",
     .Help = "Change an area",
     .Parameters = {{kCountry, kId, kOne}},
     .Example = "UK LON 'Matches=20*'",
     .Change = Located<Set<AreaKind>>},
    {.Name = "area delete",
     .Help = "Delete an area",
     .Parameters = {{kCountry, kId}},
     .Example = "UK LON",
     .Change = Located<Delete<AreaKind>>},
    {.Name = "synonym list",
     .Help = "List the other names of destinations: name, reference, text",
     .Run = Located<ListSynonyms>},
    {.Name = "synonym add",
     .Help = "Give a destination another name",
     .Parameters = {{kOtherName, kReference}},
     .Example = "GB UK",
     .Change = Located<AddSynonym>},
    {.Name = "synonym set",
     .Help = "Let another name stand for another destination",
     .Parameters = {{kOtherName, kReference}},
     .Example = "GB UK/LON",
     .Change = Located<SetSynonym>},
    {.Name = "synonym delete",
     .Help = "Delete another name of a destination",
     .Parameters = {{kOtherName}},
     .Example = "GB",
     .Change = Located<DropSynonym>},
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
    {.Name = "find",
     .Help = "Show which country, areas and regions a telephone number is in",
     .Parameters = {{{"NUMBER", "The number as it is dialled, or with + and country code"}}},
     .Example = "'+44 20 7946 0018'",
     .Run = Located<Find>},
    {.Name = "convert",
     .Help = "Show a reference with the country's dialling code in place of its identifier, or the other way",
     .Parameters = {{kReference}},
     .Example = "UK/LON",
     .Run = Located<Convert>},
    {.Name = "export",
     .Help = "Print countries, areas and regions as comma-separated values, with a first line of the columns' names",
     .Parameters = {{kUtf8Flag}},
     .Example = "> destinations.csv",
     .Run = Located<Export>},
    {.Name = "import",
     .Help = "Add and change countries, areas and regions as a file of comma-separated values says",
     .Parameters = {{{.Name = "FILE",
                      .Help = "File with a first line of columns, as export prints them; only Kind must be there",
                      .IsPath = true},
                     kUtf8Flag}},
     .Example = "destinations.csv --dry-run",
     .Change = Located<Import>},
};

} // namespace

const Area kDestinationArea = {"destination", "The countries, areas and regions that faxes go to", kVerbs};

} // namespace bv::console
