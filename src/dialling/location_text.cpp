#include "dialling/location_text.h"

#include <algorithm>
#include <map>
#include <vector>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "dialling/dialling_text.h"

namespace bv {
namespace {

// The lines of a paragraph as they stand, with their ends.
using Lines = std::vector<std::string>;

Lines LinesOf(std::string_view body) {
    Lines lines;
    while (!body.empty()) lines.emplace_back(TakeLine(body));
    if (!lines.empty() && !lines.back().ends_with('\n')) lines.back() += kLineEnd;
    return lines;
}

// Where a line is added: behind the last one that is not empty.
std::size_t EndOf(const Lines& lines) {
    std::size_t end = lines.size();
    while (end > 0 && CleanLine(lines[end - 1]).empty()) --end;
    return end;
}

// Puts a line for each of the values in the place of the key's lines. None of these stays: a later one, which no reader
// sees behind the first, would come to count.
void SetKey(Lines& lines, std::string_view key, const std::vector<std::string>& values) {
    const auto hasKey = [key](const std::string& line) { return BeginsWith(line, key); };
    const auto first = std::ranges::find_if(lines, hasKey);
    const std::size_t at = first == lines.end() ? EndOf(lines) : static_cast<std::size_t>(first - lines.begin());
    std::erase_if(lines, hasKey);
    Lines added;
    for (const std::string& value : values) {
        added.emplace_back();
        AddKey(added.back(), key, value);
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
}

std::string Joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line;
    return text;
}

// The location with the values that are others now.
std::string Changed(const LocationText& location, const DialPlace& place) {
    const DialProperties& before = *place.Before;
    const DialProperties& now = place.Now;
    Lines lines = LinesOf(location.Body);
    if (now.Description != before.Description) SetKey(lines, kDescriptionKey, {now.Description.String()});
    for (const DialKey& field : DialKeys())
        if (field.Text(now) != field.Text(before)) SetKey(lines, field.Key, {field.Text(now)});
    for (const auto& [key, list] : kDialListKeys) {
        if (now.*list == before.*list) continue;
        std::vector<std::string> values;
        for (const DialPrefix& prefix : now.*list) values.push_back(prefix.String());
        SetKey(lines, key, values);
    }
    return Joined(LinesOf(location.Header)) + Joined(lines);
}

// Ends the last line, and parts what comes next by an empty one.
void EndParagraph(std::string& text) {
    if (text.empty()) return;
    if (!text.ends_with('\n')) text += kLineEnd;
    if (!text.ends_with("\n\r\n") && !text.ends_with("\n\n")) text += kLineEnd;
}

// Adds the text up to its locations, with that one selected, and takes it off the front. Without the header that comes
// before the first location.
void AddSelection(std::string_view& text, std::string_view selected, std::string& changed) {
    const DialSelection selection = SelectionIn(text);
    changed = text.substr(0, selection.HasHeader ? selection.Behind : FindHeader(text, kLocationHeader));
    text.remove_prefix(changed.size());
    if (!selection.HasHeader) {
        EndParagraph(changed);
        AddLine(changed, "[DIALPROPERTIES]");
    } else if (!changed.ends_with('\n')) {
        changed += kLineEnd;
    }
    const std::string_view body = selection.HasHeader ? TakeBody(text) : std::string_view();
    if (selection.Name && *selection.Name == selected) {
        changed += body;
        return;
    }
    Lines lines = LinesOf(body);
    SetKey(lines, kLocationKey, {std::string(selected)});
    if (body.empty()) lines.emplace_back(kLineEnd);
    changed += Joined(lines);
}

// The place that a location of the text was read into.
const DialPlace* PlaceOf(const DialLocations& locations, std::string_view name, std::size_t nth) {
    const auto found = std::ranges::find_if(locations.Places, [&](const DialPlace& place) {
        return place.Before && place.Before->Description == name && place.Nth == nth;
    });
    return found == locations.Places.end() ? nullptr : &*found;
}

} // namespace

std::string WithLocations(const TextOfFile& live, const DialLocations& locations, std::string_view selected) {
    std::string_view text = live.IsThere ? live.Text : kNewDiallingText;
    std::string changed;
    AddSelection(text, selected, changed);
    std::map<std::string, std::size_t> counts;
    std::vector<const DialPlace*> found;
    LocationText location;
    for (std::string_view rest = text; TakeLocation(rest, location);) {
        const auto name = NameOf(location);
        const DialPlace* place = name ? PlaceOf(locations, *name, counts[name->String()]++) : nullptr;
        if (place == nullptr) continue;
        found.push_back(place);
        const auto at = static_cast<std::size_t>(location.Header.data() - text.data());
        const std::size_t size = location.Header.size() + location.Body.size();
        if (!place->IsDeleted && place->Now == *place->Before) continue;
        changed += text.substr(0, at);
        if (!place->IsDeleted) changed += Changed(location, *place);
        text.remove_prefix(at + size);
    }
    changed += text;
    for (const DialPlace& place : locations.Places) {
        const bool isWanted = !place.Before || !live.IsThere || place.Now != *place.Before ||
                              (locations.Chosen && &place == &locations.Places[*locations.Chosen]);
        if (place.IsDeleted || !isWanted || std::ranges::find(found, &place) != found.end()) continue;
        EndParagraph(changed);
        AddLocation(place.Now, changed);
    }
    return changed;
}

std::string DroppedParagraphs(std::string_view text) {
    constexpr std::size_t kMost = 12;
    std::string dropped;
    std::size_t count = 0;
    for (std::string_view rest = text.substr(SelectionIn(text).Behind); !rest.empty();) {
        TakeBody(rest);
        if (rest.empty()) break;
        const std::string header = CleanLine(TakeLine(rest));
        std::string_view body = rest;
        const auto name = BeginsWith(header, kLocationHeader) ? NameOf({header, TakeBody(body)}) : std::nullopt;
        if (++count > kMost) return dropped + "\n...";
        dropped.append(dropped.empty() ? "" : "\n").append(header);
        if (name) dropped.append(" ").append(*name);
    }
    return dropped;
}

} // namespace bv
