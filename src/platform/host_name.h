// The name of this computer.
#pragma once

#include <string>

namespace bv::platform {

// In the code page; empty when the system does not tell.
std::string HostName();

} // namespace bv::platform
