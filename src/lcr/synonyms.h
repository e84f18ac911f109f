// Other names of destinations: paragraph "[SYNONYMS]" of the country file, with a line for each, such as
//
//   Great Britain: UK
//
// A synonym tells where to look and is no reference itself: rules and regions do not name it, and it stands for what
// its line says, not for what another synonym makes of that.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lcr/destinations.h"

namespace bv {

struct Synonym {
    std::string Name;
    std::string Reference; // what it stands for

    friend bool operator==(const Synonym&, const Synonym&) = default;
};

// Those of the country file's text, in its order; lines that are none are passed over.
std::vector<Synonym> ParseSynonyms(std::string_view text);

// The same of the file. None, after "File error: couldn't open" or message 9011, when it cannot be read.
std::optional<std::vector<Synonym>> LoadSynonyms();

// "Great Britain, see United Kingdom"; the reference itself where it names nothing.
std::string SynonymText(const Destinations& destinations, const Synonym& synonym);

// The text of the first synonym of that name, in any case; none without one.
std::optional<std::string> FindSynonymText(const Destinations& destinations, const std::vector<Synonym>& synonyms,
                                           std::string_view name);

// The text with a synonym in the place of the one of that name, which must be there; without a name, at the end of the
// paragraph, which is made where there is none.
std::string WithSynonym(std::string_view text, const Synonym& synonym, std::string_view instead = {});

// The text without the first synonym of that name, in any case; none when there is none.
std::optional<std::string> WithoutSynonym(std::string_view text, std::string_view name);

} // namespace bv
