#include "voice/strings.h"

#include <algorithm>
#include <iterator>

namespace bv {
namespace {

struct NumberedString {
    int Id;
    std::string_view Text;
};

constexpr NumberedString kStrings[] = {
#define STR(id, name, text) {id, text},
#include "resources/strings.def"
#undef STR
};

static_assert(std::ranges::is_sorted(kStrings, std::ranges::less_equal{}, &NumberedString::Id),
              "strings.def must be in ascending order of its numbers, each once");

} // namespace

std::string_view FindString(int id) {
    const auto* found = std::ranges::lower_bound(kStrings, id, {}, &NumberedString::Id);
    return found != std::end(kStrings) && found->Id == id ? found->Text : std::string_view();
}

} // namespace bv
