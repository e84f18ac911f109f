#include "lcr/destination_session.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "lcr/lcr_messages.h"
#include "lcr/number_place.h"
#include "lcr/rule_references.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {

// By the references in upper case; none for one that goes. A region is named by rules alone.
struct MovedReferences {
    std::unordered_map<std::string, std::optional<std::string>> Places;
    std::string Region = {};
    std::optional<std::string> RegionNow = {};

    [[nodiscard]] bool Hits(std::string_view reference) const { return Places.contains(UpperText(reference)); }
    [[nodiscard]] bool Hits(const RuleDestination& destination) const {
        const std::string_view value = KeyValue(destination.Line).value_or("");
        return IsRegion(destination) ? !Region.empty() && EqualFolded(value, Region) : Hits(value);
    }
    [[nodiscard]] std::optional<std::string> Now(std::string_view reference) const {
        const auto found = Places.find(UpperText(reference));
        return found == Places.end() ? std::optional(std::string(reference)) : found->second;
    }
    [[nodiscard]] std::optional<std::string> Now(const RuleDestination& destination) const {
        return IsRegion(destination) ? RegionNow : Now(KeyValue(destination.Line).value_or(""));
    }
};

namespace {

// A place as it is looked for, and its name and dialling code from now on; without a name it goes.
struct Move {
    const CountryEntry* Country = nullptr;
    const AreaEntry* Area = nullptr; // none: the country
    std::string NewName = {};
    std::string NewCode = {};
};

// What a reference is from now on, where it becomes another one.
void NoteReference(const Destinations& places, const Move& move, std::string_view reference, MovedReferences& moved) {
    const std::optional<FoundPlace> place = places.FindPlace(reference);
    if (!place || place->Country != move.Country || (move.Area != nullptr && place->Area != move.Area)) return;
    if (move.NewName.empty()) {
        moved.Places.emplace(UpperText(reference), std::nullopt);
        return;
    }
    const std::size_t slash = std::min(reference.find('/'), reference.size());
    const std::string country(reference.substr(0, slash));
    const bool isCode = !places.HasIdentifier(country);
    if (move.Area == nullptr && isCode && move.NewCode == move.Country->DiallingCode) return;
    const std::string now = move.Area != nullptr
                                ? country + "/" + move.NewName
                                : (isCode ? move.NewCode : move.NewName) + std::string(reference.substr(slash));
    if (!EqualFolded(now, reference)) moved.Places.emplace(UpperText(reference), now);
}

MovedReferences FindMoved(const DestinationEdit& edit, const RuleList& rules, const Move& move) {
    MovedReferences moved;
    if (move.Country == nullptr) return moved;
    const auto note = [&](std::string_view reference) { NoteReference(edit.Tables, move, reference, moved); };
    for (const RoutingRule& rule : rules)
        for (const RuleDestination& destination : rule.Destinations)
            if (!IsRegion(destination)) note(KeyValue(destination.Line).value_or(""));
    for (const RegionEntry& region : edit.Tables.Regions())
        for (const std::string& match : region.Matches) note(match);
    for (const Synonym& synonym : edit.Synonyms) note(synonym.Reference);
    return moved;
}

// The part of a list that is named, and how many more there are.
std::string Listed(const std::vector<std::string>& texts, std::size_t most) {
    std::string list;
    for (std::size_t i = 0; i < std::min(texts.size(), most); ++i) list.append(i == 0 ? "" : ", ").append(texts[i]);
    return texts.size() > most ? list + FormatText(" and %d more", texts.size() - most) : list;
}

std::vector<Use> UsesInRules(const RuleList& rules, const MovedReferences& moved, bool canChange) {
    std::vector<Use> uses;
    for (const RoutingRule& rule : rules) {
        std::vector<std::string> hit;
        for (const RuleDestination& destination : rule.Destinations)
            if (moved.Hits(destination)) hit.emplace_back(KeyValue(destination.Line).value_or(""));
        if (hit.empty()) continue;
        Use use = UseOfRule(rules, rule, hit.size() == rule.Destinations.size());
        use.Name = Listed(hit, hit.size());
        use.CanChange = canChange;
        uses.push_back(std::move(use));
    }
    return uses;
}

void AddUsesInFiles(const DestinationEdit& edit, const MovedReferences& moved, std::vector<Use>& uses) {
    for (const RegionEntry& region : edit.Tables.Regions()) {
        std::vector<std::string> hit;
        for (const std::string& match : region.Matches)
            if (moved.Hits(match)) hit.push_back(match);
        if (!hit.empty())
            uses.push_back({.File = NameOf(ServerFile::Regions),
                            .Where = FormatText("region %s", region.Identifier),
                            .Kind = UseKind::Limit,
                            .Name = Listed(hit, hit.size())});
    }
    for (const Synonym& synonym : edit.Synonyms) {
        if (moved.Hits(synonym.Reference))
            uses.push_back({.File = NameOf(ServerFile::Countries),
                            .Where = FormatText("other name %s", synonym.Name),
                            .Kind = UseKind::Entry,
                            .Name = synonym.Reference});
    }
}

// Whether another entry of the name takes the first one's place when that goes.
template <class Entry>
bool IsThereTwice(const std::vector<Entry>& entries, std::string_view name) {
    return std::ranges::count_if(entries, [&](const Entry& entry) { return EqualFolded(entry.Identifier, name); }) > 1;
}

Move MoveOf(const Destinations& places, const PlaceName& place, const std::string& newName,
            const std::string& newCode) {
    Move move{.NewName = newName, .NewCode = newCode};
    if (place.Kind == PlaceKind::Country && !IsThereTwice(places.Countries(), place.Name))
        move.Country = places.HasIdentifier(place.Name) ? places.FindCountry(place.Name) : nullptr;
    if (place.Kind != PlaceKind::Area) return move;
    const std::optional<FoundPlace> found = places.FindPlace(place.Country + "/" + place.Name);
    if (!found || IsThereTwice(found->Country->Areas, place.Name)) return move;
    move.Country = found->Country;
    move.Area = found->Area;
    return move;
}

// What becomes of the references to a place that gets another name and dialling code, or goes when the name is empty.
MovedReferences FindMoved(const DestinationEdit& edit, const RuleList& rules, const PlaceName& place,
                          const std::string& newName, const std::string& newCode) {
    if (place.Kind != PlaceKind::Region) return FindMoved(edit, rules, MoveOf(edit.Tables, place, newName, newCode));
    MovedReferences moved;
    if (EqualFolded(place.Name, newName) || IsThereTwice(edit.Tables.Regions(), place.Name)) return moved;
    moved.Region = place.Name;
    if (!newName.empty()) moved.RegionNow = newName;
    return moved;
}

std::string_view KeyOf(const RuleDestination& destination) {
    const auto isIt = [&](std::string_view key) { return BeginsWith(destination.Line, key); };
    const auto* key = std::ranges::find_if(kDestinationKeys, isIt);
    return key == std::end(kDestinationKeys) ? kAreaKey : *key;
}

RuleList ChangedRules(const RuleList& rules, const MovedReferences& moved, const UseChange& change) {
    RuleList changed;
    for (RoutingRule rule : rules) {
        std::vector<RuleDestination> kept;
        for (const RuleDestination& destination : rule.Destinations) {
            if (!moved.Hits(destination))
                kept.push_back(destination);
            else if (const std::optional<std::string> now = moved.Now(destination))
                kept.push_back({{}, KeyedLine(KeyOf(destination), *now)});
        }
        const bool isEmptied = kept.empty() && !rule.Destinations.empty();
        if (isEmptied && change.DeleteEmptied) continue;
        rule.Destinations = std::move(kept);
        changed.push_back(std::move(rule));
    }
    return changed;
}

template <class Entry>
const Entry* FindIn(const std::vector<Entry>& entries, std::string_view name) {
    const auto isIt = [&](const Entry& entry) { return EqualFolded(entry.Identifier, name); };
    const auto found = std::ranges::find_if(entries, isIt);
    return found == entries.end() ? nullptr : &*found;
}

// "Area UK/LON "London": 20...", without its uses.
std::string EntryText(const DestinationSession& session, const PlaceName& place) {
    constexpr std::size_t kMostListed = 20;
    const Destinations& places = session.Places();
    if (place.Kind == PlaceKind::Synonym) {
        for (const Synonym& synonym : session.Synonyms())
            if (synonym.Name == place.Name)
                return FormatText("Other name %s: %s, %s", synonym.Name, synonym.Reference,
                                  FindDestinationName(places, synonym.Reference));
        return {};
    }
    const CountryEntry* country =
        place.Kind == PlaceKind::Area ? places.FindCode(place.Country) : FindIn(places.Countries(), place.Name);
    if (place.Kind == PlaceKind::Country)
        return country == nullptr
                   ? std::string()
                   : FormatText("Country %s \"%s\", dialling code %s, last field %s, areas: %d", country->Identifier,
                                country->Description, country->DiallingCode, country->LastField, country->Areas.size());
    const bool isArea = place.Kind == PlaceKind::Area;
    if (isArea && country == nullptr) return {};
    const MatchEntry* entry = FindIn(isArea ? country->Areas : places.Regions(), place.Name);
    if (entry == nullptr) return {};
    std::vector<std::string> matches = entry->Matches;
    if (isArea) std::ranges::transform(matches, matches.begin(), MatchText);
    return FormatText("%s %s%s \"%s\": %s", isArea ? "Area" : "Region", isArea ? country->Identifier + "/" : "",
                      entry->Identifier, entry->Description, Listed(matches, kMostListed));
}

PlaceName NameOfEntry(const CountryKind&, const CountryEntry& entry) { return {PlaceKind::Country, entry.Identifier}; }
PlaceName NameOfEntry(const AreaKind& kind, const AreaEntry& entry) {
    return {PlaceKind::Area, entry.Identifier, kind.Code};
}
PlaceName NameOfEntry(const RegionKind&, const RegionEntry& entry) { return {PlaceKind::Region, entry.Identifier}; }

std::string CodeOf(const CountryEntry& entry) { return entry.DiallingCode; }
std::string CodeOf(const MatchEntry&) { return {}; }

bool MayDelete(const DestinationEdit& edit, const PlaceName& place, bool isUsed) {
    const CountryEntry* country =
        place.Kind == PlaceKind::Country ? FindIn(edit.Tables.Countries(), place.Name) : nullptr;
    if (country != nullptr && country->HasAreaFile)
        return AskWarning(kAreasStayInFile, country->Identifier,
                          DestinationName(kAreaFile, country->DiallingCode, "ini"));
    if (isUsed) return true;
    std::string description;
    if (place.Kind == PlaceKind::Region) description = FindRegionName(edit.Tables, place.Name);
    if (place.Kind == PlaceKind::Country) description = FindDestinationName(edit.Tables, place.Name);
    if (place.Kind == PlaceKind::Area) description = FindDestinationName(edit.Tables, place.Country + "/" + place.Name);
    return AskDelete(NameOf(place.Kind), place.Name, description);
}

} // namespace

