#include "ctlfile/reader.h"

#include <algorithm>
#include <array>

#include "ctlfile/lines.h"
#include "platform/ascii.h"

namespace bv {
namespace {

constexpr std::array<std::string_view, 6> kTrueWords = {"", "Y", "YES", "TRUE", "ON", "1"};
constexpr std::array<std::string_view, 5> kFalseWords = {"N", "NO", "FALSE", "OFF", "0"};

void StoreLine(ControlLine& line, std::string_view rawLine) {
    const std::string_view part = CountingPart(rawLine);
    if (FindControl(part, 0) == part.size()) {
        line.Assign(part);
    } else {
        line.Assign(CleanLine(part));
    }
}

bool FailSearch(ControlStream& stream, Position from, ControlLine& line) {
    stream.Seek(from);
    line.Clear();
    return false;
}

// Restores the position of a stream unless the reading succeeded.
class Attempt {
  public:
    explicit Attempt(ControlStream& stream) : stream_(stream), from_(stream.Tell()) {}
    ~Attempt() {
        if (!succeeded_) stream_.Seek(from_);
    }
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    bool Succeed() { return succeeded_ = true; }

  private:
    ControlStream& stream_;
    Position from_;
    bool succeeded_ = false;
};

// The value of a found line stored by the rule of its form; false when it counts as absent.
bool StoreString(const ControlLine& line, TextPlace place) {
    place.Assign(KeyValue(line).value_or(std::string_view()));
    return true;
}

bool StoreNumber(const ControlLine& line, std::uint16_t& place) {
    const std::optional<std::string_view> value = KeyValue(line);
    if (value) place = ParseNumber(*value);
    return value.has_value();
}

bool StoreBool(const ControlLine& line, bool& place) {
    const std::optional<bool> value = ParseBool(KeyValue(line).value_or(std::string_view()));
    if (value) place = *value;
    return value.has_value();
}

template <class Place>
bool GetKey(ControlStream& stream, std::string_view key, Place place, Position start,
            bool (*store)(const ControlLine&, Place)) {
    ControlLine line;
    return FindKeyLine(stream, key, line, start) && store(line, place);
}

template <class Place>
bool ReadKey(ControlStream& stream, std::optional<std::string_view> key, Place place, Position start,
             bool (*store)(const ControlLine&, Place)) {
    Attempt attempt(stream);
    ControlLine line;
    if (!FindKeyLine(stream, std::nullopt, line, start)) return false;
    if (key && !BeginsWith(line, *key)) return false;
    return store(line, place) && attempt.Succeed();
}

constexpr bool EndsToken(char c) { return IsBlank(c) || c == ','; }
constexpr bool PartsList(char c) { return EndsToken(c) || c == ':' || c == '='; }

} // namespace

bool ReadControlLine(ControlStream& stream, ControlLine& line, Position* lineStart) {
    if (lineStart != nullptr) *lineStart = stream.Tell();
    const std::string_view raw = stream.NextRawLine();
    StoreLine(line, raw);
    return !raw.empty();
}

bool IsParagraphLine(std::string_view line) { return line.starts_with('['); }

bool IsSignificantLine(std::string_view line) {
    return !line.empty() && Cleaned(line.front()) != ' ' && line.front() != ';';
}

bool FindParagraph(ControlStream& stream, std::optional<std::string_view> header, ControlLine& line,
                   Position* bodyStart) {
    const Position from = stream.Tell();
    while (stream.SkipToLine('[')) {
        const std::string_view raw = stream.NextRawLine();
        if (header && !BeginsWith(CountingPart(raw), *header)) continue;
        StoreLine(line, raw);
        if (bodyStart != nullptr) *bodyStart = stream.Tell();
        return true;
    }
    return FailSearch(stream, from, line);
}

bool FindKeyLine(ControlStream& stream, std::optional<std::string_view> key, ControlLine& line, Position start,
                 Position* lineStart, char stop) {
    const Position from = start != 0 ? start : stream.Tell();
    if (!stream.Seek(from)) return FailSearch(stream, stream.Tell(), line);
    for (;;) {
        const Position at = stream.Tell();
        const std::string_view raw = stream.NextRawLine();
        if (raw.empty() || IsParagraphLine(raw)) return FailSearch(stream, from, line);
        if (stop != '\0' && raw.front() == stop) return FailSearch(stream, from, line);
        if (!IsSignificantLine(raw)) continue;
        if (key && !BeginsWith(CountingPart(raw), *key)) continue;
        StoreLine(line, raw);
        if (lineStart != nullptr) *lineStart = at;
        return true;
    }
}

std::optional<std::string_view> KeyValue(std::string_view line) {
    const auto separator = std::ranges::find_if(line, [](char c) { return c == ':' || c == '='; });
    if (separator == line.end()) return {};
    const std::string_view value = SkipBlanks(line.substr(static_cast<std::size_t>(separator - line.begin()) + 1));
    if (value.empty()) return {};
    return value;
}

bool GetKeyString(ControlStream& stream, std::string_view key, TextPlace place, Position start) {
    return GetKey<TextPlace>(stream, key, place, start, StoreString);
}

bool GetKeyNumber(ControlStream& stream, std::string_view key, std::uint16_t& place, Position start) {
    return GetKey<std::uint16_t&>(stream, key, place, start, StoreNumber);
}

bool GetKeyBool(ControlStream& stream, std::string_view key, bool& place, Position start) {
    return GetKey<bool&>(stream, key, place, start, StoreBool);
}

bool ReadKeyString(ControlStream& stream, std::optional<std::string_view> key, TextPlace place, Position start) {
    return ReadKey<TextPlace>(stream, key, place, start, StoreString);
}

bool ReadKeyNumber(ControlStream& stream, std::optional<std::string_view> key, std::uint16_t& place, Position start) {
    return ReadKey<std::uint16_t&>(stream, key, place, start, StoreNumber);
}

bool ReadKeyBool(ControlStream& stream, std::optional<std::string_view> key, bool& place, Position start) {
    return ReadKey<bool&>(stream, key, place, start, StoreBool);
}

std::uint16_t ParseNumber(std::string_view text) {
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::uint32_t number = 0; // only the low 16 bits count, so overflow does no harm
    for (std::size_t i = 0; i < text.size() && IsDigit(text[i]); ++i)
        number = number * 10 + static_cast<std::uint32_t>(text[i] - '0');
    return static_cast<std::uint16_t>(negative ? 0 - number : number);
}

std::optional<bool> ParseBool(std::string_view text) {
    const auto equalsText = [text](std::string_view word) { return EqualFolded(word, text); };
    if (std::ranges::any_of(kTrueWords, equalsText)) return true;
    if (std::ranges::any_of(kFalseWords, equalsText)) return false;
    return {};
}

QuotedToken ParseQuotedToken(std::optional<std::string_view> text) {
    if (!text) return {};
    std::size_t length = 0;
    if (text->starts_with('"')) {
        const std::size_t close = text->find('"', 1);
        length = close == std::string_view::npos ? text->size() : close + 1;
    } else {
        while (length < text->size() && !EndsToken((*text)[length])) ++length;
    }
    std::size_t next = length;
    while (next < text->size() && EndsToken((*text)[next])) ++next;
    QuotedToken result{text->substr(0, length), {}};
    if (next < text->size()) result.Rest = text->substr(next);
    return result;
}

std::optional<std::string_view> NextListToken(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && !PartsList(text[at])) ++at;
    while (at < text.size() && PartsList(text[at])) ++at;
    if (at == text.size()) return {};
    std::size_t end = at;
    while (end < text.size() && !EndsToken(text[end])) ++end;
    return text.substr(at, end - at);
}

std::string_view StripQuotes(std::string_view token) {
    if (token.starts_with('"')) token.remove_prefix(1);
    if (token.ends_with('"')) token.remove_suffix(1);
    return token;
}

std::size_t RemoveSpaces(std::string& text) {
    std::erase(text, ' ');
    return text.size();
}

} // namespace bv
