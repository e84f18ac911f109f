#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    bv::fuzz::TryInput({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
