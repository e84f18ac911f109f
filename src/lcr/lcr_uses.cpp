#include "lcr/lcr_uses.h"

#include <algorithm>
#include <string>

#include "ctlfile/reader.h"
#include "lcr/links.h"
#include "lcr/rule_file.h"
#include "lcr/rule_references.h"
#include "lcr/synonyms.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/format.h"

namespace bv {
namespace {

Use UseOfRule(const RuleList& rules, const RoutingRule& rule, bool isOnly) {
    const auto number = static_cast<int>(&rule - rules.data()) + 1;
    return {NameOf(ServerFile::Rules), FormatText("rule %d \"%s\"", number, rule.Description.View()), true, isOnly,
            true};
}

bool Names(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::any_of(names, [name](const std::string& one) { return EqualFolded(one, name); });
}

bool AddLinkUses(std::string_view user, std::vector<Use>& uses) {
    LinkTable links;
    if (!ReadLinks(links)) return false;
    for (const LinkRecord& link : links) {
        if (EqualFolded(link.AccountName, user))
            uses.push_back({NameOf(ServerFile::Links), FormatText("link %s", link.Identifier), false, false, true});
    }
    return true;
}

// Whether a reference has lost its place.
struct Loss {
    const Destinations& Before;
    const Destinations& After;

    [[nodiscard]] bool Hits(std::string_view reference) const {
        return Before.FindPlace(reference).has_value() && !After.FindPlace(reference).has_value();
    }
    [[nodiscard]] bool Hits(const RuleDestination& destination) const {
        return FindDestinationKey(Before, destination).has_value() &&
               !FindDestinationKey(After, destination).has_value();
    }
};

bool AddRuleLosses(const Loss& loss, std::vector<Use>& uses) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return false;
    for (const RoutingRule& rule : *rules) {
        const auto lost = std::ranges::count_if(
            rule.Destinations, [&](const RuleDestination& destination) { return loss.Hits(destination); });
        const bool isAll = static_cast<std::size_t>(lost) == rule.Destinations.size();
        if (lost != 0) uses.push_back(UseOfRule(*rules, rule, isAll));
    }
    return true;
}

bool AddSynonymLosses(const Loss& loss, std::vector<Use>& uses) {
    const auto synonyms = LoadSynonyms();
    for (const Synonym& synonym : synonyms.value_or(std::vector<Synonym>())) {
        if (loss.Hits(synonym.Reference))
            uses.push_back(
                {NameOf(ServerFile::Countries), FormatText("synonym %s", synonym.Name), false, false, false});
    }
    return synonyms.has_value();
}

} // namespace

std::optional<std::vector<Use>> FindLcrUses(LcrName kind, std::string_view name) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return {};
    std::vector<Use> uses;
    for (const RoutingRule& rule : *rules) {
        const std::vector<std::string>& names = kind == LcrName::User ? rule.Users : rule.Servers;
        // Without its servers a rule sends nothing; without its users it takes everybody's faxes.
        const bool isOnly = kind == LcrName::User && names.size() == 1;
        if (Names(names, name)) uses.push_back(UseOfRule(*rules, rule, isOnly));
    }
    if (kind == LcrName::User && !AddLinkUses(name, uses)) return {};
    return uses;
}

std::optional<std::vector<Use>> FindLostDestinations(const Destinations& before, const Destinations& after) {
    const Loss loss = {before, after};
    std::vector<Use> uses;
    if (!AddRuleLosses(loss, uses)) return {};
    for (const RegionEntry& region : after.Regions()) {
        if (std::ranges::any_of(region.Matches, [&](const std::string& match) { return loss.Hits(match); }))
            uses.push_back(
                {NameOf(ServerFile::Regions), FormatText("region %s", region.Identifier), false, false, true});
    }
    if (!AddSynonymLosses(loss, uses)) return {};
    return uses;
}

} // namespace bv
