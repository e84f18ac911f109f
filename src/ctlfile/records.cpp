#include "ctlfile/records.h"

#include <algorithm>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"

namespace bv {
namespace {

std::size_t CodeOf(char c) { return static_cast<unsigned char>(c); }

} // namespace

RecordWalker::RecordWalker(ControlStream& stream, std::string_view header, std::span<const std::string_view> keys)
    : stream_(stream), header_(header), keys_(keys), found_(keys.size()), end_(stream.Tell()) {
    for (const std::string_view key : keys) {
        valueStarts_.push_back(key.find_first_of(":=") + 1);
        mayBegin_[CodeOf(ToLower(key.front()))] = true;
        mayBegin_[CodeOf(ToUpper(key.front()))] = true;
    }
}

bool RecordWalker::Next() {
    if (!stream_.Seek(end_) || !FindHeader()) return false;
    std::ranges::fill(found_, Found{});
    missing_ = keys_.size();
    while (missing_ != 0) {
        end_ = stream_.Tell();
        const std::string_view raw = stream_.NextRawLine();
        if (raw.empty() || IsParagraphLine(raw)) return true;
        if (mayBegin_[CodeOf(raw.front())]) Note(raw, end_);
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
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        if (found_[i].Size != 0 || !BeginsWith(line, keys_[i])) continue;
        if (keys_[i].ends_with(' ') && !BeginsWith(CountingPart(line), keys_[i])) continue;
        found_[i] = {at, line.size()};
        --missing_;
    }
}

bool RecordWalker::Get(std::size_t key, TextPlace place) const {
    const Found& found = found_[key];
    std::string_view value = CountingPart(stream_.Seen(found.At, found.Size));
    // The first separator of the line is the key's, so what follows that is the value.
    value.remove_prefix(std::min(valueStarts_[key], value.size()));
    while (!value.empty() && Cleaned(value.front()) == ' ') value.remove_prefix(1);
    if (FindControl(value, 0) == value.size()) {
        place.Assign(value);
    } else {
        place.Assign(CleanLine(value));
    }
    return found.Size != 0;
}

} // namespace bv
