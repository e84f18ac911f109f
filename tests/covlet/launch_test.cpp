#include "covlet/launch.h"

#include <gmock/gmock.h>

#include "support/memory_server.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Texts = std::vector<std::string>;

TEST(ViewItem, StartsTheViewerOnTheFirstGraphicsFile) {
    const std::string start = R"(restored: "F:\BRIVANE\BRIVANE.EXE" "F:\BRIVANE\B-LETTER\)";
    const std::tuple<const char*, unsigned long, Texts, Texts> cases[] = {
        {"both", 0, {start + "BOTH.G3F\""}, {}},
        {"Normal", 0, {start + "NORMAL.G3N\""}, {}},
        {"normal", 2, {start + "NORMAL.G3N\""}, {"error: Unable to run the viewer program"}},
        {"draft",
         0,
         {},
         {"warning: This coversheet cannot be viewed since graphics file DRAFT.G3F or DRAFT.G3N cannot be "
          "found in directory F:\\BRIVANE\\B-LETTER\\"}},
    };
    for (const auto& [name, systemError, started, said] : cases) {
        MemoryServer server;
        server.Load();
        for (const char* file : {"BOTH.G3F", "BOTH.G3N", "NORMAL.G3N", "DRAFT.EPN"})
            server.Put(std::string("F:\\BRIVANE\\B-LETTER\\") + file, "");
        server.Processes.SystemError = systemError;
        EXPECT_EQ(ViewItem(ItemKind::Letterhead, name), said.empty());
        EXPECT_THAT(server.Processes.Started, ElementsAreArray(started));
        EXPECT_THAT(server.Front.Said, ElementsAreArray(said));
    }
}

TEST(ItemEditor, IsRunOnTheItemAndWaitedFor) {
    MemoryServer server;
    server.Load();
    EXPECT_TRUE(RunItemEditor("*"));
    EXPECT_THAT(server.Processes.Started, ElementsAre("F:\\BRIVANE\\i386\\covedit.exe *"));
    EXPECT_THAT(server.Front.Said, testing::Contains("wait for program"));
    server.Processes.SystemError = 3;
    EXPECT_FALSE(RunItemEditor("MEMO"));
}

TEST(ItemEditor, ItsCommandNamesTheItemInItsPlaceOrAtTheEnd) {
    const std::pair<const char*, const char*> cases[] = {
        {"covedit.exe", "covedit.exe MEMO"},
        {" \tcovedit.exe /x", "covedit.exe /x MEMO"},
        {"covedit \"%FILE%.EPN\" /x", "covedit \"MEMO.EPN\" /x"},
        {"covedit %file%", "covedit MEMO"},
        {"covedit %FILE", "covedit %FILE MEMO"},
    };
    for (const auto& [command, line] : cases) EXPECT_EQ(EditorCommandLine(command, "MEMO"), line);
}

} // namespace
} // namespace bv
