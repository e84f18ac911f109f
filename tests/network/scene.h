// What the stand-in for the network's library is told, and asked afterwards.
#pragma once

#include <windows.h>

namespace bv::test {

struct Scene {
    DWORD Users = 0;           // "user0001" and so on; every tenth is disabled, and the third has a Cyrillic name
    DWORD QueryError = 0;      // of the call for lists
    DWORD Level20Error = 0;    // of the call for accounts
    DWORD FailsAfter = 0;      // users, with error 5; 0: never
    DWORD LiesBy = 0;          // records that a page says it has more
    bool StaysInPlace = false; // each page says that the next one begins where it did
    bool BadNames = false;     // the fifth name lies nowhere
    bool HasNoDomain = false;
};

} // namespace bv::test
