// What is said of a key wherever a person meets it: in the tooltip of its control and in the table of a help page.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bv {

struct KeyHelp {
    std::string Key;                       // with its colon
    std::string Values;                    // "YES or NO"
    std::string Default;                   // what is in force without the line; empty: nothing
    std::string Meaning = {};              // a sentence; empty where the control's label says it all
    std::string Paragraph = {};            // its header; empty for a key of records
    std::optional<std::string> OfNew = {}; // what a new record has, where that is not the default of all
};

// "a number from 0 to 65534, else 5".
std::string TakesText(const KeyHelp& help);

// What follows the key's name in a tooltip: the same, then the sentence.
std::string TooltipOf(const KeyHelp& help);

// The row of the key in a help page, a line in HTML.
std::string HelpRowOf(const KeyHelp& help);

// The page's text with the rows of these keys as they are to be; what stands in other lines stays.
std::string WithHelpRows(const std::string& page, const std::vector<KeyHelp>& keys);

} // namespace bv
