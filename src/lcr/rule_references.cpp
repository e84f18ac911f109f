#include "lcr/rule_references.h"

#include <algorithm>
#include <array>
#include <span>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "shell/server_paths.h"
#include "users/user_file.h"

namespace bv {
namespace {

// Which value of a file's records is a name.
struct NameSource {
    std::string Path;
    std::string_view Header;
    std::string_view Key;
    bool IsFirstToken; // of a list, perhaps in quotes
    bool IsOneRecord;  // only the first record of the file counts
};

bool LoadNames(const NameSource& source, NameSet& names) {
    ControlStream file = OpenForReading(source.Path);
    if (!file) return false;
    const std::array keys = {source.Key};
    RecordWalker records(file, source.Header, keys);
    ControlLine value;
    while (records.Next()) {
        if (records.Get(0, value)) {
            const std::string_view token = ParseQuotedToken(value.View()).Token.value_or("");
            names.Add(source.IsFirstToken ? StripQuotes(token) : value.View());
        }
        if (source.IsOneRecord) break;
    }
    return WasRead(file);
}

// Removes the names that are not in the set; whether any was removed.
bool RemoveUndefined(std::vector<std::string>& used, const NameSet& defined) {
    return std::erase_if(used, [&defined](const std::string& name) { return !defined.Has(name); }) != 0;
}

} // namespace

std::string NameSet::Folded(std::string_view name) { return UpperText(name); }

bool LoadRuleNames(RuleNames& names) {
    const std::string links = PathToRead(DatabaseFile("LINK.INI"), DatabaseFile("Link.new"));
    return LoadNames({UserListPath(), "[USER]", kNameKey, false, false}, names.Users) &&
           (IsMissing(links) || LoadNames({links, "[LINK]", "RemoteServerID:", true, false}, names.Servers)) &&
           LoadNames({DatabaseFile("SETUP.INI"), "[ROUTER]", "LocalServerID:", true, true}, names.Servers) &&
           LoadDestinations(names.Places);
}

bool CheckReferences(RoutingRule& rule, const RuleNames& names) {
    bool isRemoved = RemoveUndefined(rule.Users, names.Users);
    isRemoved = RemoveUndefined(rule.Servers, names.Servers) || isRemoved;
    for (RuleDestination& destination : rule.Destinations)
        destination.Key = FindDestinationKey(names.Places, destination).value_or("");
    const auto isUndefined = [](const RuleDestination& destination) { return destination.Key.empty(); };
    return std::erase_if(rule.Destinations, isUndefined) != 0 || isRemoved;
}

bool CheckReferences(RuleList& rules, const RuleNames& names) {
    bool isRemoved = false;
    for (RoutingRule& rule : rules) isRemoved = CheckReferences(rule, names) || isRemoved;
    return isRemoved;
}

bool IsRegion(const RuleDestination& destination) { return BeginsWith(destination.Line, kRegionKey); }

std::optional<std::string> FindDestinationKey(const Destinations& places, const RuleDestination& destination) {
    const std::string_view value = KeyValue(destination.Line).value_or("");
    if (!IsRegion(destination)) return places.Convert(value, ReferenceForm::Identifier);
    const RegionEntry* region = places.FindRegion(value);
    return region != nullptr ? std::optional(region->Identifier) : std::nullopt;
}

} // namespace bv
