// The days of the week as control files name them.
#pragma once

#include <cstdint>
#include <string_view>

namespace bv {

struct WeekDay {
    std::string_view Word;
    std::uint16_t Bit; // Sunday has the lowest
};

// In the order in which they are written.
inline constexpr WeekDay kWeekDays[] = {{"MON", 2},  {"TUE", 4},  {"WED", 8}, {"THU", 16},
                                        {"FRI", 32}, {"SAT", 64}, {"SUN", 1}};

} // namespace bv
