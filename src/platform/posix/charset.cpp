#include "platform/posix/charset.h"

#include <iconv.h>

#include <memory>
#include <type_traits>

namespace bv::platform {
namespace {

struct Close {
    void operator()(iconv_t tables) const { iconv_close(tables); }
};

} // namespace

std::optional<std::string> Converted(std::string_view text, const std::string& from, const std::string& to) {
    const iconv_t opened = iconv_open(to.c_str(), from.c_str());
    if (opened == reinterpret_cast<iconv_t>(-1)) return {}; // NOLINT: its own mark of failure
    const std::unique_ptr<std::remove_pointer_t<iconv_t>, Close> tables(opened);
    std::string given(text);
    std::string converted(4 * given.size() + 16, '\0'); // no letter takes more
    char* in = given.data();
    char* out = converted.data();
    std::size_t inLeft = given.size();
    std::size_t outLeft = converted.size();
    // A positive number is that of letters which were turned into something near them.
    if (iconv(opened, &in, &inLeft, &out, &outLeft) != 0 || iconv(opened, nullptr, nullptr, &out, &outLeft) != 0) {
        return {};
    }
    converted.resize(converted.size() - outLeft);
    return converted;
}

} // namespace bv::platform
