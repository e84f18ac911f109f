// How the system's own libraries are called.
#pragma once

// Stands before the name of an entry's type: `std::int32_t(BV_SYSTEM_CALL*)(int)`. 32-bit Windows has a calling
// convention of its own for its libraries; elsewhere there is one only.
#if defined(_WIN32) && !defined(_WIN64)
#define BV_SYSTEM_CALL __stdcall
#else
#define BV_SYSTEM_CALL
#endif
