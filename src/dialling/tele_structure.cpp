#include "dialling/tele_structure.h"

#include "dialling/tele_errors.h"
#include "dialling/telephony.h"

namespace bv {
namespace {

constexpr std::size_t kLargest = std::size_t{16} << 20;

} // namespace

TapiStructure::TapiStructure(std::size_t size) : bytes_(size) {
    const auto total = static_cast<std::uint32_t>(size);
    std::memcpy(bytes_.data() + offsetof(telephony::Sizes, Total), &total, sizeof total);
}

std::uint32_t TapiStructure::NeededSize() const {
    const auto sizes = Read<telephony::Sizes>(0);
    return sizes ? sizes->Needed : 0;
}

std::string_view TapiStructure::Text(std::uint32_t size, std::uint32_t offset) const {
    if (!Holds(offset, size)) return {};
    const std::string_view text(bytes_.data() + offset, size);
    return text.substr(0, text.find('\0'));
}

StatusCode FetchTapiStructure(std::size_t firstSize, const std::function<telephony::Result(void*)>& fill,
                              TapiStructure& filled) {
    std::size_t size = firstSize;
    for (bool first = true;; first = false) {
        if (size > kLargest) return kTapiNoMemory;
        filled = TapiStructure(size);
        const telephony::Result result = fill(filled.Memory());
        const bool tooSmall = (result == 0 || result == telephony::kStructureTooSmall) && filled.NeededSize() > size;
        if (first && tooSmall) {
            size = filled.NeededSize();
            continue;
        }
        if (result == 0) return kDone;
        TAPIErrorText(result, 3);
        return kTapiCallFailed;
    }
}

} // namespace bv
