// What the systems' parts of program.h share.
#pragma once

#include <exception>
#include <new>
#include <string_view>

#include "platform/program.h"

namespace bv::platform {

inline constexpr std::string_view kNoMemory = "There is not enough memory; the program has ended.\n";

inline std::terminate_handler endOfOtherExceptions = nullptr;

// For an exception that nobody could catch, as in a destructor.
inline void EndOfUncaught() {
    try {
        if (const std::exception_ptr error = std::current_exception()) std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        EndWithoutMemory();
    } catch (...) {
        endOfOtherExceptions();
    }
    endOfOtherExceptions();
}

inline void InstallEndOfUncaught() { endOfOtherExceptions = std::set_terminate(EndOfUncaught); }

} // namespace bv::platform
