#include "console/output.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "console/table.h"

namespace bv::console {
namespace {

struct ToText {
    std::string operator()(std::monostate) const { return "(none)"; }
    std::string operator()(bool flag) const { return flag ? "YES" : "NO"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(const std::string& text) const { return text; }
};

struct ToJson {
    const Session& Run;
    nlohmann::ordered_json operator()(std::monostate) const { return nullptr; }
    nlohmann::ordered_json operator()(bool flag) const { return flag; }
    nlohmann::ordered_json operator()(std::int64_t number) const { return number; }
    nlohmann::ordered_json operator()(const std::string& text) const { return Run.Streams.Utf8Text(text); }
};

nlohmann::ordered_json JsonObject(const Session& session, const Record& record) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const auto& [name, value] : record) {
        object[session.Streams.Utf8Text(name)] = std::visit(ToJson{session}, value);
    }
    return object;
}

nlohmann::ordered_json JsonArray(const Session& session, const std::vector<Record>& records) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Record& record : records) list.push_back(JsonObject(session, record));
    return list;
}

TableRow NamesOf(const Record& record) {
    TableRow names;
    for (const auto& [name, value] : record) names.push_back(name);
    return names;
}

TableRow TextsOf(const Record& record) {
    TableRow texts;
    for (const auto& [name, value] : record) texts.push_back(std::visit(ToText{}, value));
    return texts;
}

// A list for a person. Records of another kind than those before begin a table of their own.
void PrintTables(const Session& session, const std::vector<Record>& records, std::size_t width) {
    for (auto first = records.begin(); first != records.end();) {
        const TableRow names = NamesOf(*first);
        const auto isOther = [&](const Record& record) { return NamesOf(record) != names; };
        const auto end = std::find_if(first, records.end(), isOther);
        Table table(names, [&](std::string_view text) { return session.Streams.WidthOf(text); });
        for (auto record = first; record != end; ++record) table.Add(TextsOf(*record));
        table.Fit(width);
        if (first != records.begin()) session.Streams.PrintResult("\n");
        session.Streams.PrintResult(table.Header(), Look::Header);
        for (; first != end; ++first) session.Streams.PrintResult(table.Line(TextsOf(*first)));
    }
}

std::string TabbedLine(const TableRow& texts) {
    std::string line;
    for (const std::string& text : texts) line.append(line.empty() && &text == texts.data() ? "" : "\t").append(text);
    return line + '\n';
}

} // namespace

void PrintJson(const Session& session, const nlohmann::ordered_json& document) {
    std::string text;
    for (const char c : document.dump(2)) {
        if (c == '\x7F') // the one control character that may stand in a document as it is
            text += "\\u007f";
        else
            text += c;
    }
    session.Streams.PrintDocument(text + '\n');
}

void PrintRecord(const Session& session, const Record& record) {
    if (session.Json) return PrintJson(session, JsonObject(session, record));
    std::string text;
    for (const auto& [name, value] : record) {
        text += name;
        text += ": ";
        text += std::visit(ToText{}, value);
        text += '\n';
    }
    session.Streams.PrintResult(text);
}

void PrintFindings(const Session& session, const std::string& name, const std::vector<Record>& records,
                   const Record& result) {
    if (!session.Json) {
        PrintRecords(session, records);
        return PrintLines(session, {std::visit(ToText{}, result.back().second)});
    }
    nlohmann::ordered_json document = JsonObject(session, result);
    document[name] = JsonArray(session, records);
    PrintJson(session, document);
}

bool ArePlainLines(const Session& session) { return !session.Json && !session.Header && !session.Streams.Width(); }

void PrintRecords(const Session& session, const std::vector<Record>& records) {
    if (session.Json) return PrintJson(session, JsonArray(session, records));
    if (const auto width = session.Streams.Width()) return PrintTables(session, records, *width);
    TableRow names;
    for (const Record& record : records) {
        if (session.Header && NamesOf(record) != names) {
            names = NamesOf(record);
            session.Streams.PrintResult(TabbedLine(names));
        }
        session.Streams.PrintResult(TabbedLine(TextsOf(record)));
    }
}

void PrintLines(const Session& session, const std::vector<std::string>& lines) {
    if (!session.Json) {
        for (const std::string& line : lines) session.Streams.PrintResult(line + '\n');
        return;
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& line : lines) list.push_back(session.Streams.Utf8Text(line));
    PrintJson(session, list);
}

} // namespace bv::console
