// What there is of least-cost routing, in words.
#pragma once

#include <string>

namespace bv {

// Each a text for a person, or what its editor waits for: "links: 3", "needs general settings".
struct LcrOverview {
    bool HasGeneralSettings = false; // "[ROUTER]" of SETUP.INI
    std::string General;
    std::string Destinations;
    std::string Links;
    std::string Rules;
};

// Reads all of its files. Messages are those of their readers; what could not be read is "not known".
LcrOverview LookAtLcr();

} // namespace bv
