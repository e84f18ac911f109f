# The standard library's headers are compiled once for all libraries, once more with the system's for the dialogs, and
# with GoogleTest's for the tests. The static checks look at the sources without them, so every file still includes what
# it uses.
set(BV_STANDARD_HEADERS <algorithm> <array> <charconv> <cstdint> <cstring> <functional> <map> <memory> <optional> <span>
  <string> <string_view> <unordered_map> <utility> <vector>)

# bv_precompiled(TARGET [HEADER...]): the target has a precompiled header of its own, of the standard library and these.
function(bv_precompiled target)
  target_precompile_headers(${target} PRIVATE ${BV_STANDARD_HEADERS} ${ARGN})
endfunction()
