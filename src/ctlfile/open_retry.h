// Opening a file that another process may hold.
#pragma once

#include <string>

#include "platform/files.h"

namespace bv {

// Opens the file; while that is refused as access-denied, yields to the system and tries again until so many
// seconds have passed since the first try. Any other outcome returns at once.
platform::OpenResult OpenRetrying(const std::string& path, const platform::OpenRequest& request, int seconds);

} // namespace bv
