#include "lcr/lcr_overview.h"

#include <optional>

#include "lcr/dead_rules.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_messages.h"
#include "lcr/links.h"
#include "lcr/router_settings.h"
#include "lcr/rule_file.h"
#include "lcr/rule_match.h"
#include "lcr/rule_references.h"

namespace bv {
namespace {

std::string DescribeDestinations() {
    Destinations places;
    if (!LoadDestinations(places)) return FillMessage(kNotKnown);
    return FillMessage(kCountOfPlaces, places.Countries().size(), places.Regions().size());
}

std::string DescribeLinks() {
    LinkTable links;
    return ReadLinks(links) ? FillMessage(kCountOfLinks, links.size()) : FillMessage(kNotKnown);
}

std::string DescribeRules() {
    RuleNames names;
    std::optional<RuleList> rules = LoadRuleNames(names) ? ReadRules() : std::nullopt;
    if (!rules) return FillMessage(kNotKnown);
    CheckReferences(*rules, names);
    return FillMessage(kCountOfRules, rules->size(), FindDeadRules(*rules, names.Places, ReadOffpeak()).size());
}

} // namespace

LcrOverview LookAtLcr() {
    RouterSettings settings;
    LcrOverview overview;
    const RouterReading reading = ReadRouterSettings(settings);
    overview.HasGeneralSettings = reading == RouterReading::Done;
    overview.General = overview.HasGeneralSettings ? FillMessage(kRouterConfigured, settings.LocalServerId)
                       : reading == RouterReading::NotConfigured ? FillMessage(kNotConfigured)
                                                                 : FillMessage(kNotKnown);
    overview.Destinations = DescribeDestinations();
    const LcrButtons ready = UpdateLcrButtons(true, overview.HasGeneralSettings);
    const std::string waits = FillMessage(kNeedsGeneralSettings);
    overview.Links = ready.Links ? DescribeLinks() : waits;
    overview.Rules = ready.Rules ? DescribeRules() : ready.Links ? FillMessage(kNeedsLinksAndPlaces) : waits;
    return overview;
}

} // namespace bv