std::string_view NameOf(PlaceKind kind) {
    constexpr std::string_view kNames[] = {"country", "area", "region", "other name"};
    return kNames[static_cast<std::size_t>(kind)];
}

const RuleList* DestinationSession::ReadRulesOnce(RuleReading reading) {
    if (rules_) return &rules_->Rules;
    if (!read_ && (!hasMissedRules_ || reading == RuleReading::Again)) {
        areRulesFree_ = AreRulesFree();
        read_ = ReadRules();
        hasMissedRules_ = !read_;
    }
    return read_ ? &*read_ : nullptr;
}

std::optional<std::vector<Use>> DestinationSession::FindUses(const PlaceName& place, RuleReading reading) {
    const RuleList* rules = ReadRulesOnce(reading);
    if (rules == nullptr) return {};
    return UsesOf(FindMoved(edit_, *rules, place, "", ""));
}

std::vector<Use> DestinationSession::UsesOf(const MovedReferences& moved) {
    std::vector<Use> uses = UsesInRules(*ReadRulesOnce(), moved, areRulesFree_);
    AddUsesInFiles(edit_, moved, uses);
    return uses;
}

// The question comes before anything is changed, and the rules are opened to be changed before the destinations are.
bool DestinationSession::Settle(const MovedReferences& moved, const AskAboutUses& ask,
                                const std::function<bool()>& write) {
    const std::vector<Use> uses = UsesOf(moved);
    if (uses.empty()) return write();
    const bool isInRules = uses.front().File == NameOf(ServerFile::Rules);
    if (isInRules && !areRulesFree_) ShowWarning(kRulesWaitForSave, PendingRulesPath(), "destinations");
    const std::optional<UseChange> change = ask(uses);
    if (!change) return false;
    if (change->What == UseChange::Kind::Leave) return write();
    const bool changesRules = isInRules && areRulesFree_;
    if (changesRules && !rules_) rules_ = OpenRules();
    if (changesRules && !rules_) return false;
    if (!write() || !ChangeFiles(moved)) return false;
    if (changesRules) {
        rules_->Rules = ChangedRules(rules_->Rules, moved, *change);
        areRulesChanged_ = true;
    }
    return true;
}

