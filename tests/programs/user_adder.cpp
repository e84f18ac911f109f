// user_adder DIRECTORY SUFFIX COUNT
// As a second process, adds the users 001SUFFIX to COUNTSUFFIX to the server whose BRIVANE.INI is in the directory.
// Ends with 1 at the first that fails.
#include <cstdlib>

#include "platform/clock.h"
#include "platform/environment.h"
#include "shell/server_paths.h"
#include "users/user_rewrite.h"
#include "voice/format.h"

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    bv::platform::TheEnvironment().SetVariable("BVAXINIT", argv[1]);
    if (bv::LoadServerPaths() != bv::kDone) return 3;
    const long count = std::strtol(argv[3], nullptr, 10);
    for (long n = 1; n <= count; ++n) {
        if (!bv::AddUserRecord(bv::FormatText("%.3d%s", n, argv[2]), {}, bv::RecordKind::User)) return 1;
        bv::platform::TheClock().Sleep(1); // in which the other has its turn
    }
    return 0;
}
