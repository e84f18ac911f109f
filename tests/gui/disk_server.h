// A fax server's directory on the real file system, with programs in it that record how they were called.
#pragma once

#include <string>
#include <string_view>

#include "support/fakes.h"
#include "support/temporary_directory.h"

namespace bv::gui {

// A copy of the sample server's coversheets, letterheads and settings, and a BRIVANE.INI that BVAXINIT leads to.
class DiskServer {
  public:
    DiskServer();

    [[nodiscard]] const test::TemporaryDirectory& Files() const { return files_; }

    // What the stand-in "i386\\covedit" or "BRIVANE" was called with, a line for each call; waits for the first one.
    [[nodiscard]] std::string Calls(std::string_view program) const;

    // Lets a stand-in go on running, and end.
    void Hold(std::string_view program) const;
    void Release(std::string_view program) const;

  private:
    void InstallProgram(std::string_view name) const;
    test::TemporaryDirectory files_;
    test::FakeUserSettings settings_; // so that no test finds a dialog as another one left it
    platform::Substitute<platform::UserSettings> useSettings_{settings_};
};

inline constexpr const char* kCoverCatalogue = "B-COVER\\MSGDIR.CTL";
inline constexpr const char* kLetterCatalogue = "B-LETTER\\MSGDIR.CTL";

// A file that the build put beside this test.
std::string BesideTest(std::string_view name);

} // namespace bv::gui
