// Commands in tables: a control file before, one command, what it says, the file after; and the same as a rehearsal,
// which leaves the file as it was and ends alike, but that nobody need be asked. A verb that only reads rehearses
// nothing.
#pragma once

#include <gmock/gmock.h>

#include <span>
#include <string>

namespace bv::test {

struct CommandCase {
    std::string Command; // as it is typed
    int Status;
    std::string Results;
    std::string Notices;       // how they end; empty: there are none
    std::string After = "(=)"; // the file; "(=)": as before
};

// Whether a rehearsal was refused, as by the verbs that only read.
inline bool IsRefused(const std::string& notices) {
    return notices.find("--dry-run has no use here") != std::string::npos;
}

// A scene has a Console to run a command on, and File() shows the file.
template <class Scene>
void ExpectEach(std::span<const CommandCase> cases, const std::string& before, const std::string& area = "") {
    for (const CommandCase& one : cases) {
        SCOPED_TRACE(one.Command);
        const bool isAsked = one.Notices.ends_with("--yes answers Yes)\n");
        Scene scene;
        EXPECT_EQ(scene.Console.Type(area + one.Command), one.Status);
        EXPECT_EQ(scene.Console.Results, one.Results);
        EXPECT_THAT(scene.Console.Notices, testing::EndsWith(one.Notices));
        EXPECT_EQ(scene.Console.Notices.empty(), one.Notices.empty());
        EXPECT_EQ(scene.File(), one.After == "(=)" ? before : one.After);
        Scene rehearsal;
        const int status = rehearsal.Console.Type(area + one.Command + " --dry-run");
        EXPECT_EQ(rehearsal.File(), before);
        if (one.After == "(=)" && IsRefused(rehearsal.Console.Notices)) continue;
        EXPECT_EQ(status, isAsked ? 0 : one.Status);
    }
}

} // namespace bv::test
