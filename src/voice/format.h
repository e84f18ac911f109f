// printf-style texts filled with typed values. The texts are data, so a text that asks for more values than
// there are, or for another kind, is shown safely instead of reading past them.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace bv {

// A value for a placeholder: a whole number or a text. A text must outlive the call it is given to.
class FormatValue {
  public:
    FormatValue(std::integral auto number) : value_(static_cast<std::int64_t>(number)) {}
    FormatValue(const char* text) : value_(std::string_view(text)) {}
    FormatValue(const std::string& text) : value_(std::string_view(text)) {}
    FormatValue(std::string_view text) : value_(text) {}

    [[nodiscard]] const std::int64_t* Number() const { return std::get_if<std::int64_t>(&value_); }
    [[nodiscard]] const std::string_view* Text() const { return std::get_if<std::string_view>(&value_); }

  private:
    std::variant<std::int64_t, std::string_view> value_;
};

// Fills the placeholders %s %d %i %u %c %x %X (with the flags "-", "0" and "+", a width and a precision of at
// most 999 each, and the sizes h and l, which mean nothing here) and %%. A placeholder without a value, or of a
// form not named here, stays as it stands; one with a value of the other kind shows that value in its own form.
std::string FormatValues(std::string_view format, std::span<const FormatValue> values);

template <class... Values>
std::string FormatText(std::string_view format, const Values&... values) {
    if constexpr (sizeof...(values) == 0) {
        return FormatValues(format, {});
    } else {
        const FormatValue all[] = {FormatValue(values)...};
        return FormatValues(format, all);
    }
}

} // namespace bv
