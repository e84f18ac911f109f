#include "ctlfile/leftover.h"

#include <gmock/gmock.h>

#include "ctlfile/reading.h"
#include "ctlfile/rewriter.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kPath = "F:\\X\\SETUP.INI";
const std::string kTemporary = "F:\\X\\SETUP.TMP";
const std::string kSaved = "F:\\X\\SETUP.SAV";
const std::string kTorn = "[A]\r\nk: 1\r\nm: 2\r\nm: 2\r\n";
const std::string kWhole = "[A]\r\nk: 1\r\nl: 2\r\nm: 2\r\n";

struct LeftoverScene {
    MemoryServer Server;

    LeftoverScene(const std::string& control, const std::string& temporary, int secondsLater = 0) {
        ForgetSaidLeftovers();
        Server.Clock.Milliseconds = 1'000'000;
        Server.Put(kPath, control);
        Server.Clock.Milliseconds += 1000 * secondsLater;
        if (temporary != "(none)") Server.Put(kTemporary, temporary);
    }
    std::vector<std::string> SaidByReader() {
        EXPECT_TRUE(OpenForReading(kPath));
        return Server.Front.TakeSaid();
    }
    std::vector<std::string> SaidByWriter() {
        EXPECT_TRUE(UpdateControlFile(kPath, {"[A]", "k:", "3"}));
        EXPECT_EQ(Server.Get(kTemporary), "(none)");
        return Server.Front.TakeSaid();
    }
};

TEST(Leftover, IsSaidByReadersAndPutAsideByWriters) {
    const std::string general = "[BRIVANE]\r\nType: Country\r\n";
    const struct {
        const char* Name;
        std::string Control;
        std::string Temporary;
        int SecondsLater;
        bool IsLeft;
    } cases[] = {
        {"none", kTorn, "(none)", 0, false},
        {"new text, as old as the file", kTorn, kWhole, 0, true},
        {"written before the file was copied over", kTorn, kWhole, -60, true},
        {"long before the file", kTorn, kWhole, -61, false},
        {"the same text", kWhole, kWhole, 1, false},
        {"another header", kTorn, "[B]\r\nk: 1\r\n", 1, false},
        {"header in another case, below a comment", "; x\r\n" + kTorn, "[a]\r\nk: 9\r\n", 1, true},
        {"no header", kTorn, "k: 1\r\n", 1, false},
        {"nothing at all", kTorn, "", 1, false},
        {"the file was cut to nothing", "", kWhole, 1, true},
        {"the general header and one type", general + "a\r\n", general + "b\r\n", 1, true},
        {"the general header and another type", general, "[BRIVANE]\r\nType: Region\r\n", 1, false},
    };
    for (const auto& [name, control, temporary, secondsLater, isLeft] : cases) {
        SCOPED_TRACE(name);
        LeftoverScene scene(control, temporary, secondsLater);
        std::vector<std::string> said;
        if (isLeft)
            said = {"status 2: File " + kPath +
                    ": a save was cut off.  Its text may be complete in SETUP.TMP; 'bvctl "
                    "recover' shows it"};
        EXPECT_EQ(scene.SaidByReader(), said);
        EXPECT_THAT(scene.SaidByReader(), IsEmpty()) << "once is enough";
        if (isLeft) said = {"status 2: File " + kPath + ": the text of a save that was cut off is kept as SETUP.SAV"};
        EXPECT_EQ(scene.SaidByWriter(), said);
        EXPECT_EQ(scene.Server.Get(kSaved), isLeft ? temporary : "(none)");
    }
}

TEST(Leftover, IsNoneWhileAWriterHoldsTheTemporary) {
    LeftoverScene scene(kTorn, kWhole);
    const ControlStream writer = OpenShared(kTemporary, "r+b");
    EXPECT_THAT(scene.SaidByReader(), IsEmpty());
    EXPECT_THAT(FindLeftovers(kPath, kTorn), IsEmpty());
    EXPECT_FALSE(UpdateControlFile(kPath, {"[A]", "k:", "3"}));
    EXPECT_EQ(scene.Server.Get(kPath), kTorn);
}

TEST(Leftover, PutAsideBeforeIsKeptAsWell) {
    LeftoverScene scene(kTorn, kWhole);
    for (const char* taken : {"SAV", "SA2", "SA3", "SA4", "SA5", "SA6", "SA7", "SA8"})
        scene.Server.Put("F:\\X\\SETUP." + std::string(taken), "[A]\r\n" + std::string(taken) + "\r\n");
    EXPECT_EQ(scene.SaidByWriter().size(), 1U);
    EXPECT_EQ(scene.Server.Get("F:\\X\\SETUP.SA9"), kWhole);
    const std::string newest = Replaced(kWhole, "l: 2", "l: 3");
    scene.Server.Put(kTemporary, newest);
    EXPECT_TRUE(UpdateControlFile(kPath, {"[A]", "k:", "4"})) << "the last one gives way";
    EXPECT_EQ(scene.Server.Get("F:\\X\\SETUP.SA9"), newest);
    EXPECT_EQ(scene.Server.Get(kTemporary), "(none)");

    std::vector<std::string> found;
    for (const Leftover& one : FindLeftovers(kPath, kTorn)) found.push_back(one.Path.substr(kPath.size() - 3));
    EXPECT_THAT(found, ElementsAre("SA9", "SA8", "SA7", "SA6", "SA5", "SA4", "SA3", "SA2", "SAV"));
}

} // namespace
} // namespace bv::test
