// The process as a program: how it begins, and how it ends when it cannot go on.
#pragma once

namespace bv::platform {

// To be called before anything else. Afterwards
// - standard input, output and error are open, so that no file can be opened in their place and be written to as one of
//   them: one that was closed reads as empty, and refuses what is written to it;
// - a write past the largest size that a file may have fails as on a full disk, instead of ending the process;
// - memory that runs out where nobody can be told ends the process as EndWithoutMemory does.
// False when a closed stream could not be replaced: then the program must not go on.
[[nodiscard]] bool BeginProgram();

// Ends the process with 1 after one sentence on standard error and, of a program without a console, in a box. To be
// called when std::bad_alloc has come up to the program's outermost procedure, and what was under way has been undone.
[[noreturn]] void EndWithoutMemory() noexcept;

} // namespace bv::platform
