#include "platform/memory.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace bv::platform {

void ExpectWholeUse(char* memory, std::size_t size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
    if (size <= before) return;
    madvise(memory + before, (size - before) / page * page,
            MADV_HUGEPAGE); // where that is not to be had, nothing is lost
}

} // namespace bv::platform
