#include "lcr/destination_entry.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "ctlfile/reader.h"
#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses.h"
#include "lcr/number_place.h"
#include "lcr/router_settings.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::size_t kDescriptionLimit = 100;
constexpr std::size_t kMostDigits = 40;
constexpr std::string_view kOtherName = "other name";
constexpr std::string_view kIdentifierField = "Identifier";
constexpr std::string_view kMatchesField = "Matches";
constexpr std::size_t kCodeLimit = 19;

constexpr ValueRule Described(std::string_view description, bool (*isGood)(std::string_view)) {
    return {ValueRule::Form::Other, 0, {}, description, isGood};
}

constexpr ValueRule kIdentifierRule =
    Described("a name of 1 to 29 characters without blanks, commas, quotes, / and ;", [](std::string_view text) {
        return IsToken(text, kMostOfPlaceName) && text.find_first_of("/;") == std::string_view::npos;
    });
constexpr ValueRule kDescriptionRule =
    Described("a text of at most 100 characters without quotes", [](std::string_view text) {
        return text.size() <= kDescriptionLimit && text.find('"') == std::string_view::npos;
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
    const auto skip = [&text] { text.remove_prefix(std::min(text.find_first_not_of(" ,"), text.size())); };
    for (skip(); !text.empty(); skip()) {
        const std::string_view word = text.substr(0, text.find_first_of(" ,"));
        words.emplace_back(word);
        text.remove_prefix(word.size());
    }
    return words;
}

template <class Entry, std::string Entry::*Member>
constexpr EntryRow<Entry> TextRow(std::string_view key, const ValueRule& rule) {
    return {{key, rule, [](const Entry& entry) { return entry.*Member; },
             [](Entry& entry, std::string_view text) {
                 entry.*Member = text;
                 return true;
             }}};
}

constexpr EntryRow<MatchEntry> kMatchRows[] = {
    TextRow<MatchEntry, &MatchEntry::Identifier>("Identifier:", kIdentifierRule),
    TextRow<MatchEntry, &MatchEntry::Description>("Description:", kDescriptionRule),
    {{"Matches:", kMatchesRule, [](const MatchEntry& entry) { return Joined(entry.Matches); },
      [](MatchEntry& entry, std::string_view text) {
          entry.Matches = Words(text);
          return true;
      }}},
};
constexpr EntryRow<CountryEntry> kCountryRows[] = {
    TextRow<CountryEntry, &CountryEntry::Identifier>("Identifier:", kIdentifierRule),
    TextRow<CountryEntry, &CountryEntry::Description>("Description:", kDescriptionRule),
    TextRow<CountryEntry, &CountryEntry::DiallingCode>("DiallingCode:", kCodeRule),
    TextRow<CountryEntry, &CountryEntry::LastField>("LastField:", kFieldRule),
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

bool IsNumber(std::string_view match) {
    if (match.ends_with('*')) match.remove_suffix(1);
    return !match.empty() && std::ranges::all_of(match, IsDigit);
}

template <class Entry>
const Entry* Find(const std::vector<Entry>& entries, std::string_view identifier) {
    const auto found =
        std::ranges::find_if(entries, [&](const Entry& entry) { return EqualFolded(entry.Identifier, identifier); });
    return found == entries.end() ? nullptr : &*found;
}

// An entry is written over the first one that begins with its name. When that is another one, it is asked.
template <class Kind>
bool AgreeToReplaced(const Kind& kind, const DestinationEdit& edit, const std::string& identifier,
                     const std::string& old) {
    const auto& all = kind.All(edit);
    const auto isReplaced = [&](const auto& entry) {
        const bool goes = EqualFolded(entry.Identifier, old) && !EqualFolded(old, identifier);
        return !goes && StartsWithFolded(entry.Identifier, identifier);
    };
    const auto first = std::ranges::find_if(all, isReplaced);
    if (first == all.end() || EqualFolded(first->Identifier, identifier)) return true;
    const bool isThere = Find(all, identifier) != nullptr;
    return AskWarning(kTakesPlaceOf, identifier, first->Identifier, isThere ? ", and is there twice then" : "");
}

// Whether references may lose their place by what has been changed since.
bool AgreeToLost(const Destinations& before, const DestinationEdit& edit, std::string_view identifier) {
    const auto uses = FindLostDestinations(before, edit.Tables);
    return uses && AskDespiteUses(*uses, identifier);
}

template <class Kind>
bool Write(const Kind& kind, DestinationEdit& edit, const typename Kind::Entry& entry,
           const typename Kind::Entry& old) {
    if (!CheckDestination(kind, edit, entry, old).empty()) return false;
    const Destinations before = edit.Tables;
    const bool isRenamed = !EqualFolded(entry.Identifier, old.Identifier);
    return kind.Write(edit, entry, isRenamed ? old.Identifier : std::string()) &&
           AgreeToLost(before, edit, old.Identifier.empty() ? entry.Identifier : old.Identifier);
}

// What is wrong with a value of its own; the matches are looked at one by one.
template <class Entry>
std::string FaultOfValues(const Entry& entry, const Entry& old) {
    const bool isNew = old.Identifier.empty();
    for (const auto& [field] : RowsOf(entry)) {
        const std::string text = field.Text(entry);
        if (field.Name() == kMatchesField) continue;
        const bool isNoName = isNew && text.empty() && field.Name() == kIdentifierField;
        if (const auto fault = isNoName ? field.FaultOf(text) : field.FaultIn(old, text)) return *fault;
    }
    return {};
}

// Says what is wrong, in a sentence that begins with the field's name, and returns that.
std::string Refuse(const std::string& fault) {
    ShowError("%s", fault);
    return fault.substr(0, fault.find(':'));
}

// Whether a rule's line holds a country's name with those of its areas.
std::string FaultOfLength(std::string_view country, std::string_view area) {
    if (country.size() + 1 + area.size() <= kMostOfPlaceName) return {};
    return FormatText("Identifier: \"%s/%s\" - %s", country, area, FillMessage(kTooLongForRules, kMostOfPlaceName));
}

} // namespace

std::span<const EntryRow<MatchEntry>> RowsOf(const MatchEntry&) { return kMatchRows; }
std::span<const EntryRow<CountryEntry>> RowsOf(const CountryEntry&) { return kCountryRows; }

std::string CountryKind::FaultOf(const DestinationEdit&, const CountryEntry& entry, const CountryEntry& old) {
    if (entry.Identifier.size() > old.Identifier.size()) {
        for (const AreaEntry& area : old.Areas)
            if (std::string fault = FaultOfLength(entry.Identifier, area.Identifier); !fault.empty()) return fault;
    }
    if (entry.DiallingCode.empty()) return "DiallingCode: \"\" - a country needs one";
    if (entry.DiallingCode != old.DiallingCode && !old.Areas.empty())
        return FormatText("DiallingCode: \"%s\" - the areas of country %s are kept under %s; delete them first",
                          entry.DiallingCode, old.Identifier, old.DiallingCode);
    const std::vector<CountryEntry> read = ParseCountries("[COUNTRIES]\n" + CountryLine(entry));
    if (read.size() == 1 && CountryLine(read.front()) == CountryLine(entry)) return "";
    return FormatText("LastField: \"%s\" is not kept beside the other values", entry.LastField);
}

std::string_view CountryKind::Ask(const DestinationEdit& edit, const CountryEntry& entry, const CountryEntry& old) {
    const CountryEntry* other =
        entry.DiallingCode == old.DiallingCode ? nullptr : edit.Tables.FindCode(entry.DiallingCode);
    if (other == nullptr || AskWarning(kCodeIsShared, entry.DiallingCode, other->Identifier)) return {};
    return "DiallingCode";
}

std::string RegionKind::FaultOf(const DestinationEdit& edit, const RegionEntry& entry, const RegionEntry& old) {
    const auto isThere = [&](std::string_view match) { return edit.Tables.FindPlace(match).has_value(); };
    return FaultOfMatches(kRegionFile, entry, old, isThere, "a country or an area that is there");
}

std::string AreaKind::FaultOf(const DestinationEdit& edit, const AreaEntry& entry, const AreaEntry& old) const {
    if (entry.Identifier.size() > old.Identifier.size()) {
        std::string fault = FaultOfLength(edit.Tables.FindCode(Code)->Identifier, entry.Identifier);
        if (!fault.empty()) return fault;
    }
    return FaultOfMatches(kAreaFile, entry, old, IsNumber, "a number, or the beginning of one and *");
}

std::optional<AreaKind> AreasOf(const Destinations& tables, std::string_view country) {
    if (const CountryEntry* found = tables.FindCountry(country)) return AreaKind{found->DiallingCode};
    ShowError(kThereIsNo, CountryKind::kName, country);
    return {};
}

template <class Kind>
const typename Kind::Entry* FindEntry(const Kind& kind, const DestinationEdit& edit, std::string_view identifier) {
    const auto* found = Find(kind.All(edit), identifier);
    if (found == nullptr) ShowError(kThereIsNo, Kind::kName, identifier);
    return found;
}

template <class Kind>
std::string CheckDestination(const Kind& kind, const DestinationEdit& edit, const typename Kind::Entry& entry,
                             const typename Kind::Entry& old) {
    const bool isRenamed = !EqualFolded(entry.Identifier, old.Identifier);
    if (isRenamed && Find(kind.All(edit), entry.Identifier) != nullptr)
        return Refuse(FillMessage(kIdentifierTaken, entry.Identifier, Kind::kName));
    if (const std::string fault = FaultOfValues(entry, old); !fault.empty()) return Refuse(fault);
    if (const std::string fault = kind.FaultOf(edit, entry, old); !fault.empty()) return Refuse(fault);
    if (const std::string_view field = kind.Ask(edit, entry, old); !field.empty()) return std::string(field);
    return AgreeToReplaced(kind, edit, entry.Identifier, old.Identifier) ? "" : "Identifier";
}

std::string CheckSynonym(const DestinationEdit& edit, const Synonym& synonym, const Synonym& old) {
    const std::string text = "[SYNONYMS]\n" + synonym.Name + ": " + synonym.Reference;
    const bool isKept = synonym.Name.size() <= kMostOfPlaceName && ParseSynonyms(text) == std::vector{synonym};
    const auto isTaken = [&](const Synonym& other) { return EqualFolded(other.Name, synonym.Name); };
    if (synonym.Name != old.Name && (synonym.Name.empty() || (!isKept && !synonym.Reference.empty())))
        return Refuse(FillMessage(kNotAnOtherName, synonym.Name));
    if (!EqualFolded(synonym.Name, old.Name) && std::ranges::any_of(edit.Synonyms, isTaken)) {
        ShowError(kIdentifierTaken, synonym.Name, "name");
        return "Name";
    }
    if (synonym.Reference == old.Reference || edit.Tables.FindPlace(synonym.Reference)) return {};
    ShowError(kStandsForNothing, synonym.Reference);
    return "StandsFor";
}

std::string SaveSynonym(DestinationEdit& edit, const Synonym& old, const Synonym& synonym) {
    if (synonym == old && !old.Name.empty()) return {};
    if (std::string field = CheckSynonym(edit, synonym, old); !field.empty()) return field;
    if (!WriteSynonym(edit, synonym, old.Name)) return "Name";
    ShowStatus(old.Name.empty() ? kAdded : kModified, kOtherName, synonym.Name);
    return {};
}

bool RemoveSynonym(DestinationEdit& edit, std::string_view name) {
    if (!DeleteSynonym(edit, name)) return false;
    ShowStatus(kDeleted, kOtherName, name);
    return true;
}

std::string NoteOfName(std::string_view reference) {
    if (reference.size() <= kMostOfPlaceName) return {};
    return FormatText("%s: %s", reference, FillMessage(kTooLongForRules, kMostOfPlaceName));
}

std::string NoteOfNumbers(const DestinationEdit& edit, const AreaKind& kind, const AreaEntry& entry,
                          std::string_view oldIdentifier) {
    const std::unordered_set<std::string_view> numbers(entry.Matches.begin(), entry.Matches.end());
    for (const AreaEntry& area : kind.All(edit)) {
        if (EqualFolded(area.Identifier, oldIdentifier)) continue;
        for (const std::string& match : area.Matches)
            if (numbers.contains(match)) return FillMessage(kNumberIsInArea, MatchText(match), area.Identifier);
    }
    return {};
}

std::optional<std::string> MakeMatch(const std::string& number, bool isWhole) {
    if (!number.empty() && number.size() <= kMostDigits && std::ranges::all_of(number, IsDigit))
        return isWhole ? number : number + '*';
    ShowError(kNotAnAreaNumber, number);
    return {};
}

template <class Kind>
bool AddDestination(const Kind& kind, DestinationEdit& edit, const typename Kind::Entry& entry) {
    if (!Write(kind, edit, entry, {})) return false;
    ShowStatus(kAdded, Kind::kName, entry.Identifier);
    return true;
}

template <class Kind>
bool ChangeDestination(const Kind& kind, DestinationEdit& edit, std::string_view identifier,
                       const typename Kind::Entry& entry) {
    const auto* found = FindEntry(kind, edit, identifier);
    if (found == nullptr) return false;
    const typename Kind::Entry old = *found;
    if (entry == old) return true;
    if (!Write(kind, edit, entry, old)) return false;
    ShowStatus(kModified, Kind::kName, entry.Identifier);
    return true;
}

template <class Kind>
bool RemoveDestination(const Kind& kind, DestinationEdit& edit, std::string_view identifier) {
    const Destinations before = edit.Tables;
    if (!kind.Delete(edit, identifier) || !AgreeToLost(before, edit, identifier)) return false;
    ShowStatus(kDeleted, Kind::kName, identifier);
    return true;
}

template std::string CheckDestination(const CountryKind&, const DestinationEdit&, const CountryEntry&,
                                      const CountryEntry&);
template std::string CheckDestination(const RegionKind&, const DestinationEdit&, const RegionEntry&,
                                      const RegionEntry&);
template std::string CheckDestination(const AreaKind&, const DestinationEdit&, const AreaEntry&, const AreaEntry&);
template const CountryKind::Entry* FindEntry(const CountryKind&, const DestinationEdit&, std::string_view);
template bool AddDestination(const CountryKind&, DestinationEdit&, const CountryKind::Entry&);
template bool ChangeDestination(const CountryKind&, DestinationEdit&, std::string_view, const CountryKind::Entry&);
template bool RemoveDestination(const CountryKind&, DestinationEdit&, std::string_view);
template const RegionKind::Entry* FindEntry(const RegionKind&, const DestinationEdit&, std::string_view);
template bool AddDestination(const RegionKind&, DestinationEdit&, const RegionKind::Entry&);
template bool ChangeDestination(const RegionKind&, DestinationEdit&, std::string_view, const RegionKind::Entry&);
template bool RemoveDestination(const RegionKind&, DestinationEdit&, std::string_view);
template const AreaKind::Entry* FindEntry(const AreaKind&, const DestinationEdit&, std::string_view);
template bool AddDestination(const AreaKind&, DestinationEdit&, const AreaKind::Entry&);
template bool ChangeDestination(const AreaKind&, DestinationEdit&, std::string_view, const AreaKind::Entry&);
template bool RemoveDestination(const AreaKind&, DestinationEdit&, std::string_view);

} // namespace bv
