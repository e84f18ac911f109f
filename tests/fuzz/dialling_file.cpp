// DIALLING.INI, whatever its bytes: what it selects, and that a writing changes one location and no other.
// Parameters: the location to write | its area code.
#include "dialling/dialling_file.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\DIALLING.INI";

std::string Shown(const DialProperties& properties) {
    std::string text = std::to_string(properties.Mode) + "|" + properties.Description.String();
    for (const DialKey& key : DialKeys()) text += "|" + key.Text(properties);
    for (const DialListKey& key : kDialListKeys) {
        text += "|";
        for (const DialPrefix& prefix : properties.*key.List) text += prefix.String() + ",";
    }
    return text;
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

// The country, area and lists of the location that the file selects, or why there is none.
std::string Selected(std::string_view text) {
    const auto header = model::FindParagraph(text, 0, "[DIALPROPERTIES]");
    const auto selection = header ? model::FindKeyLine(text, header->Next, "Location:") : std::nullopt;
    if (!selection) return "-4059";
    const std::string name = model::Value(selection->Text).substr(0, 100);
    if (model::Compare(name, "TAPI") == 0) return "0 TAPI";
    if (model::Compare(name, "NoTelNumEdit") == 0) return "-3980";
    for (auto at = model::FindParagraph(text, selection->Next, "[LOCATION]"); at;
         at = model::FindParagraph(text, at->Next, "[LOCATION]")) {
        const auto description = model::FindKeyLine(text, at->Next, "Description:");
        if (!description || model::Value(description->Text).substr(0, 100) != name) continue;
        const auto value = [&](const char* key) {
            const auto line = model::FindKeyLine(text, at->Next, key);
            return line ? model::Value(line->Text).substr(0, 10) : std::string();
        };
        return "0 " + value("Country:") + "|" + value("Area:") + "|" + Entries(text, at->Next, "DialAsLocal:") + "|" +
               Entries(text, at->Next, "DialAsNatl:");
    }
    return "-4059";
}

std::string Read() {
    const StatusCode status = ReadDiallingProperties(kPath);
    const DialProperties& own = GetDialProperties();
    if (status != 0) return std::to_string(status);
    if (own.Mode == 3) return "0 TAPI";
    std::string text = "0 " + own.Country.String() + "|" + own.Area.String();
    for (const DialListKey& key : kDialListKeys) {
        text += "|";
        for (const DialPrefix& prefix : own.*key.List) text += prefix.String() + ",";
    }
    return text;
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
    }
    Require(WriteDiallingProperties(properties), "WriteDiallingProperties again");
    RequireEqual(server.Get(kPath), written, "the file written again");
    for (const std::string& said : server.Front.TakeSaid()) Require(said.starts_with("status 1: "), said.c_str());
}

} // namespace bv::fuzz
