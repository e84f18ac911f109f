// The words that say how and what is printed, for users and for the server alike.
#pragma once

#include <string_view>

#include "ctlfile/key_fields.h"
#include "users/user_record.h"

namespace bv {

template <>
struct ChoiceWords<SquashMode> {
    static constexpr std::string_view kWords[] = {"NO", "VERTICAL", "YES"};
};

inline constexpr std::string_view kPrintStatus = "STATUS";
inline constexpr std::string_view kPrintMessage = "MESSAGE";
inline constexpr std::string_view kPrintDelete = "DELETE";

} // namespace bv
