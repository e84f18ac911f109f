// key_writer FILE PREFIX COUNT
// As a second process, sets the keys PREFIX1: to PREFIXCOUNT: of the paragraph "[KEYS]", each in a rewrite of its own.
// Ends with 1 at the first that fails.
#include <cstdlib>

#include "ctlfile/rewriter.h"

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const long count = std::strtol(argv[3], nullptr, 10);
    for (long n = 1; n <= count; ++n) {
        const std::string key = argv[2] + std::to_string(n) + ":";
        if (!bv::UpdateControlFile(argv[1], {"[KEYS]", key, "set"})) return 1;
    }
    return 0;
}
