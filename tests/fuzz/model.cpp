#include "fuzz/model.h"

#include <cctype>

namespace bv::fuzz::model {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The program never leaves the locale "C", so only ASCII letters have a case.
int Fold(char c) { return std::tolower(static_cast<unsigned char>(c)); }

std::string Fold(const std::string& text) {
    std::string folded;
    for (const char c : text) folded += static_cast<char>(Fold(c));
    return folded;
}

bool IsOneOf(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }

} // namespace

std::optional<Line> ReadLine(std::string_view text, std::size_t at) {
    if (at >= text.size()) return {};
    Line line{at, at, {}};
    bool ended = false;
    while (!ended && line.Next < text.size()) {
        const char c = text[line.Next++];
        ended = c == '\n';
        const bool control = static_cast<unsigned char>(c) < 32 || c == 127;
        if (line.Text.size() < 280) line.Text += control ? ' ' : c;
    }
    while (!line.Text.empty() && line.Text.back() == ' ') line.Text.pop_back();
    return line;
}

std::vector<std::string> ReadLines(std::string_view text) {
    std::vector<std::string> lines;
    for (auto line = ReadLine(text, 0); line; line = ReadLine(text, line->Next)) lines.push_back(line->Text);
    return lines;
}

std::string Clean(std::string_view text) {
    const std::optional<Line> line = ReadLine(text, 0);
    return line ? line->Text : std::string();
}

bool Begins(const std::string& line, const std::string& key) {
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (i == line.size() || Fold(line[i]) != Fold(key[i])) return false;
    }
    return true;
}

bool IsParagraph(const std::string& line) { return !line.empty() && line[0] == '['; }

bool IsSignificant(const std::string& line) { return !line.empty() && line[0] != ' ' && line[0] != ';'; }

std::optional<Line> FindParagraph(std::string_view text, std::size_t at, const std::string& header) {
    for (auto line = ReadLine(text, at); line; line = ReadLine(text, line->Next)) {
        if (IsParagraph(line->Text) && Begins(line->Text, header)) return line;
    }
    return {};
}

std::optional<Line> FindKeyLine(std::string_view text, std::size_t at, const std::string& key, char stop) {
    for (auto line = ReadLine(text, at); line && !IsParagraph(line->Text); line = ReadLine(text, line->Next)) {
        if (stop != '\0' && !line->Text.empty() && line->Text[0] == stop) return {};
        if (IsSignificant(line->Text) && Begins(line->Text, key)) return line;
    }
    return {};
}

std::string Value(const std::string& line) {
    std::size_t at = 0;
    while (at < line.size() && line[at] != ':' && line[at] != '=') ++at;
    if (at < line.size()) ++at;
    while (at < line.size() && IsOneOf(line[at], kBlanks)) ++at;
    return line.substr(at);
}

std::string KeyedLine(const std::string& key, const std::string& value) {
    return value.empty() ? key : key + " " + value;
}

int Compare(const std::string& first, const std::string& second) { return Fold(first).compare(Fold(second)); }

} // namespace bv::fuzz::model
