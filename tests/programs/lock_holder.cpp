// lock_holder FILE ACCESS DENIAL SIGNAL
// Opens FILE as a second process: ACCESS is r or w, DENIAL is - (nothing), w (writing) or x (reading and writing).
// Writes "held" or "refused" to the file SIGNAL.state, then waits until the file SIGNAL is deleted, at most a minute,
// and ends as a killed process does, without closing anything.
#include <cstdlib>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"

namespace {

using namespace bv::platform;

OpenRequest RequestOf(std::string_view access, std::string_view denial) {
    OpenRequest request;
    if (access == "w") request.Wanted = Access::ReadWrite;
    if (denial == "w") request.Denied = Deny::Writing;
    if (denial == "x") request.Denied = Deny::ReadingAndWriting;
    return request;
}

bool Tell(const std::string& path, std::string_view text) {
    const OpenResult state = Files().Open(path, {Access::ReadWrite, Deny::Nothing, Creation::CreateOrTruncate});
    return state.Opened && state.Opened->Write(0, text).Error == FileError::None;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    const OpenResult opening = Files().Open(argv[1], RequestOf(argv[2], argv[3]));
    const std::string signal = argv[4];
    if (!Tell(signal + ".state", opening.Opened ? "held" : "refused")) return 1;

    const std::int64_t end = TheClock().Ticks() + 60'000;
    while (Files().Find(signal) && TheClock().Ticks() < end) TheClock().Sleep(5);
    std::_Exit(0);
}
