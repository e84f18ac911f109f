#include "lcr/rule_references.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "lcr/links.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_file.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kUserKind = "User";
constexpr std::string_view kServerKind = "Server";

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

// Notes the names of one kind that are not in the set.
void FindUndefined(const std::vector<std::string>& used, const NameSet& defined, std::string_view kind,
                   std::vector<LostReference>& lost) {
    for (const std::string& name : used) {
        if (!defined.Has(name)) lost.push_back({0, kind, name});
    }
}

void Erase(std::vector<std::string>& used, const NameSet& defined) {
    std::erase_if(used, [&defined](const std::string& name) { return !defined.Has(name); });
}

// The line's key as a kind: "Region".
std::string_view KindOf(const RuleDestination& destination) {
    for (const std::string_view key : kDestinationKeys) {
        if (BeginsWith(destination.Line, key)) return key.substr(0, key.size() - 1);
    }
    return "Destination";
}

// Appends what was found of one kind, and marks the last of it when the rule has none left.
void Append(std::vector<LostReference>& all, std::vector<LostReference> lost, bool hasSome) {
    if (!lost.empty()) lost.back().IsLast = !hasSome;
    all.insert(all.end(), lost.begin(), lost.end());
}

// What a rule means without the last of its kind.
MessageId<0> MeaningWithout(std::string_view kind) {
    if (kind == kUserKind) return kRuleTakesAllUsers;
    return kind == kServerKind ? kRuleHasNoServer : kRuleTakesAllDestinations;
}

} // namespace

bool LoadRuleNames(RuleNames& names) {
    const std::string links = PathToRead(LinkFile());
    return LoadNames({PathOf(ServerFile::UserList), "[USER]", kNameKey, false, false}, names.Users) &&
           (IsMissing(links) || LoadNames({links, "[LINK]", "RemoteServerID:", true, false}, names.Servers)) &&
           LoadNames({PathOf(ServerFile::Setup), "[ROUTER]", "LocalServerID:", true, true}, names.Servers) &&
           LoadDestinations(names.Places);
}

std::vector<LostReference> CheckReferences(RoutingRule& rule, const RuleNames& names) {
    std::vector<LostReference> all;
    std::vector<LostReference> lost;
    for (RuleDestination& destination : rule.Destinations) {
        destination.Key = FindDestinationKey(names.Places, destination).value_or("");
        if (destination.Key.empty())
            lost.push_back({0, KindOf(destination), std::string(KeyValue(destination.Line).value_or(""))});
    }
    std::erase_if(rule.Destinations, [](const RuleDestination& destination) { return destination.Key.empty(); });
    Append(all, std::exchange(lost, {}), !rule.Destinations.empty());

    FindUndefined(rule.Users, names.Users, kUserKind, lost);
    Erase(rule.Users, names.Users);
    Append(all, std::exchange(lost, {}), !rule.Users.empty());

    FindUndefined(rule.Servers, names.Servers, kServerKind, lost);
    Erase(rule.Servers, names.Servers);
    Append(all, std::move(lost), !rule.Servers.empty() || rule.AllowsLocalServer);
    return all;
}

std::vector<LostReference> CheckReferences(RuleList& rules, const RuleNames& names) {
    std::vector<LostReference> all;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        for (LostReference& lost : CheckReferences(rules[i], names)) {
            lost.Rule = i;
            all.push_back(std::move(lost));
        }
    }
    return all;
}

std::string DescribeLoss(const RuleList& rules, const LostReference& lost) {
    std::string text =
        FillMessage(kNoLongerDefined, lost.Rule + 1, rules[lost.Rule].Description.View(), lost.Kind, lost.Name);
    if (lost.IsLast) text.append("  ").append(FillMessage(MeaningWithout(lost.Kind)));
    return text;
}

bool DropLostReferences(RuleList& rules, const RuleNames& names, LostNames lost) {
    RuleList checked = rules;
    const std::vector<LostReference> all = CheckReferences(checked, names);
    if (!all.empty()) {
        std::string text;
        for (const LostReference& one : all) text.append(text.empty() ? "" : "\n").append(DescribeLoss(rules, one));
        ShowWarning("%s", text);
        if (lost == LostNames::Ask && !AskWarning(kRemoveLostNames)) return false;
    }
    rules = std::move(checked);
    return true;
}

bool IsRegion(const RuleDestination& destination) { return BeginsWith(destination.Line, kRegionKey); }

std::optional<std::string> FindDestinationKey(const Destinations& places, const RuleDestination& destination) {
    const std::string_view value = KeyValue(destination.Line).value_or("");
    if (!IsRegion(destination)) return places.Convert(value, ReferenceForm::Identifier);
    const RegionEntry* region = places.FindRegion(value);
    return region != nullptr ? std::optional(region->Identifier) : std::nullopt;
}

} // namespace bv
