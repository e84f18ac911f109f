#include "console/output.h"

#include <nlohmann/json.hpp>

#include "ctlfile/lines.h"
#include "ctlfile/utf8.h"
#include "platform/code_page.h"
#include "voice/format.h"

namespace bv::console {
namespace {

struct ToText {
    std::string operator()(std::monostate) const { return "(none)"; }
    std::string operator()(bool flag) const { return flag ? "YES" : "NO"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(const std::string& text) const { return text; }
};

struct ToJson {
    nlohmann::ordered_json operator()(std::monostate) const { return nullptr; }
    nlohmann::ordered_json operator()(bool flag) const { return flag; }
    nlohmann::ordered_json operator()(std::int64_t number) const { return number; }
    nlohmann::ordered_json operator()(const std::string& text) const { return Utf8Text(text); }
};

nlohmann::ordered_json JsonObject(const Record& record) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const auto& [name, value] : record) object[Utf8Text(name)] = std::visit(ToJson{}, value);
    return object;
}

std::string RecordLine(const Record& record) {
    std::string line;
    for (const auto& [name, value] : record) line += std::visit(ToText{}, value) + '\t';
    if (!line.empty()) line.back() = '\n';
    return line;
}

} // namespace

std::string PrintableText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isSeparator = c == '\t' || c == '\n' || text.substr(i, 2) == kLineEnd;
        if (isSeparator || !IsControl(c))
            out += c;
        else
            out += FormatText("\\x%02x", static_cast<int>(c));
    }
    return out;
}

std::string Utf8Text(std::string_view text) {
    if (IsUtf8(text)) return std::string(text);
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        AppendUtf8(out, byte >= 0x80 && byte < 0xA0 ? platform::kWindows1252.at(byte - 0x80U) : byte);
    }
    return out;
}

void PrintJson(const Session& session, const nlohmann::ordered_json& document) {
    std::string text;
    for (const char c : document.dump(2)) {
        if (c == '\x7F') // the one control character that may stand in a document as it is
            text += "\\u007f";
        else
            text += c;
    }
    session.Streams.PrintResult(text + '\n');
}

void PrintRecord(const Session& session, const Record& record) {
    if (session.Json) return PrintJson(session, JsonObject(record));
    std::string text;
    for (const auto& [name, value] : record) {
        text += name;
        text += ": ";
        text += std::visit(ToText{}, value);
        text += '\n';
    }
    session.Streams.PrintResult(text);
}

void PrintRecords(const Session& session, const std::vector<Record>& records) {
    if (!session.Json) {
        for (const Record& record : records) session.Streams.PrintResult(RecordLine(record));
        return;
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Record& record : records) list.push_back(JsonObject(record));
    PrintJson(session, list);
}

void PrintLines(const Session& session, const std::vector<std::string>& lines) {
    if (!session.Json) {
        for (const std::string& line : lines) session.Streams.PrintResult(line + '\n');
        return;
    }
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const std::string& line : lines) list.push_back(Utf8Text(line));
    PrintJson(session, list);
}

} // namespace bv::console
