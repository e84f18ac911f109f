// Adding, changing and deleting: the catalogue's bytes before, one action, the bytes after.
#include <gmock/gmock.h>

#include "covlet/catalogue.h"
#include "covlet/item_actions.h"
#include "ctlfile/control_stream.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using namespace std::string_literals;
using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr ItemKind kKind = ItemKind::Coversheet;
const std::string kCatalogue = "F:\\BRIVANE\\B-COVER\\MSGDIR.CTL";
const std::string kTemporary = "F:\\BRIVANE\\B-COVER\\MSGDIR.TMP";

const std::string kHead = "[BRIVANE]\r\nType: CoverDir\r\n\r\n[DIRECTORY]\r\n";
const std::string kAlpha = "File: ALPHA    \"First\"\r\n";
const std::string kBeta = "File: BETA     \"New\"\r\n";
const std::string kMemo = "File: MEMO     \"Short\"\r\n";
const std::string kLater = "[SHARE]\r\nOwner: IRIS\r\n";
const std::string kLongLine = "File: LIMA \"" + std::string(1000, 'x') + "\t\"\x01\x80 \r\n";

std::string Entry(const std::string& name, const std::string& description) {
    return "File: " + name + std::string(8 - name.size(), ' ') + " \"" + description + "\"\r\n";
}

struct Addition {
    std::string Before;
    std::string Name;
    std::string Description;
    std::string After;
};

const Addition kAdditions[] = {
    {kHead + kAlpha + kMemo, "BETA", "New", kHead + kAlpha + kBeta + kMemo},
    {kHead + kAlpha + kMemo, "ZEBRA", "", kHead + kAlpha + kMemo + Entry("ZEBRA", "")},
    {kHead + kMemo + kAlpha, "BETA", "New", kHead + kBeta + kMemo + kAlpha}, // sorted or not
    {kHead + "file: beta x\r\nFILE= memo\r\n", "BETA", "New", kHead + "file: beta x\r\n" + kBeta + "FILE= memo\r\n"},
    // limits and letters of the new line
    {kHead, "QUARTERLY", "\"B\xFCro\"\r\n[X]", kHead + Entry("QUARTERL", "\"B\xFCro\"  [X]")},
    {kHead, "A", std::string(51, 'd'), kHead + Entry("A", std::string(50, 'd'))},
    // comments, empty lines, line ends
    {kHead + ";File: ZULU \"\"\r\n" + kAlpha + ";", "BETA", "New",
     kHead + ";File: ZULU \"\"\r\n" + kAlpha + ";\r\n" + kBeta},
    {"\r\n\n" + kHead + "\r\n" + kAlpha + "\n \r\n" + kMemo + "\r\n\r\n", "BETA", "New",
     "\r\n\n" + kHead + kAlpha + " \r\n" + kBeta + kMemo},
    {"[DIRECTORY]\nFile: ALPHA\t\"x\"\nFile: MEMO", "BETA", "New",
     "[DIRECTORY]\nFile: ALPHA\t\"x\"\n" + kBeta + "File: MEMO"},
    {kHead + "File: ALPHA", "BETA", "New", kHead + "File: ALPHA\r\n" + kBeta},
    {"; c\r\n[directory] of coversheets", "BETA", "New", "; c\r\n[directory] of coversheets\r\n" + kBeta},
    // long and odd lines
    {kHead + kLongLine + kMemo, "LONDON", "", kHead + kLongLine + Entry("LONDON", "") + kMemo},
    {kHead + "no name\r\nFile:\r\n\tA: ZULU\0\r"s + "\n" + kLongLine, "MIKE", "",
     kHead + "no name\r\nFile:\r\n" + Entry("MIKE", "") + "\tA: ZULU\0\r"s + "\n" + kLongLine},
    // later paragraphs are compared, too, and what sorts last goes to the end of the file
    {kHead + kAlpha + kLater, "BETA", "New", kHead + kAlpha + "[SHARE]\r\n" + kBeta + "Owner: IRIS\r\n"},
    {kHead + kAlpha + kLater, "ZEBRA", "", kHead + kAlpha + kLater + Entry("ZEBRA", "")},
    // no paragraph
    {"[BRIVANE]\r\nType: X", "BETA", "New", "[BRIVANE]\r\nType: X\r\n\r\n[DIRECTORY]\r\n" + kBeta},
    {"[BRIVANE]\n\n", "BETA", "New", "[BRIVANE]\n\n[DIRECTORY]\r\n" + kBeta},
    {"", "BETA", "New", "[DIRECTORY]\r\n" + kBeta},
};

