#include "covlet/catalogue.h"

#include <gmock/gmock.h>

#include "ctlfile/control_stream.h"
#include "support/memory_server.h"

namespace bv {
namespace {

using namespace std::string_literals;
using test::MemoryServer;
using test::VectorList;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using enum ItemKind;
using Texts = std::vector<std::string>;

const std::string kCovers = "F:\\BRIVANE\\B-COVER\\";
const std::string kLetters = "F:\\BRIVANE\\B-LETTER\\";

TEST(Catalogue, ListsItsEntries) {
    const std::string d = "[DIRECTORY]\r\n";
    const std::pair<std::string, Texts> cases[] = {
        {"", {}},
        {"\0\xFF[DIRECTORY]\n[DIR\0CTORY]\nFile: A \"a\"\n"s, {}},
        {"File: X \"x\"\r\n[BRIVANE]\r\nFile: Y \"y\"\r\n" + d + "File: MEMO     \"Short\"\r\n\r\n; File: C \"c\"\r\n" +
             " File: I \"i\"\r\nType: T \"t\"\r\nFile: ALPHA \"First\"\r\n" + d + "File: Z \"z\"\r\n",
         Texts{"MEMO\tShort", "ALPHA\tFirst"}},
        {"[directory] x\nfile:a \"A\"\nFILE: b,\"B\"", {"a\tA", "b\tB"}},
        {d + "File: TWELVE789012 \"a\"\r\nFile: THIRTEEN90123 \"b\"\r\n", {"TWELVE789012\ta"}},
        {d + "File: A\r\nFile:\r\nFile: B \"\"\r\nFile: C x y\r\nFile: D \"\r\n", {"B\t", "C\tx", "D\t"}},
        {d + "File: A \"" + std::string(51, 'x') + "\"\r\n", {"A\t" + std::string(50, 'x')}},
        {d + "File: B\t\"a\tb \x80\"\r\nFile: C \"so \"called\" one\"\r\n", {"B\ta b \x80", "C\tso "}},
        {"; " + std::string(3'000'000, 'x') + "\r\n" + d + "File: A \"a\"\r\n", {"A\ta"}},
    };
    for (const auto& [catalogue, entries] : cases) {
        SCOPED_TRACE(catalogue.substr(0, 100));
        MemoryServer server;
        server.Load();
        server.Put(kLetters + "MSGDIR.CTL", catalogue);
        VectorList list;
        list.Add("old");
        EXPECT_TRUE(ListCatalogue(Letterhead, list));
        EXPECT_THAT(list.Entries, ElementsAreArray(entries));
    }
}

TEST(Catalogue, OneThatCannotBeOpenedEmptiesTheListAndIsNamed) {
    MemoryServer server;
    server.Load();
    VectorList list;
    list.Add("old");
    EXPECT_FALSE(ListCatalogue(Coversheet, list));
    server.Put(kCovers + "MSGDIR.CTL", "[DIRECTORY]\r\nFile: A \"a\"\r\n");
    const ControlStream writer = OpenShared(kCovers + "MSGDIR.CTL", "r+b");
    const std::int64_t start = server.Clock.Ticks();
    EXPECT_FALSE(ListCatalogue(Coversheet, list));
    EXPECT_EQ((server.Clock.Ticks() - start) / 1000, 10);
    EXPECT_THAT(list.Entries, IsEmpty());
    const std::string said = "error: Unable to open file " + kCovers + "MSGDIR.CTL";
    EXPECT_THAT(server.Front.Said, ElementsAre(said, said));
}

TEST(Catalogue, FindsAnEntryByItsNameInAnyCase) {
    MemoryServer server;
    server.Load();
    ItemDescription description = "old";
    EXPECT_FALSE(IsCatalogued(Coversheet, "MEMO")) << "no catalogue";
    server.Put(kCovers + "MSGDIR.CTL", "[DIRECTORY]\r\nFile: MEMORY \"m\"\r\nFile: Memo \"Short\"\r\nFile: BARE\r\n");
    EXPECT_TRUE(IsCatalogued(Coversheet, "mEMO"));
    EXPECT_TRUE(IsCatalogued(Coversheet, "BARE"));
    EXPECT_FALSE(IsCatalogued(Letterhead, "MEMO"));
    EXPECT_FALSE(GetDescription(Coversheet, "MEM", description));
    EXPECT_EQ(description, "old");
    EXPECT_TRUE(GetDescription(Coversheet, "memo", description));
    EXPECT_EQ(description, "Short");
}

TEST(Catalogue, OffersTheFilesThatAreNotInItYet) {
    MemoryServer server;
    server.Load();
    for (const char* file : {"ALPHA.EPN", "beta.epn", "DELTA.G3F", "GAMMA.EPNX", "GAMMA.EPN", "TWO.DOTS.EPN"})
        server.Put(kCovers + file, "");
    for (const char* file : {"LEEDS.G3F", "LONDON.G3N", "LONDON.G3F", "munich.G3N", "ROME.G3X", "ROME.EPN", "OSLO.g3n"})
        server.Put(kLetters + file, "");
    VectorList covers;
    ListInstallable(Coversheet, covers);
    EXPECT_THAT(covers.Entries, ElementsAre("ALPHA", "beta", "GAMMA", "TWO.DOTS")) << "no catalogue";
    server.Put(kCovers + "MSGDIR.CTL", "[DIRECTORY]\r\nFile: alpha \"a\"\r\nFile: TWO\r\n");
    server.Put(kLetters + "MSGDIR.CTL", "[DIRECTORY]\r\nFile: Munich \"m\"\r\n");
    covers.Entries = {"gamma"};
    ListInstallable(Coversheet, covers);
    EXPECT_THAT(covers.Entries, ElementsAre("gamma", "beta", "TWO.DOTS"));
    VectorList letters;
    ListInstallable(Letterhead, letters);
    EXPECT_THAT(letters.Entries, ElementsAre("LEEDS", "LONDON", "OSLO"));
}

TEST(Catalogue, ANewItemNeedsANameAndFilesAndMustNotBeThereYet) {
    const std::tuple<ItemKind, const char*, const char*, Texts> cases[] = {
        {Coversheet, "", "", {"error: Please specify a coversheet file name"}},
        {Letterhead, "", "", {"error: Please specify a letterhead file name"}},
        {Coversheet, "zulu", "ZULU",
         Texts{"error: ZULU coversheet files (*.EPN, *.G3N, *.G3F) not found in " + kCovers + " directory"}},
        {Letterhead, "draft", "DRAFT",
         Texts{"error: DRAFT letterhead files (*.G3N, *.G3F) not found in " + kLetters + " directory"}},
        {Coversheet, "nul", "NUL",
         Texts{"error: Name: \"NUL\" - Windows keeps CON, PRN, AUX, NUL, "
               "COM1 "
               "to COM9 and LPT1 to LPT9 for devices."}},
        {Letterhead, "a.", "A.",
         Texts{"error: Name: \"A.\" - no file name has a dot at its "
               "end."}},
        {Coversheet, "there", "THERE", {"error: Coversheet THERE is already installed"}},
        {Letterhead, "there", "THERE", {"error: Coversheet THERE is already installed"}},
        {Coversheet, "draft", "DRAFT", {}},
        {Coversheet, "Pages", "PAGES", {}},
        {Letterhead, "Pages", "PAGES", {}},
        {Coversheet, "fine", "FINE", {}},
        {Letterhead, "fine", "FINE", {}},
    };
    MemoryServer server;
    server.Load();
    for (const std::string& directory : {kCovers, kLetters}) {
        server.Put(directory + "MSGDIR.CTL", "[DIRECTORY]\r\nFile: There \"t\"\r\n");
        for (const char* file : {"THERE.G3F", "DRAFT.EPN", "PAGES.G3N", "FINE.G3F", "ZULU.G3X"})
            server.Put(directory + file, "");
    }
    for (const auto& [kind, typed, upper, said] : cases) {
        ItemName name = typed;
        EXPECT_EQ(CheckNewItem(kind, name), said.empty()) << KindWord(kind) << typed;
        EXPECT_EQ(name, upper);
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAreArray(said));
    }
}

} // namespace
} // namespace bv
