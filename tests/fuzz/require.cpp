#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz.h"

namespace bv::fuzz {
namespace {

// Readable and exact: what is not plain text by its number.
std::string Visible(std::string_view text) {
    std::string visible;
    for (const char c : text) {
        char number[8];
        std::snprintf(number, sizeof number, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        visible += c >= ' ' && c < 127 && c != '\\' ? std::string(1, c) : std::string(number);
        if (c == '\n') visible += '\n';
    }
    return visible;
}

} // namespace

Input::Input(std::string_view input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    std::string_view line = input.substr(0, end);
    Text = input.substr(std::min(end + 1, input.size()));
    for (;;) {
        const std::size_t bar = line.find('|');
        Parameters.push_back(line.substr(0, bar));
        if (bar == std::string_view::npos) return;
        line.remove_prefix(bar + 1);
    }
}

std::optional<std::string_view> Input::Parameter(std::size_t index) const {
    if (index >= Parameters.size()) return {};
    return Parameters[index];
}

void Require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "FOUND: %s\n", what);
    std::abort();
}

void RequireEqual(std::string_view found, std::string_view expected, const char* what) {
    if (found == expected) return;
    std::fprintf(stderr, "--- found\n%s\n--- expected\n%s\n---\n", Visible(found).c_str(), Visible(expected).c_str());
    Require(false, what);
}

} // namespace bv::fuzz
