#include "voice/strings.h"

#include <algorithm>
#include <array>

namespace bv {
namespace {

struct NumberedString {
    int Id;
    std::string_view Text;
};

constexpr auto kStrings = [] {
    auto strings = std::to_array<NumberedString>({
#define STR(id, name, text) {id, text},
#include "resources/strings.def"
#undef STR
    });
    std::ranges::sort(strings, {}, &NumberedString::Id);
    return strings;
}();

static_assert(std::ranges::is_sorted(kStrings, std::ranges::less_equal{}, &NumberedString::Id),
              "each number stands once in strings.def");

} // namespace

std::string_view FindString(int id) {
    const auto* found = std::ranges::lower_bound(kStrings, id, {}, &NumberedString::Id);
    return found != std::end(kStrings) && found->Id == id ? found->Text : std::string_view();
}

} // namespace bv
