#include "platform/memory.h"

namespace bv::platform {

void ExpectWholeUse(char*, std::size_t) {} // larger pages need a right that administrators do not have either

} // namespace bv::platform
