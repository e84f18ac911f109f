// LCRRULES.INI, whatever its bytes: what is read and written back, once and again, is what the model makes of it.
#include <algorithm>
#include <map>
#include <span>

#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "lcr/rule_file.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

constexpr const char* kPath = "F:\\BRIVANE\\B-DB\\LCRRules.ini";
constexpr const char* kPlaces[] = {"Region:", "Country:", "Area:"};
constexpr const char* kLists[] = {"Region:", "Country:", "Area:", "User:", "Server:", "Priority:"};
constexpr const char* kTexts[] = {"Description:", "Size:", "Time:"};

using Lines = std::vector<std::string>;

bool IsAmong(const std::string& key, const auto& keys) { return std::ranges::find(keys, key) != std::end(keys); }

// The first key of the line that counts: one of the block or one that was not there before; empty for none.
std::string CountingKey(const std::string& line, const std::string& block, const std::map<std::string, Lines>& values) {
    for (const auto& keys : {std::span<const char* const>(kLists), std::span<const char* const>(kTexts)})
        for (const std::string key : keys)
            if (model::Begins(line, key) && (key == block || !values.contains(key))) return key;
    return "";
}

// The paragraph whose body begins there, written anew.
std::string Rewritten(const Lines& lines, std::size_t at) {
    std::map<std::string, Lines> values;
    std::string block, places, others;
    for (; at < lines.size() && !lines[at].empty() && !model::IsParagraph(lines[at]); ++at) {
        const std::string& line = lines[at];
        const bool counts = model::IsSignificant(line);
        const std::string found = counts ? CountingKey(line, block, values) : "";
        if (counts) block = IsAmong(found, kLists) ? found : "";
        if (found.empty()) others += line + "\r\n";
        if (found.empty()) continue;
        if (IsAmong(found, kPlaces))
            places += (values.contains(found) ? found + " " + model::Value(line) : line) + "\r\n";
        values[found].push_back(model::Value(line));
    }
    const auto text = [&](const char* key) { return values.contains(key) ? values[key][0].substr(0, 99) : ""; };
    const bool isUnnamed = values.contains("Description:") && text("Description:").empty();
    std::string out = "[RULE]\r\nDescription: " + (isUnnamed ? "(no description)" : text("Description:")) + "\r\n";
    out += places;
    for (const std::string& user : values["User:"]) out += "User: " + user + "\r\n";
    for (const std::string key : {"Size:", "Time:"})
        if (!text(key.c_str()).empty()) out += key + " " + text(key.c_str()) + "\r\n";
    Lines priorities;
    for (const std::string word : {"NORMAL", "URGENT", "BACKGROUND"})
        if (std::ranges::any_of(values["Priority:"],
                                [&](const auto& value) { return model::Compare(value, word) == 0; }))
            priorities.push_back("Priority: " + word + "\r\n");
    for (const std::string& priority : priorities) out += priorities.size() < 3 ? priority : "";
    out += others;
    for (const std::string& server : values["Server:"]) out += server == "*" ? "" : "Server: " + server + "\r\n";
    return out + (IsAmong("*", values["Server:"]) ? "Server: *\r\n\r\n" : "\r\n");
}

std::string Rewritten(std::string_view text) {
    const Lines lines = model::ReadLines(text);
    std::string out = "[BRIVANE]\r\nType: LCRRules\r\nRevision: A\r\n\r\n";
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (model::Begins(lines[i], "[RULE]")) out += Rewritten(lines, i + 1);
    return out;
}

} // namespace

void TryInput(std::string_view bytes) {
    test::MemoryServer server;
    server.Load();
    server.Put(kPath, bytes);
    for (int round = 0; round < 2; ++round) {
        const std::string expected = Rewritten(server.Get(kPath));
        const auto opened = OpenRules();
        Require(opened && SaveRules(opened->Rules, opened->Stamp), "rules are read and written");
        RequireEqual(server.Get(kPath), expected, "the rules written back");
        Require(round == 0 || server.Front.TakeSaid().empty(), "a written file has no other text");
        server.Front.TakeSaid();
    }
}

} // namespace bv::fuzz
