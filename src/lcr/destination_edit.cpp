#include "lcr/destination_edit.h"

#include <algorithm>
#include <functional>
#include <list>
#include <optional>
#include <unordered_map>
#include <utility>

#include "ctlfile/file_gate.h"
#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "lcr/text_file.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::Files;

std::string LivePath(const WorkingCopy& copy) { return DestinationPath(copy.File, copy.DiallingCode); }
std::string NewPath(const WorkingCopy& copy) { return DestinationPath(copy.File, copy.DiallingCode, "new"); }

// What a change makes of a text; none, after a message, when it cannot be made.
using TextChange = std::function<std::optional<std::string>(std::string_view text)>;

ReplacedFile FileOf(const WorkingCopy& copy) { return ReplacedDestinationFile(copy.File, copy.DiallingCode); }

// Makes a working copy of the live file's text, or of an empty list where there is none.
bool BeginFile(DestinationEdit& edit, WorkingCopy copy) {
    const ReplacedFile file = FileOf(copy);
    if (!OfferRecovery(file)) return false;
    const std::optional<TextOfFile> live = ReadTextFile(file.Path);
    if (!live || !WriteNewText(file, live->IsThere ? live->Text : EmptyDestinationText(copy.File))) return false;
    copy.Before = StampOf(*live);
    edit.Copies.push_back(std::move(copy));
    return true;
}

bool IsTouched(const DestinationEdit& edit, const WorkingCopy& copy) {
    return std::ranges::any_of(edit.Copies, [&](const WorkingCopy& other) {
        return other.File.Type == copy.File.Type && other.DiallingCode == copy.DiallingCode;
    });
}

// An area file gets its working copy when it is first changed.
bool Touch(DestinationEdit& edit, const WorkingCopy& copy) { return IsTouched(edit, copy) || BeginFile(edit, copy); }

// The working copy is as it was when this fails, whatever has been deleted; else a message says that it is not.
bool ReplaceWorkingCopy(const WorkingCopy& copy, const std::string& oldText, const std::string& newText) {
    ReplacedFile file = FileOf(copy);
    const std::string livePath = std::exchange(file.Path, file.NewPath);
    file.NewPath = DestinationPath(copy.File, copy.DiallingCode, "ne2");
    if (!WriteNewText(file, newText)) return false;
    if (PutNewTextInPlace(file)) return true;
    Files().Delete(file.NewPath);
    if (IsMissing(file.Path) && !WriteWholeFile(file.Path, oldText, livePath)) ShowError(file.NotWritten, file.Path);
    return false;
}

// Stores the new text for the tables.
bool Change(DestinationEdit& edit, const WorkingCopy& copy, const TextChange& change, std::string& newText) {
    if (!Touch(edit, copy)) return false;
    const std::optional<TextOfFile> old = ReadTextFile(NewPath(copy));
    if (!old) return false;
    if (!old->IsThere) {
        ShowOpenFault(NewPath(copy));
        return false;
    }
    const std::optional<std::string> changed = change(old->Text);
    if (!changed || !ReplaceWorkingCopy(copy, old->Text, *changed)) return false;
    newText = *changed;
    edit.Changed = true;
    return true;
}

std::optional<std::string> OrNotFound(std::optional<std::string> text, std::string_view kind,
                                      std::string_view identifier) {
    if (!text) ShowError(kThereIsNo, kind, identifier);
    return text;
}

// The text without the entry of that name; as it is for no name. None after 9130.
std::optional<std::string> WithoutEntry(const DestinationFile& file, std::string_view text,
                                        std::string_view identifier) {
    if (identifier.empty()) return std::string(text);
    std::string kind(file.Type);
    kind.front() = ToLower(kind.front());
    return OrNotFound(file.EntryKey.empty() ? WithoutCountry(text, identifier)
                                            : WithoutMatchEntry(file, text, identifier),
                      kind, identifier);
}

bool ChangeRegions(DestinationEdit& edit, const TextChange& change) {
    std::string text;
    if (!Change(edit, {kRegionFile, {}}, change, text)) return false;
    edit.Tables = {ParseMatchEntries(kRegionFile, text), std::move(edit.Tables).TakeCountries()};
    return true;
}

