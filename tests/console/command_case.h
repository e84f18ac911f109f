// Commands in tables: a control file before, one command, what it says, the file after; and the same as a rehearsal,
// which says the same and leaves the file as it was.
#pragma once

#include <gmock/gmock.h>

#include <span>
#include <string>
#include <vector>

namespace bv::test {

struct CommandCase {
    std::string Command; // as it is typed
    int Status;
    std::string Results;
    std::string Notices; // how they end; empty: there are none
    std::string After;   // the file
};

// A scene has a Console to run a command on, and File() shows the file.
template <class Scene>
void ExpectEach(std::span<const CommandCase> cases, const std::string& before) {
    for (const CommandCase& one : cases) {
        SCOPED_TRACE(one.Command);
        Scene scene;
        EXPECT_EQ(scene.Console.Type(one.Command), one.Status);
        EXPECT_EQ(scene.Console.Results, one.Results);
        EXPECT_THAT(scene.Console.Notices, testing::EndsWith(one.Notices));
        EXPECT_EQ(scene.Console.Notices.empty(), one.Notices.empty());
        EXPECT_EQ(scene.File(), one.After);
        Scene rehearsal;
        EXPECT_EQ(rehearsal.Console.Type(one.Command + " --dry-run"), one.Status);
        EXPECT_EQ(rehearsal.File(), before);
    }
}

} // namespace bv::test
