// The dialling properties, and numbers converted by them.
#include <algorithm>
#include <optional>

#include "console/assignments.h"
#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "dialling/dialling_file.h"
#include "dialling/numbers.h"
#include "platform/ascii.h"
#include "shell/format.h"
#include "shell/messages.h"

namespace bv::console {
namespace {

constexpr std::string_view kAssignments = "KEY=VALUE";
constexpr std::string_view kLocation = "Location";
constexpr std::string_view kNumber = "NUMBER";

// Why the properties could not be read.
int RefuseStatus(StatusCode status, const std::string& path) {
    if (status == kKeyMissing) {
        ShowError(9102, path);
    } else {
        ShowError(413, path);
    }
    return kExitRefused;
}

bool IsUsable(StatusCode status) { return status == kDone || status == kNumbersNotEdited; }

// The prefixes with commas between them.
std::string JoinPrefixes(const DialPrefixes& prefixes) {
    std::string joined;
    for (const DialPrefix& prefix : prefixes) joined.append(joined.empty() ? "" : ",").append(prefix);
    return joined;
}

int Show(Session& session, const Arguments&) {
    const std::string path = DiallingFileToRead();
    const StatusCode status = ReadDiallingProperties(path);
    if (!IsUsable(status)) return RefuseStatus(status, path);
    const DialProperties& properties = GetDialProperties();
    Record record = {{std::string(kLocation), std::string(SelectedLocation(properties))}};
    if (properties.Mode == kDialLocation) {
        for (const DialKey& field : DialKeys()) record.emplace_back(field.Name(), field.Text(properties));
        for (const DialListKey& list : kDialListKeys)
            record.emplace_back(list.Name(), JoinPrefixes(properties.*list.List));
    }
    PrintRecord(session, record);
    return kExitDone;
}

std::optional<std::string> FaultOfPrefix(const DialListKey& list, std::string_view prefix) {
    if (prefix.empty()) return FormatText("%s: an empty prefix would begin every number", list.Name());
    return FaultOfValue(list.Name(), {ValueRule::Form::Text, DialPrefix::kLimit}, prefix);
}

// Puts the prefixes of a text with commas into the list; the reason when it cannot be.
std::optional<std::string> StorePrefixes(const DialListKey& list, std::string_view text, DialProperties& properties) {
    DialPrefixes prefixes;
    while (!text.empty()) {
        const std::string_view prefix = text.substr(0, text.find(','));
        const bool isLast = prefix.size() == text.size();
        if (auto fault = FaultOfPrefix(list, isLast || prefix.size() + 1 < text.size() ? prefix : "")) return fault;
        if (prefixes.IsFull())
            return FormatText("%s: \"%s\" is one more than the %d prefixes that there can be", list.Name(), prefix,
                              DialPrefixes::kLimit);
        prefixes.Add(prefix);
        text.remove_prefix(isLast ? text.size() : prefix.size() + 1);
    }
    properties.*list.List = prefixes;
    return {};
}

// Sets a key of a location; the reason when it cannot be.
std::optional<std::string> StoreKey(const Assignment& assignment, DialProperties& properties) {
    const auto& [name, value] = assignment;
    const auto isIt = [&name = name](const auto& key) { return EqualFolded(key.Name(), name); };
    const auto key = std::ranges::find_if(DialKeys(), isIt);
    const auto* const list = std::ranges::find_if(kDialListKeys, isIt);
    if (key == DialKeys().end() && list == std::end(kDialListKeys)) return "There is no key " + name;
    if (properties.Mode != kDialLocation)
        return FormatText("%s: \"%s\" - the location %s has no keys", name, value, SelectedLocation(properties));
    if (list != std::end(kDialListKeys)) return StorePrefixes(*list, value, properties);
    if (auto fault = key->FaultOf(value)) return fault;
    key->Store(properties, value);
    return {};
}

// The properties to change: those of the location that is asked for, or of the selected one, or a new location.
bool LoadForChange(const Session& session, const std::optional<std::string>& location, DialProperties& properties) {
    const std::string path = DiallingFileToRead();
    const StatusCode status = FileExists(path) ? ReadDialLocation(path, location, properties) : kKeyMissing;
    if (IsUsable(status)) return true;
    if (status == kKeyMissing && location) {
        SelectLocation(properties, *location);
        return true;
    }
    RefuseStatus(status, path);
    if (status == kKeyMissing) session.Streams.PrintNotice("Location=NAME selects one, or makes a new one\n");
    return false;
}

int Set(Session& session, const Arguments& arguments) {
    const auto assignments = ReadAssignments(session, arguments, kAssignments);
    if (!assignments) return kExitWrongUsage;
    std::optional<std::string> location;
    for (const auto& [key, value] : *assignments)
        if (EqualFolded(key, kLocation)) location = value;
    if (location == "") return session.Refuse("Location: \"\" is no name");
    if (location) {
        const ValueRule rule = {ValueRule::Form::Text, decltype(DialProperties::Description)::kLimit};
        if (const auto fault = FaultOfValue(kLocation, rule, *location)) return session.Refuse(*fault);
    }
    return Perform(session, [&] {
        DialProperties properties;
        if (!LoadForChange(session, location, properties)) return false;
        for (const Assignment& assignment : *assignments) {
            if (EqualFolded(assignment.Key, kLocation)) continue;
            if (const auto fault = StoreKey(assignment, properties)) {
                session.Streams.PrintNotice(*fault + '\n');
                return false;
            }
        }
        return WriteDiallingProperties(properties);
    });
}

// Loads what numbers are converted by; 0 or the exit status.
int LoadForNumbers() {
    const std::string path = DiallingFileToRead();
    const StatusCode status = ReadDiallingProperties(path);
    if (!IsUsable(status)) return RefuseStatus(status, path);
    if (GetDialProperties().Mode == kDialTelephony) ShowWarning(9101);
    return kExitDone;
}

using Conversion = StatusCode (*)(std::string_view, TelephoneNumber&, NumberTrace*);

template <Conversion convert>
int Convert(Session& session, const Arguments& arguments) {
    if (const int fault = LoadForNumbers()) return fault;
    TelephoneNumber result;
    if (convert(arguments[kNumber], result, nullptr) != kDone)
        return session.Refuse(FormatText("NUMBER: \"%s\" has, or would have, over %d characters", arguments[kNumber],
                                         kMaxTelephoneNumber));
    if (session.Json)
        PrintRecord(session, {{"number", result.String()}});
    else
        PrintLines(session, {result.String()});
    return kExitDone;
}

int Explain(Session& session, const Arguments& arguments) {
    if (const int fault = LoadForNumbers()) return fault;
    struct Named {
        std::string_view Name;
        Conversion Run;
    };
    std::vector<Record> records;
    for (const auto& [name, run] :
         {Named{"international", MakeInternationalNumber}, {"dialable", MakeDialableNumber}}) {
        TelephoneNumber result;
        NumberTrace trace;
        run(arguments[kNumber], result, &trace);
        for (const auto& [rule, number] : trace)
            records.push_back({{"form", std::string(name)}, {"rule", std::string(rule)}, {"number", number}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

constexpr Parameter kNumberParameter = {kNumber, "Telephone number as typed; a suffix may follow behind a colon"};

constexpr Verb kDiallingVerbs[] = {
    {.Name = "show", .Help = "Show the selected location and its properties", .Run = Located<Show>},
    {.Name = "set",
     .Help = "Change the selected location, or select or make another by Location=NAME. The locations TAPI and "
             "NoTelNumEdit drop all others from the file",
     .Parameters = {{{kAssignments, "Keys as 'show' prints them, and values; prefixes are parted by commas",
                      ParameterKind::OneOrMore}}},
     .Example = "Location=London Country=44 Area=171 NatlAccess=0 IntlAccess=00 DialAsLocal=181",
     .Run = Located<Set>},
};

constexpr Verb kNumberVerbs[] = {
    {.Name = "international",
     .Help = "The number with + and country code",
     .Parameters = {{kNumberParameter}},
     .Example = "'0181 123 4567'",
     .Run = Located<Convert<MakeInternationalNumber>>},
    {.Name = "dialable",
     .Help = "The number as it is dialled",
     .Parameters = {{kNumberParameter}},
     .Example = "'+44 (171) 123-4567:22'",
     .Run = Located<Convert<MakeDialableNumber>>},
    {.Name = "explain",
     .Help = "The rules by which both come about: form, rule, and the number after it",
     .Parameters = {{kNumberParameter}},
     .Example = "'0181 123 4567'",
     .Run = Located<Explain>},
};

} // namespace

const Area kDiallingArea = {"dialling", "How telephone numbers are dialled from here", kDiallingVerbs};
const Area kNumberArea = {"number", "Telephone numbers, converted by the dialling properties", kNumberVerbs};

} // namespace bv::console