// Gives a country the areas that are kept under its dialling code; none, after a message, when they cannot be read.
void TakeAreas(const DestinationEdit& edit, CountryEntry& country) {
    const WorkingCopy copy = {kAreaFile, country.DiallingCode};
    const std::optional<TextOfFile> file = ReadTextFile(IsTouched(edit, copy) ? NewPath(copy) : LivePath(copy));
    if (!file) return;
    country.HasAreaFile = file->IsThere;
    country.Areas = ParseMatchEntries(kAreaFile, file->Text);
}

// A country that was there keeps its areas.
bool ChangeCountries(DestinationEdit& edit, const TextChange& change) {
    std::string text;
    if (!Change(edit, {kCountryFile, {}}, change, text)) return false;
    std::vector<CountryEntry> countries = ParseCountries(text);
    std::vector<CountryEntry> old = std::move(edit.Tables).TakeCountries();
    std::unordered_map<std::string_view, CountryEntry*> byCode;
    for (CountryEntry& country : old) byCode.emplace(country.DiallingCode, &country);
    for (CountryEntry& country : countries) {
        const auto same = byCode.find(country.DiallingCode);
        if (same == byCode.end()) {
            TakeAreas(edit, country);
            continue;
        }
        // Of countries with one dialling code, each has the same areas.
        const bool isFirst = same->second >= old.data() && same->second < old.data() + old.size();
        country.HasAreaFile = same->second->HasAreaFile;
        country.Areas = isFirst ? std::move(same->second->Areas) : same->second->Areas;
        same->second = &country;
    }
    edit.Tables = {std::move(edit.Tables).TakeRegions(), std::move(countries)};
    edit.Synonyms = ParseSynonyms(text);
    return true;
}

bool ChangeAreas(DestinationEdit& edit, std::string_view diallingCode, const TextChange& change) {
    std::string text;
    if (!Change(edit, {kAreaFile, std::string(diallingCode)}, change, text)) return false;
    std::vector<CountryEntry> countries = std::move(edit.Tables).TakeCountries();
    for (CountryEntry& country : countries) {
        if (country.DiallingCode != diallingCode) continue;
        country.HasAreaFile = true;
        country.Areas = ParseMatchEntries(kAreaFile, text);
    }
    edit.Tables = {std::move(edit.Tables).TakeRegions(), std::move(countries)};
    return true;
}

// Whether the live file is as it was read; then it stays so while the gate is held.
bool GetIn(const WorkingCopy& copy, std::list<FileGate>& gates) {
    const std::string path = LivePath(copy);
    if (!gates.emplace_back(path)) {
        ShowOpenFault(path);
        return false;
    }
    const std::optional<TextOfFile> live = ReadTextFile(path);
    if (!live) return false;
    if (StampOf(*live) != copy.Before) ShowError(kChangedMeanwhile, path);
    return StampOf(*live) == copy.Before;
}

bool HasEntry(const std::vector<MatchEntry>& entries, const MatchEntry& entry) {
    return std::ranges::find(entries, entry) != entries.end();
}

// The text with each entry put into it.
template <class Entry, class Put>
std::optional<std::string> WithEntries(std::string_view text, std::span<const Entry> entries, Put put) {
    std::string changed(text);
    for (const Entry& entry : entries) changed = put(changed, entry);
    return changed;
}

} // namespace

bool BeginDestinationEdit(DestinationEdit& edit) {
    edit = {};
    if (!LoadDestinations(edit.Tables)) return false;
    std::optional<std::vector<Synonym>> synonyms = LoadSynonyms();
    if (!synonyms) return false;
    edit.Synonyms = std::move(*synonyms);
    if (BeginFile(edit, {kRegionFile, {}}) && BeginFile(edit, {kCountryFile, {}})) return true;
    DropDestinationEdit(edit);
    return false;
}

bool WriteRegion(DestinationEdit& edit, const RegionEntry& entry, std::string_view insteadOf) {
    if (insteadOf.empty() && HasEntry(edit.Tables.Regions(), entry)) return true;
    return ChangeRegions(edit, [&](std::string_view text) {
        const auto rest = WithoutEntry(kRegionFile, text, insteadOf);
        return rest ? std::optional(WithMatchEntry(kRegionFile, *rest, entry)) : std::nullopt;
    });
}

