#include "covlet/catalogue.h"

#include <algorithm>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ctlfile/lines.h"
#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "platform/ascii.h"
#include "platform/file_names.h"
#include "platform/files.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kParagraph = "[DIRECTORY]";
constexpr std::string_view kFileKey = "File:";
constexpr std::size_t kAddedNameLength = 8;
constexpr OpenTimeout kTimeout{10};

// What the kinds differ in.
struct KindFacts {
    std::string_view Directory; // below the system area
    MessageId<0> Word;
    MessageId<0> NoName;
    MessageId<2> NoFiles;
    std::span<const std::string_view> Extensions; // of the files that make an item
    std::string_view InstallablePattern;
    std::span<const std::string_view> InstallableExtensions;
};

constexpr std::string_view kCoversheetFiles[] = {".EPN", ".G3N", ".G3F"};
constexpr std::string_view kEditorFiles[] = {".EPN"};
constexpr std::string_view kLetterheadFiles[] = {".G3N", ".G3F"};

constexpr KindFacts kCoversheets = {"B-COVER\\",      kCoversheetWord, kSpecifyCoversheet, kNoCoversheetFiles,
                                    kCoversheetFiles, "*.EPN",         kEditorFiles};
constexpr KindFacts kLetterheads = {"B-LETTER\\",     kLetterheadWord, kSpecifyLetterhead, kNoLetterheadFiles,
                                    kLetterheadFiles, "*.G3?",         kLetterheadFiles};

const KindFacts& FactsOf(ItemKind kind) { return kind == ItemKind::Coversheet ? kCoversheets : kLetterheads; }

std::string CataloguePath(ItemKind kind) { return ItemDirectory(kind).append(kDirectoryFile); }

// The item's name on a line: the first word of its value; empty when there is none.
std::string_view NameOn(std::string_view line) { return ParseQuotedToken(KeyValue(line)).Token.value_or(""); }

// An entry as a catalogue has it, whatever the lengths.
struct StoredEntry {
    std::string Name;
    std::optional<std::string> Description;
};

// The entries from the stream's start; nothing, after a message, when they cannot be read to the end.
std::optional<std::vector<StoredEntry>> ReadEntries(ControlStream catalogue) {
    std::vector<StoredEntry> entries;
    ControlLine line;
    const bool found = FindParagraph(catalogue, kParagraph, line);
    while (found && FindKeyLine(catalogue, kFileKey, line)) {
        const QuotedToken name = ParseQuotedToken(KeyValue(line));
        if (!name.Token) continue;
        StoredEntry& entry = entries.emplace_back(StoredEntry{std::string(*name.Token), {}});
        if (const auto description = ParseQuotedToken(name.Rest).Token) entry.Description = StripQuotes(*description);
    }
    if (!WasRead(catalogue)) return {};
    return entries;
}

// The same; no entries without a catalogue.
std::optional<std::vector<StoredEntry>> ReadEntries(ItemKind kind) {
    std::optional<ControlStream> catalogue = OpenIfThere(CataloguePath(kind), kTimeout);
    if (!catalogue) return {};
    if (!*catalogue) return std::vector<StoredEntry>();
    return ReadEntries(*std::move(catalogue));
}

bool Contains(const std::vector<StoredEntry>& entries, std::string_view name) {
    return std::ranges::any_of(entries, [name](const StoredEntry& entry) { return EqualFolded(entry.Name, name); });
}

std::string EntryLine(std::string_view name, std::string_view description) {
    return FormatText("File: %s \"%s\"", name, ItemDescription(description));
}

bool IsEmptyLine(std::string_view rawLine) { return rawLine.find_first_not_of(kLineEnd) == std::string_view::npos; }

// Adds the line cleaned, so that no control character in a name or description can break it.
void AppendLine(std::string& text, std::string_view line) { text.append(CleanLine(line)).append(kLineEnd); }

void EndLastLine(std::string& text) {
    if (!text.empty() && !text.ends_with('\n')) text += kLineEnd;
}

// Moves the lines up to and including the paragraph's header; adds the header when it is missing.
void CopyThroughHeader(std::string_view& text, std::string& copy) {
    bool lastWasEmpty = true;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        copy += line;
        if (BeginsWith(line, kParagraph)) return;
        lastWasEmpty = IsEmptyLine(line);
    }
    EndLastLine(copy);
    if (!lastWasEmpty) copy += kLineEnd;
    copy.append(kParagraph).append(kLineEnd);
}

