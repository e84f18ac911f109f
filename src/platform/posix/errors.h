// What this system's error numbers mean to the rest of the program.
#pragma once

#include "platform/files.h"

namespace bv::platform {

FileError ErrorOf(int errorNumber);

} // namespace bv::platform
