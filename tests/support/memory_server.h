// A workstation and a fax server in memory, for tests of what start-up and the areas do to the server's files.
#pragma once

#include <string>
#include <string_view>

#include "platform/overlay_files.h"
#include "support/fakes.h"
#include "support/recording_front.h"

namespace bv::test {

// In place while it lives. The Windows directory is C:\WINDOWS and the current directory F:\BRIVANE; there are no
// files.
struct MemoryServer {
    platform::OverlayFiles Files;
    FakeEnvironment Environment;
    FakeClock Clock;
    FakeProcesses Processes;
    RecordingFront Front;

    // Puts BRIVANE.INI into the Windows directory, a SETUP.INI below F:\BRIVANE, and loads the server's paths and
    // switches: SystemArea F:\BRIVANE\, ServerArea F:\BRIVANE\SERVER\, MailArea F:\BRIVANE\B-MAIL\.
    void Load();

    void Put(const std::string& path, std::string_view bytes);
    std::string Get(const std::string& path); // "(none)" without a file

  private:
    platform::Substitute<platform::FileSystem> files_{Files};
    platform::Substitute<platform::Environment> environment_{Environment};
    platform::Substitute<platform::Clock> clock_{Clock};
    platform::Substitute<platform::Processes> processes_{Processes};
};

} // namespace bv::test