// The catalogue with a new entry before the first line whose name is greater, else at its end, and otherwise byte for
// byte as it was, without the empty lines below the header.
std::string WithNewEntry(std::string_view text, std::string_view name, std::string_view description) {
    // The format has eight columns for the name; a longer one is cut on purpose.
    const FixedText<kAddedNameLength> shortName(name);
    const std::string newLine = EntryLine(FormatText("%-8s", shortName), description);
    std::string changed;
    changed.reserve(text.size() + newLine.size() + kParagraph.size() + 3 * kLineEnd.size());
    CopyThroughHeader(text, changed);
    bool inserted = false;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (IsEmptyLine(line)) continue;
        if (!inserted && !line.starts_with(';') && CompareFolded(shortName, NameOn(line)) < 0) {
            AppendLine(changed, newLine);
            inserted = true;
        }
        changed += line;
    }
    if (!inserted) {
        EndLastLine(changed);
        AppendLine(changed, newLine);
    }
    return changed;
}

bool IsEntryOf(std::string_view rawLine, std::string_view name) {
    return BeginsWith(rawLine, kFileKey) && EqualFolded(NameOn(CleanLine(rawLine)), name);
}

// The catalogue with the lines of an entry replaced, or removed without a new line, and every line cleaned; none when
// it has no such entry.
std::optional<std::string> WithChangedEntry(std::string_view text, std::string_view name,
                                            std::optional<std::string_view> newLine) {
    std::string changed;
    bool inParagraph = false;
    bool isThere = false;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (IsParagraphLine(line)) inParagraph = EqualFolded(CleanLine(line), kParagraph);
        const bool isIts = inParagraph && IsEntryOf(line, name);
        isThere = isThere || isIts;
        if (!isIts) {
            AppendLine(changed, line);
        } else if (newLine) {
            AppendLine(changed, *newLine);
        }
    }
    return isThere ? std::optional(std::move(changed)) : std::nullopt;
}

bool RewriteEntry(ItemKind kind, std::string_view name, std::optional<std::string_view> newLine) {
    Rewrite rewrite(CataloguePath(kind), kTimeout);
    if (!CheckOpened(rewrite)) return false;
    const std::optional<std::string> changed = WithChangedEntry(rewrite.Control.Rest(), name, newLine);
    if (!changed && !rewrite.Control.Failed()) {
        rewrite.Finish();
        ShowNotCatalogued(kind, name);
        return false;
    }
    return SaveRewrite(rewrite, [&] { return changed && ReplaceText(rewrite, *changed); });
}

} // namespace

std::string ItemDirectory(ItemKind kind) { return Paths().SystemArea.String().append(FactsOf(kind).Directory); }

std::string KindWord(ItemKind kind) { return FillMessage(FactsOf(kind).Word); }

std::optional<CatalogueEntries> ReadCatalogue(ItemKind kind) {
    ControlStream catalogue = OpenForReading(CataloguePath(kind), kTimeout);
    if (!catalogue) return {};
    const auto stored = ReadEntries(std::move(catalogue));
    if (!stored) return {};
    CatalogueEntries entries;
    for (const StoredEntry& entry : *stored) {
        if (entry.Name.size() > ItemName::kLimit || !entry.Description) continue;
        entries.push_back({entry.Name, *entry.Description});
    }
    return entries;
}

std::optional<CatalogueEntries> ListCatalogue(ItemKind kind, ListTarget& list) {
    list.Clear();
    std::optional<CatalogueEntries> entries = ReadCatalogue(kind);
    for (const auto& [name, description] : entries.value_or(CatalogueEntries()))
        list.Add(name.String().append("\t").append(description));
    return entries;
}

std::optional<std::vector<std::string>> FindInstallable(ItemKind kind) {
    const KindFacts& facts = FactsOf(kind);
    const auto entries = ReadEntries(kind);
    if (!entries) return {};
    std::unordered_set<std::string> known;
    for (const StoredEntry& entry : *entries) known.insert(UpperText(entry.Name));
    std::vector<std::string> files;
    const std::string directory = ItemDirectory(kind);
    const platform::FileError error = platform::Files().ReadDirectory(directory, facts.InstallablePattern, files);
    if (error != platform::FileError::None && error != platform::FileError::NotFound) {
        ShowError(kDirectoryUnreadable, directory, platform::ErrorWords(error));
        return {};
    }
    std::vector<std::string> names;
    for (const std::string& file : files) {
        const std::size_t dot = file.rfind('.');
        if (dot == std::string::npos) continue;
        const std::string extension = UpperText(std::string_view(file).substr(dot));
        if (std::ranges::find(facts.InstallableExtensions, extension) == facts.InstallableExtensions.end()) continue;
        const std::string name = file.substr(0, dot);
        if (!FaultOfItemName(name) && known.insert(UpperText(name)).second) names.push_back(name);
    }
    return names;
}

