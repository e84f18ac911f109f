// Large pieces of memory.
#pragma once

#include <cstddef>

namespace bv::platform {

// Says of memory just allocated, and not yet used, that it will be used from front to back. The system may then map it
// in larger pages, which for a text of many megabytes takes less time than reading it.
void ExpectWholeUse(char* memory, std::size_t size);

} // namespace bv::platform
