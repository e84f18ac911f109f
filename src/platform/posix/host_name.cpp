#include "platform/host_name.h"

#include <array>

#include <unistd.h>

namespace bv::platform {

std::string HostName() {
    std::array<char, 256> name{}; // a longer one is cut; the last character stays
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

} // namespace bv::platform
