#include "ctlfile/records.h"

#include <algorithm>
#include <cstring>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"

namespace bv {
namespace {

std::size_t CodeOf(char c) { return static_cast<unsigned char>(c); }

constexpr std::size_t kWord = 8;

std::uint64_t BitsOf(const char* characters) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, characters, kWord);
    return bits;
}

bool HasBlank(std::string_view text) { return std::ranges::any_of(text, IsBlank); }

} // namespace

bool RecordWalker::Word::Fits(const char* characters) const { return ((BitsOf(characters) ^ Bits) & Counts) == 0; }

RecordWalker::Word RecordWalker::WordOf(std::string_view text) {
    std::array<char, kWord> bits{};
    std::array<char, kWord> counts{};
    for (std::size_t i = 0; i < std::min(text.size(), kWord); ++i) {
        const char c = text[i];
        bits[i] = c;
        counts[i] = static_cast<char>(IsBlank(c) ? 0 : IsLetter(c) ? ~('a' ^ 'A') : 0xFF);
    }
    return {BitsOf(bits.data()), BitsOf(counts.data())};
}

RecordWalker::Key::Key(std::string_view text)
    : Text(text), ValueStart(text.find_first_of(":=") + 1), TailAt(std::max(text.size(), kWord) - kWord),
      WordsAreAll(text.size() <= 2 * kWord && !HasBlank(text)), // a control character counts as a blank
      Head(WordOf(text)), Tail(WordOf(text.substr(TailAt))) {}

bool RecordWalker::Key::Begins(std::string_view line) const {
    if (line.size() >= TailAt + kWord) {
        if (!Head.Fits(line.data())) return false;
        if (WordsAreAll) return Tail.Fits(line.data() + TailAt);
    }
    return BeginsWith(Text.ends_with(' ') ? CountingPart(line) : line, Text);
}

RecordWalker::RecordWalker(ControlStream& stream, std::string_view header, std::span<const std::string_view> keys)
    : stream_(stream), header_(header), keys_(keys.begin(), keys.end()), lines_(keys.size()), end_(stream.Tell()) {
    for (std::size_t i = keys_.size(); i-- > 0;) {
        const char initial = keys_[i].Text.front();
        keys_[i].Next = first_[CodeOf(initial)];
        first_[CodeOf(ToLower(initial))] = first_[CodeOf(ToUpper(initial))] = static_cast<std::uint8_t>(i + 1);
    }
}

bool RecordWalker::Next() {
    if (!stream_.Seek(end_) || !FindHeader()) return false;
    std::ranges::fill(lines_, Line());
    missing_ = keys_.size();
    while (missing_ != 0) {
        end_ = stream_.Tell();
        const std::string_view raw = stream_.NextRawLine();
        if (raw.empty() || IsParagraphLine(raw)) return true;
        Note(raw, end_);
    }
    stream_.SkipToLine('[');
    end_ = stream_.Tell();
    return true;
}

bool RecordWalker::FindHeader() {
    while (stream_.SkipToLine('[')) {
        start_ = stream_.Tell();
        const std::string_view raw = stream_.NextRawLine();
        bodyStart_ = stream_.Tell();
        if (header_.Begins(raw)) return true;
    }
    return false;
}

void RecordWalker::Note(std::string_view line, Position at) {
    for (std::size_t next = first_[CodeOf(line.front())]; next != 0;) {
        const Key& key = keys_[next - 1];
        Line& found = lines_[next - 1];
        next = key.Next;
        if (!key.Begins(line) || found.Size != 0) continue;
        found = {at, line.size()};
        --missing_;
    }
}

std::optional<std::string_view> RecordWalker::Value(std::size_t index) const {
    const Line& found = lines_[index];
    if (found.Size == 0) return {};
    const std::string_view line = CountingPart(stream_.Seen(found.At, found.Size));
    // The first separator of the line is the key's, so what follows that is the value.
    std::string_view value = line.substr(std::min(keys_[index].ValueStart, line.size()));
    while (!value.empty() && Cleaned(value.front()) == ' ') value.remove_prefix(1);
    if (FindControl(line, 0) == line.size()) return value;
    return cleaned_ = CleanLine(value);
}

bool RecordWalker::Get(std::size_t index, TextPlace place) const {
    const std::optional<std::string_view> value = Value(index);
    place.Assign(value.value_or(std::string_view()));
    return value.has_value();
}

} // namespace bv
