// The telephony library's structures of variable size, fetched and read without trust in what they say of themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ctlfile/status.h"
#include "dialling/tele_interface.h"

namespace bv {

class TapiStructure {
  public:
    // Zeros but for the total size, which is the given one.
    explicit TapiStructure(std::size_t size = sizeof(telephony::Sizes));

    [[nodiscard]] std::size_t Size() const { return bytes_.size(); }
    [[nodiscard]] std::uint32_t NeededSize() const;
    [[nodiscard]] void* Memory() { return bytes_.data(); }

    // The part that begins so many bytes from the start; none when not all of it lies within.
    template <class Part>
    [[nodiscard]] std::optional<Part> Read(std::uint64_t offset) const {
        static_assert(std::is_trivially_copyable_v<Part>);
        if (!Holds(offset, sizeof(Part))) return std::nullopt;
        Part part;
        std::memcpy(&part, bytes_.data() + offset, sizeof(Part));
        return part;
    }

    // The text up to its terminator or its size; empty when not all of it lies within.
    [[nodiscard]] std::string_view Text(std::uint32_t size, std::uint32_t offset) const;

  private:
    [[nodiscard]] bool Holds(std::uint64_t offset, std::uint64_t size) const {
        return offset <= bytes_.size() && size <= bytes_.size() - offset;
    }
    std::vector<char> bytes_;
};

// Has the library fill a structure of the given first size, and once more one of the size that it then asks for. 0; or
// -3968 after TAPIErrorText; or -4037 when it asks for more than 16 MiB, which no location has.
StatusCode FetchTapiStructure(std::size_t firstSize, const std::function<telephony::Result(void*)>& fill,
                              TapiStructure& filled);

} // namespace bv
