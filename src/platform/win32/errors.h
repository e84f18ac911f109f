// What Windows' error numbers mean to the rest of the program.
#pragma once

#include "platform/files.h"

namespace bv::platform {

FileError ErrorOf(unsigned long systemError);

} // namespace bv::platform