bool DestinationSession::ChangeFiles(const MovedReferences& moved) {
    const auto isHit = [&](const std::string& match) { return moved.Hits(match); };
    const auto& regions = edit_.Tables.Regions();
    const bool isInRegion =
        std::ranges::any_of(regions, [&](const auto& region) { return std::ranges::any_of(region.Matches, isHit); });
    const auto now = [&](std::string_view match) { return moved.Now(match); };
    if (isInRegion && !ChangeMatches(edit_, now)) return false;
    const auto move = [&](const Synonym& synonym) {
        if (!moved.Hits(synonym.Reference)) return true;
        const std::optional<std::string> reference = moved.Now(synonym.Reference);
        return reference ? WriteSynonym(edit_, {synonym.Name, *reference}, synonym.Name)
                         : DeleteSynonym(edit_, synonym.Name);
    };
    return std::ranges::all_of(std::vector<Synonym>(edit_.Synonyms), move);
}

template <class Kind>
std::string DestinationSession::Save(const Kind& kind, const typename Kind::Entry& old,
                                     const typename Kind::Entry& entry, const AskAboutUses& ask) {
    const bool isNew = old.Identifier.empty();
    if (!isNew && entry == old) return {};
    if (!isNew && FindEntry(kind, edit_, old.Identifier) == nullptr) return "Identifier";
    if (std::string field = CheckDestination(kind, edit_, entry, old); !field.empty()) return field;
    const bool isRenamed = !isNew && !EqualFolded(entry.Identifier, old.Identifier);
    const auto write = [&] { return kind.Write(edit_, entry, isRenamed ? old.Identifier : std::string()); };
    const bool isMoved = isRenamed || (!isNew && CodeOf(entry) != CodeOf(old));
    const RuleList* rules = isMoved ? ReadRulesOnce() : nullptr;
    if (isMoved && rules == nullptr) return "Identifier";
    const bool isDone =
        isMoved ? Settle(FindMoved(edit_, *rules, NameOfEntry(kind, old), entry.Identifier, CodeOf(entry)), ask, write)
                : write();
    if (!isDone) return "Identifier";
    ShowStatus(isNew ? kAdded : kModified, Kind::kName, entry.Identifier);
    return {};
}