bool WriteCountry(DestinationEdit& edit, const CountryEntry& entry, std::string_view insteadOf) {
    const auto isIt = [&entry](const CountryEntry& other) {
        return other.LastField == entry.LastField && CountryLine(other) == CountryLine(entry);
    };
    if (insteadOf.empty() && std::ranges::any_of(edit.Tables.Countries(), isIt)) return true;
    return ChangeCountries(edit, [&](std::string_view text) {
        const auto rest = WithoutEntry(kCountryFile, text, insteadOf);
        return rest ? std::optional(WithCountry(*rest, entry)) : std::nullopt;
    });
}

bool WriteArea(DestinationEdit& edit, std::string_view diallingCode, const AreaEntry& entry,
               std::string_view insteadOf) {
    const CountryEntry* country = edit.Tables.FindCode(diallingCode);
    if (insteadOf.empty() && country != nullptr && HasEntry(country->Areas, entry)) return true;
    return ChangeAreas(edit, diallingCode, [&](std::string_view text) {
        const auto rest = WithoutEntry(kAreaFile, text, insteadOf);
        return rest ? std::optional(WithMatchEntry(kAreaFile, *rest, entry)) : std::nullopt;
    });
}

bool WriteSynonym(DestinationEdit& edit, const Synonym& synonym, std::string_view insteadOf) {
    return ChangeCountries(edit, [&](std::string_view text) { return WithSynonym(text, synonym, insteadOf); });
}

bool ChangeMatches(DestinationEdit& edit, const MatchChange& change) {
    return ChangeRegions(edit, [&](std::string_view text) { return WithChangedMatches(kRegionFile, text, change); });
}

bool WriteRegions(DestinationEdit& edit, std::span<const RegionEntry> entries) {
    return entries.empty() || ChangeRegions(edit, [&](std::string_view text) {
               return WithEntries(text, entries, [](std::string_view all, const RegionEntry& entry) {
                   return WithMatchEntry(kRegionFile, all, entry);
               });
           });
}

bool WriteCountries(DestinationEdit& edit, std::span<const CountryEntry> entries) {
    return entries.empty() ||
           ChangeCountries(edit, [&](std::string_view text) { return WithEntries(text, entries, WithCountry); });
}

bool WriteAreas(DestinationEdit& edit, std::string_view diallingCode, std::span<const AreaEntry> entries) {
    return entries.empty() || ChangeAreas(edit, diallingCode, [&](std::string_view text) {
               return WithEntries(text, entries, [](std::string_view all, const AreaEntry& entry) {
                   return WithMatchEntry(kAreaFile, all, entry);
               });
           });
}

bool DeleteRegion(DestinationEdit& edit, std::string_view identifier) {
    return ChangeRegions(edit, [&](std::string_view text) { return WithoutEntry(kRegionFile, text, identifier); });
}

bool DeleteCountry(DestinationEdit& edit, std::string_view identifier) {
    return ChangeCountries(edit, [&](std::string_view text) { return WithoutEntry(kCountryFile, text, identifier); });
}

bool DeleteArea(DestinationEdit& edit, std::string_view diallingCode, std::string_view identifier) {
    return ChangeAreas(edit, diallingCode,
                       [&](std::string_view text) { return WithoutEntry(kAreaFile, text, identifier); });
}

bool DeleteSynonym(DestinationEdit& edit, std::string_view name) {
    return ChangeCountries(
        edit, [&](std::string_view text) { return OrNotFound(WithoutSynonym(text, name), "other name", name); });
}

bool CommitDestinationEdit(DestinationEdit& edit) {
    std::list<FileGate> gates;
    for (const WorkingCopy& copy : edit.Copies) {
        if (!GetIn(copy, gates)) return false;
    }
    while (!edit.Copies.empty()) {
        WorkingCopy& copy = edit.Copies.front();
        if (!PutNewTextInPlace(FileOf(copy))) {
            copy.IsOnlyText = IsMissing(LivePath(copy));
            return false;
        }
        Startup().SettingsChanged = true;
        edit.Copies.erase(edit.Copies.begin());
    }
    edit = {};
    return true;
}

bool AbandonDestinationEdit(DestinationEdit& edit) {
    if (edit.Changed && !AskWarning(kLoseChanges)) return false;
    DropDestinationEdit(edit);
    return true;
}

void DropDestinationEdit(DestinationEdit& edit) {
    for (const WorkingCopy& copy : edit.Copies) {
        if (!copy.IsOnlyText) Files().Delete(NewPath(copy));
    }
    edit = {};
}

} // namespace bv
