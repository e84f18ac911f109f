// What every fuzz target has: the function that tries one input, and the form of inputs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bv::fuzz {

// Tries one input; each target defines it. What it finds it reports by Require.
void TryInput(std::string_view input);

// An input that begins with a line of parameters, parted by "|" and ended by LF, and goes on with the bytes to work on.
struct Input {
    std::vector<std::string_view> Parameters;
    std::string_view Text;

    explicit Input(std::string_view input);
    // None when there are fewer parameters.
    [[nodiscard]] std::optional<std::string_view> Parameter(std::size_t index) const;
};

// Ends the program, which libFuzzer reports as a finding, unless the condition holds.
void Require(bool condition, const char* what);
void RequireEqual(std::string_view found, std::string_view expected, const char* what);

} // namespace bv::fuzz
