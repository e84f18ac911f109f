# The one definition of the warnings and sanitizers, for everything of ours.
add_library(bv_warnings INTERFACE)
if(MSVC)
  target_compile_options(bv_warnings INTERFACE /W4 /WX /permissive- /utf-8)
  target_compile_definitions(bv_warnings INTERFACE _CRT_SECURE_NO_WARNINGS NOMINMAX WIN32_LEAN_AND_MEAN)
else()
  target_compile_options(bv_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # False alarms about "text" + string (GCC bug 105651), and at -O1 about variants.
    target_compile_options(bv_warnings INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
  if(WIN32)
    target_compile_definitions(bv_warnings INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
  endif()
endif()
if(BV_SANITIZE)
  # Without what is asked of every pointer before its use, a fifth of the compiler's time: AddressSanitizer ends a
  # program that uses a null one, and processors take odd addresses.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=null,alignment -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # Checked indexes. The checking iterators (_GLIBCXX_DEBUG) would find more, but clang 14 does not take them with this
  # library's headers; GCC does.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
