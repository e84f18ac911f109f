#include "platform/program.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "platform/out_of_memory.h"

namespace bv::platform {

namespace {

// The other way round than the stream is used, so that using it is an error.
constexpr std::array<int, 3> kUselessModes = {O_WRONLY, O_RDONLY, O_RDONLY};

// An opening takes the lowest free number, and those below are taken.
bool HoldStream(int number) {
    if (fcntl(number, F_GETFD) >= 0 || errno != EBADF) return true;
    return open("/dev/null", kUselessModes.at(static_cast<std::size_t>(number))) == number;
}

} // namespace

bool BeginProgram() {
    InstallEndOfUncaught();
    std::signal(SIGXFSZ, SIG_IGN);
    return HoldStream(STDIN_FILENO) && HoldStream(STDOUT_FILENO) && HoldStream(STDERR_FILENO);
}

void EndWithoutMemory() noexcept {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kNoMemory.data(), kNoMemory.size());
    _exit(1);
}

} // namespace bv::platform
