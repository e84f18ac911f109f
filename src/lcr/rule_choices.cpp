#include "lcr/rule_choices.h"

#include "ctlfile/reader.h"
#include "lcr/links.h"
#include "lcr/rule_edit.h"
#include "lcr/rule_references.h"
#include "platform/ascii.h"
#include "users/user_list.h"

namespace bv {
namespace {

constexpr std::string_view kKinds[] = {"", "Region", "Country", "Area"};

bool IsWanted(PlaceKind kind, PlaceKind wanted) { return wanted == PlaceKind::All || wanted == kind; }

} // namespace

void PlaceRows::Fill(const Destinations& places, const std::vector<Synonym>& synonyms, PlaceKind kind) {
    Begin(kPlaceColumns);
    std::unordered_map<std::string, std::string> others; // of references in upper case
    for (const Synonym& synonym : synonyms)
        if (const auto reference = places.Convert(synonym.Reference, ReferenceForm::Identifier))
            others[UpperText(*reference)].append(" (").append(synonym.Name).append(")");
    const auto add = [&](PlaceKind what, const std::string& reference, std::string name) {
        const auto other = others.find(UpperText(reference));
        if (other != others.end()) name += other->second;
        for (const std::string_view text :
             {kKinds[static_cast<std::size_t>(what)], std::string_view(reference), std::string_view(name)})
            Add(text);
    };
    if (IsWanted(PlaceKind::Region, kind))
        for (const RegionEntry& region : places.Regions())
            add(PlaceKind::Region, region.Identifier, FindRegionName(places, region.Identifier));
    for (const CountryEntry& country : places.Countries()) {
        if (IsWanted(PlaceKind::Country, kind))
            add(PlaceKind::Country, country.Identifier, FindDestinationName(places, country.Identifier));
        if (!IsWanted(PlaceKind::Area, kind)) continue;
        for (const AreaEntry& area : country.Areas) {
            const std::string reference = country.Identifier + "/" + area.Identifier;
            add(PlaceKind::Area, reference, FindDestinationName(places, reference));
        }
    }
}

std::string PlaceRows::Name(std::size_t row) const {
    return std::string(Text(row, kPlaceKind)).append(": ").append(Text(row, kPlaceReference));
}

PlaceRows::Line PlaceRows::Describe(const Destinations& places, const std::string& line) {
    const RuleDestination destination = {{}, line};
    const std::string kind = line.substr(0, line.find(':'));
    const std::string value(KeyValue(line).value_or(""));
    const std::string name = IsRegion(destination) ? FindRegionName(places, value) : FindDestinationName(places, value);
    const std::optional<std::string> key = FindDestinationKey(places, destination);
    if (!key) return {{kind, value, name}, {}};
    const PlaceKind what = IsRegion(destination)                 ? PlaceKind::Region
                           : key->find('/') != std::string::npos ? PlaceKind::Area
                                                                 : PlaceKind::Country;
    return {{kind, value, name}, std::string(kKinds[static_cast<std::size_t>(what)]) + ": " + *key};
}

void NameRows::Put(std::string_view name, std::string_view title) {
    rows_.emplace(UpperText(name), Count());
    Add(name);
    Add(title);
}

bool NameRows::FillUsers() {
    rows_.clear();
    Begin(kChoiceColumns);
    UserListView view;
    view.Format = UserListFormat::NameAndFullname;
    return VisitUserRows(view, [this](const UserRow& row) { Put(row.Name, row.Fullname); });
}

bool NameRows::FillServers(const RoutingRule& rule) {
    rows_.clear();
    Begin(kChoiceColumns);
    LinkTable links;
    const bool isRead = ReadLinks(links);
    for (const LinkRecord& link : links) Put(link.Identifier, link.Description);
    Put(kLocalServerName, "");
    for (const std::string& server : rule.Servers)
        if (!rows_.contains(UpperText(server))) Put(server, "");
    return isRead;
}

void NameRows::Tick(const std::vector<std::string>& names) {
    ticked_.assign(Count(), false);
    for (const std::string& name : names)
        if (const auto found = rows_.find(UpperText(name)); found != rows_.end()) ticked_[found->second] = true;
}

std::vector<std::string> NameRows::Ticked() const {
    std::vector<std::string> names;
    for (std::size_t row = 0; row < ticked_.size(); ++row)
        if (ticked_[row]) names.emplace_back(Text(row, kChoiceName));
    return names;
}

std::string NameRows::TitleOf(std::string_view name) const {
    const auto found = rows_.find(UpperText(name));
    return found == rows_.end() ? std::string() : std::string(Text(found->second, kChoiceTitle));
}

std::string DescribeNumber(const Destinations& places, const NumberPlace& place) {
    std::string text;
    for (const std::string& reference : place.References())
        text.append(text.empty() ? "" : ", ")
            .append(reference)
            .append(" (")
            .append(FindDestinationName(places, reference) + ")");
    for (const std::string& region : place.Regions) text.append(", region ").append(region);
    return text;
}

} // namespace bv
