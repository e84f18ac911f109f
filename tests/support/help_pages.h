// The help pages as the tests of the key tables look at them.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "support/samples.h"
#include "voice/format.h"

namespace bv::test {

// The rows of keys in the pages of these numbers, each with its line end. tests/programs/help_tables writes them.
inline std::vector<std::string> HelpRows(int first, int last) {
    std::vector<std::string> rows;
    for (int page = first; page <= last; ++page) {
        std::ifstream file(SamplesDirectory() + FormatText("/../help/%d.html", page));
        for (std::string line; std::getline(file, line);)
            if (line.starts_with("<tr><td>")) rows.push_back(line + '\n');
    }
    return rows;
}

} // namespace bv::test
