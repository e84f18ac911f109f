#include "voice/format.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>

#include "platform/ascii.h"

namespace bv {
namespace {

constexpr int kMaxField = 999; // widest width and precision taken at their word

struct Placeholder {
    bool LeftAligned = false;
    bool ZeroPadded = false;
    bool PlusSign = false;
    int Width = 0;
    std::optional<int> Precision;
    char Conversion = 0;
    std::size_t Length = 0; // of its text, the "%" included
};

// Reads digits at `at` and steps over them.
int ReadField(std::string_view text, std::size_t& at) {
    int value = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) value = std::min(value * 10 + (text[at] - '0'), kMaxField + 1);
    return value;
}

// Reads the placeholder that a "%" at the start of the text opens, or none when its form is not known.
std::optional<Placeholder> ReadPlaceholder(std::string_view text) {
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

std::string Digits(std::uint64_t magnitude, int base) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, magnitude, base);
    return {buffer, result.ptr};
}

std::string NumberText(std::int64_t number, const Placeholder& holder) {
    const bool hexadecimal = holder.Conversion == 'x' || holder.Conversion == 'X';
    const bool negative = number < 0 && !hexadecimal;
    const auto bits = static_cast<std::uint64_t>(number);
    std::string digits = Digits(negative ? 0 - bits : bits, hexadecimal ? 16 : 10);
    if (holder.Conversion == 'X') digits = UpperText(digits);
    if (holder.Precision == 0 && number == 0) digits.clear();

    const std::string sign = negative ? "-" : holder.PlusSign && !hexadecimal ? "+" : "";
    auto least = static_cast<std::size_t>(holder.Precision.value_or(0));
    if (holder.ZeroPadded && !holder.LeftAligned && !holder.Precision)
        least = static_cast<std::size_t>(holder.Width) - std::min(sign.size(), static_cast<std::size_t>(holder.Width));
    if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
    return sign + digits;
}

std::string ValueText(const FormatValue& value, const Placeholder& holder) {
    if (const std::int64_t* number = value.Number()) {
        if (holder.Conversion == 'c') return {static_cast<char>(*number)};
        return NumberText(*number, holder);
    }
    const bool cut = holder.Conversion == 's' && holder.Precision;
    return std::string(
        value.Text()->substr(0, cut ? static_cast<std::size_t>(*holder.Precision) : std::string_view::npos));
}

void AppendPadded(std::string& out, const std::string& text, const Placeholder& holder) {
    const auto width = static_cast<std::size_t>(holder.Width);
    const std::size_t blanks = text.size() < width ? width - text.size() : 0;
    if (!holder.LeftAligned) out.append(blanks, ' ');
    out += text;
    if (holder.LeftAligned) out.append(blanks, ' ');
}

} // namespace

std::string FormatValues(std::string_view format, std::span<const FormatValue> values) {
    std::string out;
    std::size_t next = 0;
    while (!format.empty()) {
        const std::size_t plain = std::min(format.find('%'), format.size());
        out += format.substr(0, plain);
        format.remove_prefix(plain);
        if (format.empty()) break;

        const std::optional<Placeholder> holder = ReadPlaceholder(format);
        if (holder && holder->Conversion == '%') {
            out += '%';
        } else if (holder && next < values.size()) {
            AppendPadded(out, ValueText(values[next++], *holder), *holder);
        } else {
            out += format.substr(0, holder ? holder->Length : 1);
        }
        format.remove_prefix(holder ? holder->Length : 1);
    }
    return out;
}

} // namespace bv
