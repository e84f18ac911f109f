// MAILCONF -SE -HWINDOW
// Stands in for the companion program of the mail gateway: it finds the server as every program does, takes its time,
// and writes B-DB\MAILUSER.TMP. Called in any other way it ends with 2 and writes nothing.
#include <cstring>

#include "ctlfile/control_stream.h"
#include "platform/clock.h"
#include "shell/server_paths.h"

int main(int argc, char** argv) {
    const bool isCalledWell = argc == 3 && std::strcmp(argv[1], "-SE") == 0 && std::strncmp(argv[2], "-H", 2) == 0 &&
                              std::strspn(argv[2] + 2, "0123456789ABCDEF") == std::strlen(argv[2]) - 2;
    if (!isCalledWell) return 2;
    if (bv::LoadServerPaths() != bv::kDone) return 3;
    bv::platform::TheClock().Sleep(300); // who does not wait finds nothing
    bv::ControlStream list = bv::OpenShared(bv::DatabaseFile("MAILUSER.TMP"), "w+b");
    return list && list.Write("Archer Ann\tSMTP:ann@x\r\nBrown Ben\tSMTP:ben@x\r\n") && list.Close() ? 0 : 1;
}
