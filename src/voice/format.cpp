#include "voice/format.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>

#include "platform/ascii.h"
#include "voice/placeholder.h"

namespace bv {
namespace {

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
