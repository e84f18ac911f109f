// DIALLING.INI, whatever its bytes: what it selects, and that a writing changes one location and no other.
// Parameters: the location to write | its area code.
#include <algorithm>

#include "dialling/dialling_file.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\DIALLING.INI";

std::string Lists(const DialProperties& properties) {
    std::string text;
    for (const DialListKey& key : kDialListKeys) {
        text += "|";
        for (const DialPrefix& prefix : properties.*key.List) text += prefix.String() + ",";
    }
    return text;
}

// The record as one text.
std::string Shown(const DialProperties& properties) {
    std::string text = std::to_string(properties.Mode) + properties.Description.String();
    for (const DialKey& key : DialKeys()) text += "|" + key.Text(properties);
    return text + Lists(properties);
}

// The entries of a list in the paragraph whose body starts there.
std::string Entries(std::string_view text, std::size_t body, const std::string& key) {
    std::string entries;
    int count = 0;
    for (auto line = model::FindKeyLine(text, body, key); line && count < 31; ++count) {
        entries += model::Value(line->Text).substr(0, 10) + ",";
        line = model::ReadLine(text, line->Next);
        if (line && line->Text.compare(0, key.size(), key) != 0) line.reset();
    }
    return entries;
}

// What a reader takes, by the model, from the location whose paragraph's body starts there: its texts and lists.
std::string Taken(std::string_view text, std::size_t body) {
    std::string taken;
    for (const char* key : {"Country:", "Area:", "NatlAccess:", "IntlAccess:"}) {
        const auto line = model::FindKeyLine(text, body, key);
        taken += (line ? model::Value(line->Text).substr(0, 10) : "") + "|";
    }
    return taken + Entries(text, body, "DialAsLocal:") + "|" + Entries(text, body, "DialAsNatl:");
}

struct Location {
    std::string Name;
    std::string Taken;
    bool IsWhole; // its description comes first; of another a writing drops the lines before that
};

// The first location of each name from a place on.
std::vector<Location> Locations(std::string_view text, std::size_t from) {
    std::vector<Location> locations;
    for (auto at = model::FindParagraph(text, from, "[LOCATION]"); at;
         at = model::FindParagraph(text, at->Next, "[LOCATION]")) {
        const auto line = model::FindKeyLine(text, at->Next, "Description:");
        const std::string name = line ? model::Value(line->Text).substr(0, 100) : "";
        const auto isIt = [&name](const Location& location) { return location.Name == name; };
        if (line && std::ranges::none_of(locations, isIt))
            locations.push_back({name, Taken(text, at->Next), line->Start == at->Next});
    }
    return locations;
}

// What the file selects, or the status without it.
std::string Selected(std::string_view text) {
    const auto header = model::FindParagraph(text, 0, "[DIALPROPERTIES]");
    const auto selection = header ? model::FindKeyLine(text, header->Next, "Location:") : std::nullopt;
    if (!selection) return "-4059";
    const std::string name = model::Value(selection->Text).substr(0, 100);
    if (model::Compare(name, "TAPI") == 0) return "0 3";
    if (model::Compare(name, "NoTelNumEdit") == 0) return "-3980";
    for (const Location& location : Locations(text, selection->Next))
        if (location.Name == name) return "0 2" + name + "|" + location.Taken;
    return "-4059";
}

std::string Read() {
    const StatusCode status = ReadDiallingProperties(kPath);
    const DialProperties& own = GetDialProperties();
    if (status != 0 || own.Mode == 3) return std::to_string(status) + (own.Mode == 3 ? " 3" : "");
    std::string text = "0 2" + own.Description.String();
    for (const DialPrefix& value : {own.Country, own.Area, own.NatlAccess, own.IntlAccess})
        text += "|" + value.String();
    return text + Lists(own);
}

void RequireOthersKept(std::string_view before, std::string_view after, const std::string& written) {
    const auto from = [](std::string_view text) { return model::FindParagraph(text, 0, "[DIALPROPERTIES]")->Next; };
    const std::vector<Location> kept = Locations(after, from(after));
    for (const Location& location : Locations(before, from(before))) {
        const auto isIt = [&location](const Location& other) {
            return other.Name == location.Name && (!location.IsWhole || other.Taken == location.Taken);
        };
        Require(location.Name == written || std::ranges::any_of(kept, isIt), "another location");
    }
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    test::MemoryServer server;
    server.Load();
    server.Put(kPath, input.Text);
    RequireEqual(Read(), Selected(input.Text), "what is selected");

    DialProperties properties;
    SelectLocation(properties, model::Clean(input.Parameters[0]));
    if (properties.Mode == 2) {
        properties.Description = model::Clean(model::Value("x:" + properties.Description.String()));
        properties.Area =
            model::Clean(model::Value("x:" + model::Clean(input.Parameter(1).value_or(""))).substr(0, 10));
        properties.DialAsNatl.Add("9");
    }
    DialProperties same;
    SelectLocation(same, properties.Description);
    if (properties.Mode == 2 && same.Mode != 2) return; // a name that only its blanks have told from the words
    Require(WriteDiallingProperties(properties), "WriteDiallingProperties");
    const std::string written = server.Get(kPath);
    // Where a reader finds another header first than the one that the writer looks for, the texts go apart.
    const auto header = model::FindParagraph(input.Text, 0, "[DIALPROPERTIES]");
    if (!header || header->Text == "[DIALPROPERTIES]") {
        DialProperties back;
        const StatusCode status = ReadDialLocation(kPath, std::nullopt, back);
        Require(status == (properties.Mode == 1 ? -3980 : 0), "the written location");
        RequireEqual(Shown(back), Shown(properties), "the written location");
        if (header && properties.Mode == 2) RequireOthersKept(input.Text, written, properties.Description.String());
    }
    Require(WriteDiallingProperties(properties), "WriteDiallingProperties again");
    RequireEqual(server.Get(kPath), written, "the file written again");
    for (const std::string& said : server.Front.TakeSaid()) Require(said.starts_with("status 1: "), said.c_str());
}

} // namespace bv::fuzz
