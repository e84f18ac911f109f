#include "console/output.h"

#include <cstddef>

#include <nlohmann/json.hpp>

#include "ctlfile/lines.h"
#include "shell/format.h"

namespace bv::console {
namespace {

// What windows-1252 has at 0x80 to 0x9F; elsewhere it is Latin-1. Its five gaps stand for themselves.
constexpr char16_t kCodePage1252[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// Whether the byte at `at` continues a character, and lies from `low` to `high`.
bool Continues(std::string_view text, std::size_t at, unsigned low = 0x80, unsigned high = 0xBF) {
    if (at >= text.size()) return false;
    const auto byte = static_cast<unsigned char>(text[at]);
    return byte >= low && byte <= high;
}

// The length of the UTF-8 character at the start of the text; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return Continues(text, 1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        // No overlong forms, no surrogates.
        const bool second = Continues(text, 1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return second && Continues(text, 2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool second = Continues(text, 1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
        return second && Continues(text, 2) && Continues(text, 3) ? 4 : 0;
    }
    return 0;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

void AppendUtf8(std::string& out, unsigned character) {
    if (character >= 0x800) {
        out += static_cast<char>(0xE0 | character >> 12);
        out += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    } else {
        out += static_cast<char>(0xC0 | character >> 6);
    }
    out += static_cast<char>(0x80 | (character & 0x3F));
}

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
        if (byte < 0x80)
            out += c;
        else
            AppendUtf8(out, byte < 0xA0 ? kCodePage1252[byte - 0x80] : byte);
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
