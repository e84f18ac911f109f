// The catalogue of coversheets, whatever its bytes: its list, and what adding, changing and deleting make of it.
// Parameters: name | description.
#include "covlet/catalogue.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr ItemKind kKind = ItemKind::Coversheet;
constexpr const char* kCatalogue = "F:\\BRIVANE\\B-COVER\\MSGDIR.CTL";
const std::string kHeader = "[DIRECTORY]";

using Entries = std::vector<std::string>;

test::MemoryServer& Server() {
    static test::MemoryServer server;
    static const bool loaded = [] {
        server.Load();
        return true;
    }();
    Require(loaded, "the server loads");
    return server;
}

Entries Listed() {
    test::VectorList list;
    Require(ListCatalogue(kKind, list).has_value(), "ListCatalogue");
    return list.Entries;
}

std::string NameOn(std::string_view line) { return model::FirstToken(model::Value(std::string(line))).Text; }

// The listed form of the line; none when it makes no entry.
std::optional<std::string> EntryOf(const std::string& line) {
    const std::string value = model::Value(line);
    const model::Token name = model::FirstToken(value);
    if (!name.Next || name.Text.size() > 12) return {};
    std::string description = model::FirstToken(value.substr(*name.Next)).Text;
    if (description.starts_with('"')) description.erase(0, 1);
    if (description.ends_with('"')) description.pop_back();
    return name.Text + "\t" + description.substr(0, 50);
}

Entries EntriesOf(std::string_view text) {
    Entries entries;
    const std::optional<model::Line> header = model::FindParagraph(text, 0, kHeader);
    if (!header) return entries;
    for (auto line = model::FindKeyLine(text, header->Next, "File:"); line;
         line = model::FindKeyLine(text, line->Next, "File:")) {
        if (const auto entry = EntryOf(line->Text)) entries.push_back(*entry);
    }
    return entries;
}

std::string NewLine(const std::string& name, std::string_view description) {
    return "File: " + name + " \"" + std::string(description.substr(0, 50)) + "\"";
}

bool IsEmptyLine(std::string_view line) { return line.find_first_not_of("\r\n") == std::string_view::npos; }

std::string WithAdded(std::string_view text, std::string_view name, std::string_view description) {
    const std::string shortName(name.substr(0, 8));
    std::string padded = shortName;
    padded.resize(8, ' ');
    const std::string added = model::Clean(NewLine(padded, description)) + "\r\n";

    std::string changed;
    bool below = false;
    bool inserted = false;
    bool lastWasEmpty = true;
    for (auto line = model::ReadLine(text, 0); line; line = model::ReadLine(text, line->Next)) {
        const std::string_view raw = text.substr(line->Start, line->Next - line->Start);
        lastWasEmpty = IsEmptyLine(raw);
        if (below && lastWasEmpty) continue;
        if (below && !inserted && raw[0] != ';' && model::Compare(shortName, NameOn(raw)) < 0) {
            changed += added;
            inserted = true;
        }
        changed += raw;
        below = below || model::Begins(line->Text, kHeader);
    }
    if (!changed.empty() && !changed.ends_with('\n') && !inserted) changed += "\r\n";
    if (!below) changed += (lastWasEmpty ? "" : "\r\n") + kHeader + "\r\n";
    return inserted ? changed : changed + added;
}

// Whether an entry of that name counts wherever it was put: the name is a word, and no paragraph follows the list.
bool IsSurelyListed(std::string_view text, const std::string& name) {
    const std::optional<model::Line> header = model::FindParagraph(text, 0, kHeader);
    const bool isWord = !name.empty() && name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
    return isWord && !model::FindParagraph(text, header->Next, "");
}

// Deleted without a new line.
std::string WithChanged(std::string_view text, const std::string& name, const std::optional<std::string>& newLine) {
    std::string changed;
    bool inDirectory = false;
    for (const std::string& line : model::ReadLines(text)) {
        if (model::IsParagraph(line)) inDirectory = model::Compare(line, kHeader) == 0;
        if (!inDirectory || !model::Begins(line, "File:") || model::Compare(NameOn(line), name) != 0) {
            changed += line + "\r\n";
        } else if (newLine) {
            changed += model::Clean(*newLine) + "\r\n";
        }
    }
    return changed;
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string name(input.Parameters[0]);
    const std::string_view description = input.Parameter(1).value_or("");
    test::MemoryServer& server = Server();
    server.Put(kCatalogue, input.Text);
    const Entries before = Listed();
    Require(before == EntriesOf(input.Text), "the list");

    Require(AddCatalogueEntry(kKind, name, description), "AddCatalogueEntry");
    const std::string added = server.Get(kCatalogue);
    RequireEqual(added, WithAdded(input.Text, name, description), "the catalogue with the new entry");
    const Entries after = Listed();
    Require(after == EntriesOf(added), "the list with the new entry");
    if (IsSurelyListed(added, name)) Require(after.size() == before.size() + 1, "the new entry is listed");

    if (!ChangeCatalogueEntry(kKind, name, description)) {
        Require(!IsSurelyListed(added, name), "ChangeCatalogueEntry");
        return RequireEqual(server.Get(kCatalogue), added, "the catalogue without the entry");
    }
    const std::string changed = server.Get(kCatalogue);
    RequireEqual(changed, WithChanged(added, name, NewLine(name, description)), "the changed catalogue");
    Require(DeleteCatalogueEntry(kKind, name), "DeleteCatalogueEntry");
    RequireEqual(server.Get(kCatalogue), WithChanged(changed, name, {}), "the catalogue without the entry");

    for (const std::string& said : server.Front.TakeSaid()) Require(said.starts_with("status 1: "), said.c_str());
}

} // namespace bv::fuzz
