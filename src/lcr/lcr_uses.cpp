#include "lcr/lcr_uses.h"

#include <algorithm>
#include <string>

#include "ctlfile/reader.h"
#include "lcr/links.h"
#include "lcr/rule_file.h"
#include "lcr/rule_references.h"
#include "lcr/synonyms.h"
#include "shell/server_files.h"
#include "voice/format.h"

namespace bv {
namespace {

std::vector<std::string> RoutingRule::*ListOf(LcrName kind) {
    return kind == LcrName::User ? &RoutingRule::Users : &RoutingRule::Servers;
}

// What a rule loses without those of its names that are looked for; nothing when it has none of them.
std::optional<Use> UseOfNames(const RuleList& rules, const RoutingRule& rule, LcrName kind, const NameSet& names) {
    const std::vector<std::string>& used = rule.*ListOf(kind);
    std::string found;
    std::size_t others = used.size();
    for (const std::string& name : used) {
        if (!names.Has(name)) continue;
        found.append(found.empty() ? "" : ", ").append(name);
        --others;
    }
    if (found.empty()) return {};
    const bool isLocal = kind == LcrName::Server && rule.AllowsLocalServer;
    Use use = UseOfRule(rules, rule, others == 0 && !isLocal);
    use.Name = found;
    return use;
}

bool AddLinkUses(const NameSet& users, std::vector<Use>& uses) {
    LinkTable links;
    if (!ReadLinks(links)) return false;
    for (const LinkRecord& link : links) {
        if (users.Has(link.AccountName))
            uses.push_back({.File = NameOf(ServerFile::Links),
                            .Where = FormatText("link %s", link.Identifier),
                            .Name = link.AccountName});
    }
    return true;
}

// Takes the names out of a rule's; a new one comes in the place of the first of them, unless the rule has it already.
void ReplaceNames(std::vector<std::string>& used, const NameSet& names, const UseChange& change) {
    bool isToCome = change.What == UseChange::Kind::Replace && !NameSet(used).Has(change.By);
    std::vector<std::string> kept;
    for (std::string& name : used) {
        if (!names.Has(name)) {
            kept.push_back(std::move(name));
        } else if (isToCome) {
            kept.push_back(change.By);
            isToCome = false;
        }
    }
    used = std::move(kept);
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
            uses.push_back({.File = NameOf(ServerFile::Countries),
                            .Where = FormatText("synonym %s", synonym.Name),
                            .CanChange = false});
    }
    return synonyms.has_value();
}

} // namespace

Use UseOfRule(const RuleList& rules, const RoutingRule& rule, bool isOnly) {
    const auto number = static_cast<int>(&rule - rules.data()) + 1;
    return {.File = NameOf(ServerFile::Rules),
            .Where = FormatText("rule %d \"%s\"", number, rule.Description.View()),
            .Kind = UseKind::Limit,
            .Widens = isOnly};
}

std::vector<Use> FindRuleUses(const RuleList& rules, LcrName kind, const NameSet& names) {
    std::vector<Use> uses;
    for (const RoutingRule& rule : rules) {
        if (auto use = UseOfNames(rules, rule, kind, names)) uses.push_back(std::move(*use));
    }
    return uses;
}

RuleList ChangeRuleNames(const RuleList& rules, LcrName kind, const NameSet& names, const UseChange& change) {
    RuleList changed;
    UseEffects effects(change);
    for (const RoutingRule& rule : rules) {
        const auto use = UseOfNames(rules, rule, kind, names);
        if (use && effects.Of(*use) == UseEffect::Goes) continue;
        changed.push_back(rule);
        if (use) ReplaceNames(changed.back().*ListOf(kind), names, change);
    }
    return changed;
}

std::optional<std::vector<Use>> FindLcrUses(LcrName kind, const NameSet& names) {
    const std::optional<RuleList> rules = ReadRules();
    if (!rules) return {};
    std::vector<Use> uses = FindRuleUses(*rules, kind, names);
    if (kind == LcrName::User && !AddLinkUses(names, uses)) return {};
    return uses;
}

bool ChangeRuleUsers(const NameSet& users, const UseChange& change) {
    const std::optional<OpenedRules> opened = OpenRules();
    return opened && SaveRules(ChangeRuleNames(opened->Rules, LcrName::User, users, change), opened->Stamp);
}

bool ChangeLinkAccounts(const NameSet& users, const UseChange& change) {
    LinkTable links;
    TextStamp stamp;
    if (!LoadLinks(links, stamp)) return false;
    for (LinkRecord& link : links) {
        if (users.Has(link.AccountName)) link.AccountName = change.By;
    }
    return SaveLinks(links, stamp);
}

std::optional<std::vector<Use>> FindLostDestinations(const Destinations& before, const Destinations& after) {
    const Loss loss = {before, after};
    std::vector<Use> uses;
    if (!AddRuleLosses(loss, uses)) return {};
    for (const RegionEntry& region : after.Regions()) {
        if (std::ranges::any_of(region.Matches, [&](const std::string& match) { return loss.Hits(match); }))
            uses.push_back({.File = NameOf(ServerFile::Regions),
                            .Where = FormatText("region %s", region.Identifier),
                            .Kind = UseKind::Limit});
    }
    if (!AddSynonymLosses(loss, uses)) return {};
    return uses;
}

} // namespace bv
