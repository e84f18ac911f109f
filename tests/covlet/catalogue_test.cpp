#include "covlet/catalogue.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <set>

#include "ctlfile/control_stream.h"
#include "shell/server_paths.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/samples.h"
#include "support/temporary_directory.h"

namespace bv {
namespace {

using namespace std::string_literals;
using test::MemoryServer;
using test::VectorList;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using enum ItemKind;

const std::string kCovers = "F:\\BRIVANE\\B-COVER\\";
const std::string kLetters = "F:\\BRIVANE\\B-LETTER\\";

TEST(Catalogue, ListsItsEntries) {
    const std::string d = "[DIRECTORY]\r\n";
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}},
        {"\0\xFF[DIRECTORY]\n[DIR\0CTORY]\nFile: A \"a\"\n"s, {}},
        {"File: X \"x\"\r\n[BRIVANE]\r\nFile: Y \"y\"\r\n" + d + "File: MEMO     \"Short\"\r\n\r\n; File: C \"c\"\r\n" +
             " File: I \"i\"\r\nType: T \"t\"\r\nFile: ALPHA \"First\"\r\n" + d + "File: Z \"z\"\r\n",
         {"MEMO\tShort", "ALPHA\tFirst"}},
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

// What an action says last, over all runs in which one look at the files fails, and one in which none does.
template <class Action>
std::set<std::string> SaidAtEachFailedLook(MemoryServer& server, const Action& action) {
    std::set<std::string> said;
    bool fired = true;
    for (int call = 1; fired; ++call) {
        test::FaultyFiles faulty(server.Files, {test::FaultKind::FailOnce, call, test::CallKind::Looks});
        const platform::Substitute<platform::FileSystem> substitute(faulty);
        server.Front.Said.assign(1, "nothing");
        action();
        said.insert(server.Front.Said.back());
        fired = faulty.Fired();
    }
    return said;
}

TEST(Catalogue, OneThatCannotBeReadToItsEndIsNamedAndNotShownInPart) {
    MemoryServer server;
    server.Load();
    const std::string path = kCovers + "MSGDIR.CTL";
    server.Put(path, "[DIRECTORY]\r\nFile: A \"a\"\r\n;" + std::string(40'000, 'x') + "\r\nFile: Z \"z\"\r\n");
    const std::string torn = "error: Unable to read file " + path + " to its end";
    const auto list = [] {
        VectorList entries;
        if (ListCatalogue(Coversheet, entries)) {
            EXPECT_EQ(entries.Entries.size(), 2U);
        } else {
            EXPECT_THAT(entries.Entries, IsEmpty());
        }
    };
    EXPECT_THAT(SaidAtEachFailedLook(server, list),
                UnorderedElementsAre(torn, "error: Unable to open file " + path, "nothing"));
    EXPECT_THAT(
        SaidAtEachFailedLook(server, [] { CheckNotInstalled(Coversheet, "Z"); }),
        UnorderedElementsAre(torn, "error: Unable to open file " + path, "error: Coversheet Z is already installed"));
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
    const std::tuple<ItemKind, const char*, const char*, std::vector<std::string>> cases[] = {
        {Coversheet, "", "", {"error: Please specify a coversheet file name"}},
        {Letterhead, "", "", {"error: Please specify a letterhead file name"}},
        {Coversheet,
         "zulu",
         "ZULU",
         {"error: ZULU coversheet files (*.EPN, *.G3N, *.G3F) not found in " + kCovers + " directory"}},
        {Letterhead,
         "draft",
         "DRAFT",
         {"error: DRAFT letterhead files (*.G3N, *.G3F) not found in " + kLetters + " directory"}},
        {Coversheet,
         "nul",
         "NUL",
         {"error: Name: \"NUL\" - Windows keeps CON, PRN, AUX, NUL, "
          "COM1 "
          "to COM9 and LPT1 to LPT9 for devices."}},
        {Letterhead,
         "a.",
         "A.",
         {"error: Name: \"A.\" - no file name has a dot at its "
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

std::string ReadSample(const std::string& path) {
    std::ifstream file(test::SamplesDirectory() + "/server/BRIVANE/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Catalogue, AddingAndDeletingOnARealDiskLeavesTheSamplesAsTheyWere) {
    const test::TemporaryDirectory disk;
    disk.Write("BRIVANE.INI",
               "[SERVER]\nAllUserArea: U\nRequestArea: R\nServerArea: S\nSystemArea: " + disk.Path() + "\n");
    disk.Write("B-DB\\SETUP.INI", "");
    test::FakeEnvironment environment;
    environment.Variables["BVAXINIT"] = disk.Path();
    const platform::Substitute<platform::Environment> substitute(environment);
    ASSERT_EQ(LoadServerPaths(), 0);
    for (const auto& [kind, folder] : {std::pair(Coversheet, "B-COVER"s), std::pair(Letterhead, "B-LETTER"s)}) {
        const std::string sample = ReadSample(folder + "/MSGDIR.CTL");
        disk.Write(folder + "\\MSGDIR.CTL", sample);
        EXPECT_TRUE(AddCatalogueEntry(kind, "PARIS", "B\xFCro Paris"));
        EXPECT_TRUE(ChangeCatalogueEntry(kind, "PARIS", "Paris"));
        EXPECT_EQ(FindCatalogued(kind, "paris").value_or(CatalogueEntry()).Description, "Paris");
        EXPECT_TRUE(DeleteCatalogueEntry(kind, "paris"));
        EXPECT_EQ(disk.Read(folder + "\\MSGDIR.CTL"), sample);
        EXPECT_FALSE(disk.Has(folder + "\\MSGDIR.TMP"));
    }
}

} // namespace
} // namespace bv
