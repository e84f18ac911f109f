// The names in one large directory, remembered while they are looked up again and again: looking for names that are not
// there would else list the whole directory for each.
#pragma once

#include <optional>
#include <string>

#include "platform/posix/host_paths.h"

namespace bv::platform {

// Directories of fewer names are quickly listed.
inline constexpr std::size_t kManyNames = 256;

// Remembers the directory's names in place of those of another one, where the system tells of every change in it to
// whoever watches: that is so on file systems of its own, and not where another computer may make a file. Whatever any
// process has made, deleted or renamed there counts with the next look.
void WatchNames(const std::string& directory);

// The name that stands in the directory for the given one, in any case, the first in order when several do, or
// NotFound. None when the names of that directory are not remembered, or not any more.
std::optional<HostPath> FindWatchedName(const std::string& directory, const std::string& name);

} // namespace bv::platform