TEST(AddCatalogueEntry, InsertsOneLineAndKeepsTheOthersByteForByte) {
    for (const auto& [before, name, description, after] : kAdditions) {
        MemoryServer server;
        server.Load();
        server.Put(kCatalogue, before);
        EXPECT_TRUE(AddCatalogueEntry(kKind, name, description));
        EXPECT_EQ(server.Get(kCatalogue), after);
        EXPECT_EQ(server.Get(kTemporary), "(none)");
        EXPECT_THAT(server.Front.Said, IsEmpty());
    }
}

struct Change {
    std::string Before;
    std::string Name;
    std::optional<std::string> Description; // none: delete
    std::string After;
};

const Change kChanges[] = {
    {kHead + kAlpha + kMemo, "ALPHA", "F\xFCr B", kHead + "File: ALPHA \"F\xFCr B\"\r\n" + kMemo},
    {kHead + kAlpha + kMemo, "alpha", "", kHead + "File: alpha \"\"\r\n" + kMemo},
    {kHead + kAlpha + kMemo, "ALPHA", {}, kHead + kMemo},
    {kHead + kAlpha, "ALPHA", {}, kHead},
    {kHead + kAlpha + "; c\r\nfile:ALPHA\r\n", "ALPHA", {}, kHead + "; c\r\n"}, // every entry of that name
    {kAlpha + "[DIRECTORY] 2\r\n" + kAlpha + "[Directory] \r\n" + kAlpha + "[X]\r\n" + kAlpha, "ALPHA", std::nullopt,
     kAlpha + "[DIRECTORY] 2\r\n" + kAlpha + "[Directory]\r\n[X]\r\n" + kAlpha},
    {"\n[DIRECTORY]\nFile: ALPHA\t\"x\"\n\n" + std::string(300, 'x') + "\nFile: MEMO\t\"y\" \t", "ALPHA", std::nullopt,
     "\r\n[DIRECTORY]\r\n\r\n" + std::string(280, 'x') + "\r\nFile: MEMO \"y\"\r\n"},
};

TEST(ChangeCatalogueEntry, ReplacesOrDropsTheLinesOfOneEntry) {
    for (const auto& [before, name, description, after] : kChanges) {
        MemoryServer server;
        server.Load();
        server.Put(kCatalogue, before);
        EXPECT_TRUE(description ? ChangeCatalogueEntry(kKind, name, *description) : DeleteCatalogueEntry(kKind, name));
        EXPECT_EQ(server.Get(kCatalogue), after);
        EXPECT_EQ(server.Get(kTemporary), "(none)");
        EXPECT_THAT(server.Front.Said,
                    ElementsAre("status 1: Updating file " + kCatalogue, "status 1: Updated file " + kCatalogue));
    }
}

TEST(ChangeCatalogueEntry, SaysThatAnEntryIsGone) {
    for (const std::string& before : {std::string(), kHead + ";" + kAlpha + " " + kAlpha + "File= ALPHA\r\n" + kMemo}) {
        MemoryServer server;
        server.Load();
        server.Put(kCatalogue, before);
        EXPECT_FALSE(ChangeItem(kKind, {"ALPHA", "old"}, "new") || DeleteCatalogueEntry(kKind, "ALPHA"));
        EXPECT_EQ(server.Get(kCatalogue), before);
        const std::string said = "error: There is no coversheet ALPHA in the catalogue";
        EXPECT_THAT(server.Front.Said, ElementsAre(said, said));
    }
}

TEST(CatalogueRewrites, WaitForALockedFileAndThenNameIt) {
    const struct {
        std::string Locked;
        std::string SaidByAdding;
        std::string SaidByChanging;
    } cases[] = {
        {kCatalogue, "error: Unable to open file " + kCatalogue, "error: Unable to open file " + kCatalogue},
        {kTemporary, "error: Could not create temporary MSGDIR.TMP file", "error: Unable to open file " + kTemporary},
    };
    for (const auto& [path, saidByAdding, saidByChanging] : cases) {
        MemoryServer server;
        server.Load();
        server.Put(kCatalogue, kHead + kAlpha);
        server.Put(kTemporary, "");
        const ControlStream locked = OpenShared(path, "rb");
        const std::int64_t start = server.Clock.Ticks();
        EXPECT_FALSE(AddCatalogueEntry(kKind, "BETA", ""));
        const std::int64_t added = server.Clock.Ticks();
        EXPECT_FALSE(DeleteCatalogueEntry(kKind, "ALPHA"));
        EXPECT_EQ((added - start) / 1000, 5);
        EXPECT_EQ((server.Clock.Ticks() - added) / 1000, 10);
        EXPECT_THAT(server.Front.Said, ElementsAre(saidByAdding, saidByChanging));
        EXPECT_EQ(server.Get(kCatalogue), kHead + kAlpha);
    }
}

} // namespace
} // namespace bv
