// What the server has set up, and this program only reads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "options/option_keys.h"

namespace bv {

struct ServerFact {
    std::string_view Name;
    std::string Value;
    std::string_view Source; // the key, or the file that it stands in
};

// Log file, language, switches of this program, the mail gateway's generation, versions and areas. A version that
// is not there is "not known", after 413 or 9011 when it could not be read.
std::vector<ServerFact> ReadServerFacts(const ServerOptions& options);

} // namespace bv
