// Filling formats, against the standard library's snprintf wherever that says what comes out.
// Parameters: the values, numbers or texts. The format is the rest.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz.h"
#include "voice/format.h"

namespace bv::fuzz {
namespace {

// A value as the parameter gives it: a number when it is nothing but one.
struct Value {
    std::string Text;
    std::optional<std::int64_t> Number;

    explicit Value(std::string_view parameter) : Text(parameter) {
        const std::size_t sign = Text.starts_with('-') ? 1 : 0;
        const bool digits = Text.find_first_not_of("0123456789", sign) == std::string::npos;
        if (digits && Text.size() > sign && Text.size() < 19) Number = std::strtoll(Text.c_str(), nullptr, 10);
    }
    [[nodiscard]] FormatValue ForEngine() const { return Number ? FormatValue(*Number) : FormatValue(Text); }
};

// A placeholder taken apart as it stands.
struct Placeholder {
    std::string Flags;
    std::string Width;
    std::string Precision; // with its point
    char Conversion = 0;   // none: not a placeholder
    std::size_t Length = 0;

    explicit Placeholder(std::string_view text) {
        std::size_t at = 1;
        const auto take = [&](std::string_view set) {
            const std::size_t from = at;
            at = std::min(text.find_first_not_of(set, at), text.size());
            return std::string(text.substr(from, at - from));
        };
        Flags = take("-0+");
        Width = take("0123456789");
        if (at < text.size() && text[at] == '.') Precision = text[at++] + take("0123456789");
        take("hl");
        Length = at + 1;
        const bool known = at < text.size() && std::string_view("sdiucxX%").find(text[at]) != std::string_view::npos;
        const std::size_t digit = std::min(Precision.find_first_not_of(".0"), Precision.size());
        if (known && Width.size() <= 3 && Precision.size() - digit <= 3) Conversion = text[at];
    }
    void DropFlag(char flag) { std::erase(Flags, flag); }
    [[nodiscard]] std::string Format(const char* conversion) const {
        return "%" + Flags + Width + Precision + conversion;
    }
};

template <class Argument>
std::string Printed(const std::string& format, Argument argument) {
    char buffer[5000];
    const int length = std::snprintf(buffer, sizeof buffer, format.c_str(), argument);
    Require(length >= 0 && length < static_cast<int>(sizeof buffer), "the buffer is large enough");
    return {buffer, static_cast<std::size_t>(length)};
}

// None where the standard library's meaning is undefined or another one on purpose.
std::optional<std::string> Printed(Placeholder holder, const Value& value) {
    if (!value.Number) {
        if (value.Text.find('\0') != std::string::npos) return {};
        if (holder.Conversion != 's') holder.Precision.clear(); // a text is whole where a number is expected
        holder.DropFlag('0');
        holder.DropFlag('+');
        return Printed(holder.Format("s"), value.Text.c_str());
    }
    const long long number = *value.Number;
    switch (holder.Conversion) {
    case 'c':
        holder.Precision.clear();
        holder.DropFlag('0');
        holder.DropFlag('+');
        return Printed(holder.Format("c"), static_cast<int>(number));
    case 'x':
    case 'X': holder.DropFlag('+'); return Printed(holder.Format(holder.Conversion == 'x' ? "llx" : "llX"), number);
    case 'u': return number < 0 ? std::nullopt : std::optional(Printed(holder.Format("lld"), number));
    default: return Printed(holder.Format("lld"), number);
    }
}

std::optional<std::string> Printed(std::string_view format, const std::vector<Value>& values) {
    std::string printed;
    for (std::size_t next = 0; !format.empty();) {
        const Placeholder holder(format);
        const bool known = format[0] == '%' && holder.Conversion != 0;
        const std::size_t length = known ? holder.Length : 1;
        if (!known || (holder.Conversion != '%' && next == values.size())) {
            printed += format.substr(0, length);
        } else if (holder.Conversion == '%') {
            printed += '%';
        } else {
            const std::optional<std::string> one = Printed(holder, values[next++]);
            if (!one) return {};
            printed += *one;
        }
        format.remove_prefix(length);
    }
    return printed;
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::vector<Value> values(input.Parameters.begin(), input.Parameters.end());
    std::vector<FormatValue> given;
    for (const Value& value : values) given.push_back(value.ForEngine());
    const std::string filled = FormatValues(input.Text, given);
    if (const auto expected = Printed(input.Text, values)) RequireEqual(filled, *expected, "the filled format");
}

} // namespace bv::fuzz
