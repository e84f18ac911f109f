#include "platform/terminal.h"

#include <unistd.h>

namespace bv::platform {

bool IsTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1; }

} // namespace bv::platform
