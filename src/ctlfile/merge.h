// Keys that somebody else may have changed in a file since they were read from it here.
#pragma once

#include <string>
#include <string_view>

namespace bv {

// The values of one key as texts.
struct MergedKey {
    std::string_view Name;
    std::string Before; // as it was read here
    std::string Mine;   // as it was entered here
    std::string Now;    // as the file has it by now
};

// Whether what was entered is to be written: not when it is no change, or stands there already. When both have changed
// the key, 9204 asks whose value it shall be; `whose` begins the sentence ("User ANNA").
bool TakesMine(std::string_view whose, const MergedKey& key);

} // namespace bv
