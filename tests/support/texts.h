// Editing the texts that tests expect.
#pragma once

#include <string>
#include <string_view>

namespace bv::test {

// The text with every occurrence of a part replaced.
inline std::string Replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

} // namespace bv::test
