#include "shell/startup.h"

#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "platform/environment.h"
#include "shell/server_paths.h"
#include "voice/message_ids.h"

namespace bv {
namespace {

StartupOptions startupOptions;
ServerSwitches serverSwitches;

bool* InstallerMode(char letter, StartupOptions& options) {
    switch (ToUpper(letter)) {
    case 'A': return &options.InstallerModeA;
    case 'D': return &options.InstallerModeD;
    case 'M': return &options.InstallerModeM;
    case 'U': return &options.InstallerModeU;
    default: return nullptr;
    }
}

bool SetSwitch(char letter, StartupOptions& options) {
    if (letter >= '1' && letter <= '5') {
        options.StartFunction = letter - '0';
        return true;
    }
    bool* mode = InstallerMode(letter, options);
    if (mode != nullptr) *mode = true;
    return mode != nullptr;
}

} // namespace

StartupOptions& Startup() { return startupOptions; }

int ParseCommandLine(std::string_view commandLine, StartupOptions& options) {
    std::string_view rest = SkipBlanks(commandLine);
    while (!rest.empty()) {
        if (rest.front() != '-' && rest.front() != '/') return kInvalidParameter;
        if (rest.size() < 2) return kInvalidSwitch;
        const char letter = rest[1];
        if (!SetSwitch(letter, options)) return kInvalidSwitch;
        // The server's installer puts a character of its own behind the A, so that one is skipped.
        const std::size_t length = ToUpper(letter) == 'A' ? 3 : 2;
        rest = SkipBlanks(rest.substr(std::min(length, rest.size())));
    }
    return 0;
}

std::string FindHelpFile(const StartupOptions& options) {
    constexpr std::string_view kHelpFile = "BVSETUP.HLP";
    std::string local = WithBackslash(platform::TheEnvironment().CurrentDirectory()).append(kHelpFile);
    if (!options.InstallerModeA && FileExists(local)) return local;
    return Paths().ServerArea.String().append(kHelpFile);
}

const ServerSwitches& Switches() { return serverSwitches; }

void ReadServerSwitches(ControlStream& setupFile) {
    serverSwitches = {};
    setupFile.Rewind();
    ControlLine header;
    Position paragraph = 0;
    if (!FindParagraph(setupFile, "[OPTIONS]", header, &paragraph)) return;
    GetKeyBool(setupFile, "EnableRouting:", serverSwitches.EnableRouting, paragraph);
    GetKeyBool(setupFile, "EnableAutoAdd:", serverSwitches.EnableAutoAdd, paragraph);
    FixedText<1> mark;
    GetKeyString(setupFile, "UserGroupIdentifier:", mark, paragraph);
    if (!mark.IsEmpty()) serverSwitches.UserGroupIdentifier = ToUpper(mark.View().front());
}

} // namespace bv
