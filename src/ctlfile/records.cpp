#include "ctlfile/records.h"

#include <algorithm>
#include <cstring>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"

namespace bv {
namespace {

std::size_t CodeOf(char c) { return static_cast<unsigned char>(c); }

constexpr std::size_t kHead = 8;

std::uint64_t HeadOf(std::string_view text) {
    std::uint64_t head = 0;
    std::memcpy(&head, text.data(), kHead);
    return head;
}

} // namespace

RecordWalker::Key::Key(std::string_view text) : Text(text), ValueStart(text.find_first_of(":=") + 1) {
    std::array<char, kHead> head{};
    std::array<char, kHead> counts{};
    for (std::size_t i = 0; i < std::min(text.size(), kHead); ++i) {
        const char c = text[i];
        head[i] = c;
        counts[i] = static_cast<char>(IsBlank(c) ? 0 : IsLetter(c) ? ~('a' ^ 'A') : 0xFF);
        if (IsBlank(c)) HeadIsAll = false; // a control character counts as one
    }
    Head = HeadOf({head.data(), kHead});
    Counts = HeadOf({counts.data(), kHead});
    HeadIsAll = HeadIsAll && text.size() <= kHead;
}

bool RecordWalker::Key::Begins(std::string_view line) const {
    if (line.size() >= kHead) {
        if (((HeadOf(line) ^ Head) & Counts) != 0) return false;
        if (HeadIsAll) return true;
    }
    return BeginsWith(Text.ends_with(' ') ? CountingPart(line) : line, Text);
}

RecordWalker::RecordWalker(ControlStream& stream, std::string_view header, std::span<const std::string_view> keys)
    : stream_(stream), header_(header), keys_(keys.begin(), keys.end()), end_(stream.Tell()) {
    for (std::size_t i = keys_.size(); i-- > 0;) {
        const char initial = keys_[i].Text.front();
        keys_[i].Next = first_[CodeOf(initial)];
        first_[CodeOf(ToLower(initial))] = first_[CodeOf(ToUpper(initial))] = static_cast<std::uint8_t>(i + 1);
    }
}

bool RecordWalker::Next() {
    if (!stream_.Seek(end_) || !FindHeader()) return false;
    for (Key& key : keys_) key.FoundSize = 0;
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
        if (BeginsWith(CountingPart(raw), header_)) return true;
    }
    return false;
}

void RecordWalker::Note(std::string_view line, Position at) {
    for (std::size_t next = first_[CodeOf(line.front())]; next != 0;) {
        Key& key = keys_[next - 1];
        next = key.Next;
        if (key.FoundSize != 0 || !key.Begins(line)) continue;
        key.FoundAt = at;
        key.FoundSize = line.size();
        --missing_;
    }
}

bool RecordWalker::Get(std::size_t index, TextPlace place) const {
    const Key& key = keys_[index];
    if (key.FoundSize == 0) {
        place.Assign({});
        return false;
    }
    std::string_view value = CountingPart(stream_.Seen(key.FoundAt, key.FoundSize));
    // The first separator of the line is the key's, so what follows that is the value.
    value.remove_prefix(std::min(key.ValueStart, value.size()));
    while (!value.empty() && Cleaned(value.front()) == ' ') value.remove_prefix(1);
    if (FindControl(value, 0) == value.size()) {
        place.Assign(value);
    } else {
        place.Assign(CleanLine(value));
    }
    return true;
}

} // namespace bv
