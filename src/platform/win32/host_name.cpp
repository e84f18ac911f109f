#include "platform/host_name.h"

#include <windows.h>

#include <array>

namespace bv::platform {

std::string HostName() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
    auto size = static_cast<DWORD>(name.size());
    return GetComputerNameA(name.data(), &size) != 0 ? std::string(name.data(), size) : std::string();
}

} // namespace bv::platform
