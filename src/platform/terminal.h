// The person at the process's standard streams.
#pragma once

namespace bv::platform {

// Whether standard input and standard error are both a terminal, so that a question can be asked and answered.
bool IsTerminal();

} // namespace bv::platform