template std::string DestinationSession::Save(const CountryKind&, const CountryEntry&, const CountryEntry&,
                                              const AskAboutUses&);
template std::string DestinationSession::Save(const AreaKind&, const AreaEntry&, const AreaEntry&, const AskAboutUses&);
template std::string DestinationSession::Save(const RegionKind&, const RegionEntry&, const RegionEntry&,
                                              const AskAboutUses&);

std::string DestinationSession::SaveSynonym(const Synonym& old, const Synonym& synonym) {
    return bv::SaveSynonym(edit_, old, synonym);
}

bool DestinationSession::DeleteEntry(const PlaceName& place) {
    switch (place.Kind) {
    case PlaceKind::Country: return DeleteCountry(edit_, place.Name);
    case PlaceKind::Area: return DeleteArea(edit_, place.Country, place.Name);
    case PlaceKind::Region: return DeleteRegion(edit_, place.Name);
    case PlaceKind::Synonym: break;
    }
    return DeleteSynonym(edit_, place.Name);
}

bool DestinationSession::Delete(const PlaceName& place, const AskAboutUses& ask) {
    const RuleList* rules = ReadRulesOnce();
    if (rules == nullptr) return false;
    const MovedReferences moved = FindMoved(edit_, *rules, place, "", "");
    if (!MayDelete(edit_, place, !UsesOf(moved).empty())) return false;
    if (!Settle(moved, ask, [&] { return DeleteEntry(place); })) return false;
    ShowStatus(kDeleted, NameOf(place.Kind), place.Name);
    return true;
}

FileBefore DestinationSession::CommitPlaces() {
    const std::size_t copies = edit_.Copies.size();
    Destinations tables = std::move(edit_.Tables); // are shown for as long as it is not done
    std::vector<Synonym> synonyms = edit_.Synonyms;
    const bool isDone = CommitDestinationEdit(edit_);
    isHalfDone_ = isHalfDone_ || edit_.Copies.size() < copies;
    edit_.Tables = std::move(tables);
    edit_.Synonyms = std::move(synonyms);
    edit_.Changed = true; // until the rules are saved, too
    if (isDone) return FileBefore::InPlace;
    return isHalfDone_ ? FileBefore::HalfDone : FileBefore::AsItWas;
}

bool DestinationSession::Commit() {
    const auto commit = [this] { return CommitPlaces(); };
    if (edit_.Changed) {
        const bool isSaved =
            areRulesChanged_ ? SaveRulesBehind(rules_->Rules, rules_->Stamp, commit) : commit() == FileBefore::InPlace;
        if (!isSaved) return false;
    }
    areRulesChanged_ = false;
    Drop();
    return true;
}

void DestinationSession::Drop() {
    if (areRulesChanged_ && !isHalfDone_) DropPendingRules();
    DropDestinationEdit(edit_);
    rules_.reset();
    read_.reset();
    areRulesChanged_ = false;
    isHalfDone_ = false;
}

std::string DescribePlace(DestinationSession& session, const PlaceName& place) {
    constexpr std::size_t kMostNamed = 6;
    std::string text = EntryText(session, place);
    if (place.Kind == PlaceKind::Synonym || text.empty()) return text;
    const auto uses = session.FindUses(place, DestinationSession::RuleReading::Once);
    if (!uses) return text;
    std::vector<std::string> places;
    for (const Use& use : *uses) places.push_back(use.Where);
    return text + "; " + (places.empty() ? FillMessage(kNotUsed) : "used by " + Listed(places, kMostNamed));
}

} // namespace bv
