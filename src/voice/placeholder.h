// The placeholders of printf-style texts, read alike when such a text is filled and when the compiler counts how many
// values it takes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/ascii.h"

namespace bv {

inline constexpr int kMaxField = 999; // widest width and precision taken at their word

struct Placeholder {
    bool LeftAligned = false;
    bool ZeroPadded = false;
    bool PlusSign = false;
    int Width = 0;
    std::optional<int> Precision;
    char Conversion = 0;    // '%' for "%%", which takes no value
    std::size_t Length = 0; // of its text, the "%" included
};

// Reads digits at `at` and steps over them.
constexpr int ReadField(std::string_view text, std::size_t& at) {
    int value = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) value = std::min(value * 10 + (text[at] - '0'), kMaxField + 1);
    return value;
}

// Reads the placeholder that a "%" at the start of the text opens, or none when its form is not known (format.h).
constexpr std::optional<Placeholder> ReadPlaceholder(std::string_view text) {
    Placeholder holder;
    std::size_t at = 1;
    for (; at < text.size(); ++at) {
        if (text[at] == '-')
            holder.LeftAligned = true;
        else if (text[at] == '0')
            holder.ZeroPadded = true;
        else if (text[at] == '+')
            holder.PlusSign = true;
        else
            break;
    }
    holder.Width = ReadField(text, at);
    if (at < text.size() && text[at] == '.') holder.Precision = ReadField(text, ++at);
    while (at < text.size() && (text[at] == 'h' || text[at] == 'l')) ++at;
    if (at == text.size() || holder.Width > kMaxField || holder.Precision.value_or(0) > kMaxField) return {};
    if (std::string_view("sdiucxX%").find(text[at]) == std::string_view::npos) return {};
    holder.Conversion = text[at];
    holder.Length = at + 1;
    return holder;
}

// The number of values that fill the text.
constexpr std::size_t CountPlaces(std::string_view text) {
    std::size_t places = 0;
    for (std::size_t at = text.find('%'); at < text.size(); at = text.find('%', at)) {
        const std::optional<Placeholder> holder = ReadPlaceholder(text.substr(at));
        if (holder && holder->Conversion != '%') ++places;
        at += holder ? holder->Length : 1;
    }
    return places;
}

} // namespace bv