bool ListInstallable(ItemKind kind, ListTarget& list) {
    const auto names = FindInstallable(kind);
    if (!names) return false;
    for (const std::string& name : *names)
        if (!list.Contains(name)) list.Add(name);
    return true;
}

std::optional<CatalogueEntry> FindCatalogued(ItemKind kind, std::string_view name) {
    const std::optional<CatalogueEntries> entries = ReadCatalogue(kind);
    if (!entries) return {};
    const auto isNamed = [name](const CatalogueEntry& entry) { return EqualFolded(entry.Name, name); };
    const auto found = std::ranges::find_if(*entries, isNamed);
    if (found != entries->end()) return *found;
    ShowNotCatalogued(kind, name);
    return {};
}

bool IsCatalogued(ItemKind kind, std::string_view name) {
    const auto entries = ReadEntries(kind);
    return entries && Contains(*entries, name);
}

bool GetDescription(ItemKind kind, std::string_view name, ItemDescription& description) {
    const auto entries = ReadEntries(kind);
    if (!entries) return false;
    const auto found =
        std::ranges::find_if(*entries, [name](const auto& entry) { return EqualFolded(entry.Name, name); });
    if (found == entries->end()) return false;
    description = found->Description.value_or("");
    return true;
}

bool CheckItemFiles(ItemKind kind, std::string_view name) {
    const KindFacts& facts = FactsOf(kind);
    const std::string directory = ItemDirectory(kind);
    const std::string path = directory + std::string(name);
    const auto exists = [&path](std::string_view extension) { return FileExists(path + std::string(extension)); };
    if (std::ranges::any_of(facts.Extensions, exists)) return true;
    ShowError(facts.NoFiles, name, directory);
    return false;
}

bool CheckNotInstalled(ItemKind kind, std::string_view name) {
    const auto entries = ReadEntries(kind);
    if (!entries) return false;
    if (!Contains(*entries, name)) return true;
    ShowError(kAlreadyInstalled, name);
    return false;
}

bool CheckItemName(ItemKind kind, std::string_view name) {
    const std::string_view fault = platform::FaultOfFileName(name);
    if (fault.empty()) return true;
    ShowError(kNotAFileName, name, KindWord(kind), fault);
    return false;
}

std::optional<std::string> FaultOfItemName(std::string_view name) {
    const std::string_view fileFault = platform::FaultOfFileName(name);
    const std::pair<bool, std::string_view> faults[] = {
        {name.find_first_of("\\/:") != std::string_view::npos,
         "a name is that of a file in the directory, without its path"},
        {std::ranges::any_of(name, IsControl) || name.find_first_of(" ,\"") != std::string_view::npos,
         "the catalogue keeps no name with a blank, a comma or a quote"},
        {name.size() > kAddedNameLength, "the catalogue keeps names of at most 8 characters"},
        {!fileFault.empty(), fileFault},
    };
    for (const auto& [isFault, reason] : faults)
        if (isFault) return FormatText("Name: \"%s\" - %s.", CleanLine(name), reason);
    return {};
}

bool CheckNewItem(ItemKind kind, ItemName& name) {
    name = UpperText(name);
    if (name.IsEmpty()) {
        ShowError(FactsOf(kind).NoName);
        return false;
    }
    if (const auto fault = FaultOfItemName(name)) {
        ShowError("%s", *fault);
        return false;
    }
    return CheckItemFiles(kind, name) && CheckNotInstalled(kind, name);
}

bool CheckDescription(std::string_view description) {
    if (description.size() > ItemDescription::kLimit) {
        ShowError(kDescriptionTooLong, ItemDescription::kLimit);
        return false;
    }
    if (description.find('"') == std::string_view::npos) return true;
    ShowError(kDescriptionHasQuote);
    return false;
}

bool AddCatalogueEntry(ItemKind kind, std::string_view name, std::string_view description) {
    Rewrite rewrite(CataloguePath(kind));
    if (rewrite.Fault() == Rewrite::Problem::Temporary) {
        ShowError(kNoTemporaryCatalogue);
        return false;
    }
    if (!CheckOpened(rewrite)) return false;
    if (ReplaceText(rewrite, WithNewEntry(rewrite.Control.Rest(), name, description)) && rewrite.Finish()) return true;
    ShowError(kCatalogueNotReplaced);
    return false;
}

void ShowNotCatalogued(ItemKind kind, std::string_view name) { ShowError(kNotInCatalogue, KindWord(kind), name); }

bool ChangeCatalogueEntry(ItemKind kind, std::string_view name, std::string_view description) {
    return RewriteEntry(kind, name, EntryLine(name, description));
}

bool DeleteCatalogueEntry(ItemKind kind, std::string_view name) { return RewriteEntry(kind, name, std::nullopt); }

} // namespace bv
