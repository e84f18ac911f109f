// Countries, areas and regions: what is read, what a change makes of each text, and what faults leave.
#include "lcr/destinations.h"

#include <functional>

#include <gmock/gmock.h>

#include "lcr/destination_edit.h"
#include "shell/startup.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using platform::FileError;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kNewRegions = "[BRIVANE]\nType: Region\nRevision: A\n\n[REGIONS]\n";
const std::string kNewCountries = "[BRIVANE]\nType: Country\nRevision: A\n\n[COUNTRIES]\n";
const std::string kRegions = "[BRIVANE]\nType: Region\nRevision: A\n\n[REGIONS]\nRegion: EUROPE, \"All of it\"\n"
                             "Match: UK\n; kept\nMatch: FR/PAR\nRegion: EU, \"Union\"\nMatch: 33\n\n";
const std::string kCountries = "[BRIVANE]\nType: Country\nRevision: A\n\n[COUNTRIES]\n"
                               "+0044: UK, \"United Kingdom\", 7 x\n33: FR, \"France\", 0\nno country\n"
                               "1: USA, \"\", 0\n\n[SYNONYMS]\nGB, UK\n";
const std::string kAreas = "[AREAS]\nArea: LON, \"London\"\nMatch: 171*\nMatch: 181\nUnknown: x\nArea: LEEDS, \"\"\n";

struct DestinationServer : MemoryServer {
    DestinationServer() {
        Load();
        PutFile("Region.ini", kRegions);
        PutFile("Country.ini", kCountries);
        PutFile("Area44.ini", kAreas);
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
    std::vector<std::string> Left() {
        std::vector<std::string> names = Files.List(kBase, "*.ne?");
        return names;
    }
};

TEST(Destinations, AreReadWithTheirAreasAndFoundByReference) {
    DestinationServer server;
    Destinations all;
    ASSERT_TRUE(LoadDestinations(all));
    EXPECT_THAT(all.Regions(),
                ElementsAre(RegionEntry{"EUROPE", "All of it", {"UK", "FR/PAR"}}, RegionEntry{"EU", "Union", {"33"}}));
    const AreaEntry london{"LON", "London", {"171*", "181"}};
    EXPECT_THAT(all.Countries(),
                ElementsAre(CountryEntry{"UK", "United Kingdom", "44", "7 x", true, {london, {"LEEDS", "", {}}}},
                            CountryEntry{"FR", "France", "33", "0"}, CountryEntry{"USA", "", "1", "0"}));
    const auto toName = [&](std::string_view text) { return all.Convert(text, ReferenceForm::Identifier); };
    const auto toCode = [&](std::string_view text) { return all.Convert(text, ReferenceForm::DiallingCode); };
    EXPECT_EQ(toName("0044/lon"), "UK/LON");
    EXPECT_EQ(toName("uk"), "UK");
    EXPECT_EQ(toCode("uk/Leeds"), "44/LEEDS");
    for (const char* missing : {"", "/", "UK/", "UK/LO", "45", "FR/PAR", "USA/NY/X", "\xC4"})
        EXPECT_EQ(toName(missing), std::nullopt) << missing;

    EXPECT_EQ(FindDestinationName(all, "44/leeds"), "LEEDS, United Kingdom");
    EXPECT_EQ(FindDestinationName(all, "1"), "USA");
    EXPECT_EQ(FindDestinationName(all, "UK/PAR"), "<Not found>");
    EXPECT_EQ(FindRegionName(all, "eu"), "Union");
    EXPECT_EQ(FindRegionName(all, "E"), "<Not found>");
    EXPECT_THAT(server.Front.Said, IsEmpty());
    EXPECT_EQ(ConvertReference(all, "FR/PAR", ReferenceForm::Identifier), std::nullopt);
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File error: couldn't open " + kBase + "Area33.ini"));
}

TEST(Destinations, LieInARegion) {
    DestinationServer server;
    server.PutFile("Region.ini", "[REGIONS]\nRegion: R, \"\"\nMatch: 44/LON\nMatch: NOPE\nMatch: FR\nMatch: UK/NOPE\n");
    Destinations all;
    ASSERT_TRUE(LoadDestinations(all));
    for (const char* in : {"UK/LON", "uk/lon", "44/LON", "FR", "33", "fr/par", "FRANCE"})
        EXPECT_TRUE(all.RegionContains("r", in)) << in;
    for (const char* out : {"UK", "UK/LEEDS", "UK/LOND", "NOPE", "F", "", "UK/NOPE"})
        EXPECT_FALSE(all.RegionContains("R", out)) << out;
    EXPECT_FALSE(all.RegionContains("NONE", "FR"));
}

TEST(Destinations, ThatAreMissingOrUnreadable) {
    DestinationServer server;
    for (const char* name : {"Area44.ini", "Region.ini", "Country.ini"}) {
        Destinations all;
        {
            const auto held =
                server.Files.Open(kBase + name, {platform::Access::Read, platform::Deny::ReadingAndWriting});
            EXPECT_FALSE(LoadDestinations(all)) << name;
        }
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: File error: couldn't open " + kBase + name));
        server.Files.Delete(kBase + name);
        EXPECT_TRUE(LoadDestinations(all));
        EXPECT_THAT(server.Front.TakeSaid(), IsEmpty());
    }
}

struct ChangeCase {
    const char* Name;
    const DestinationFile& File;
    std::string Before;
    MatchEntry Entry; // a country's only match is its dialling code; "-": delete it
    std::string After;
};

const ChangeCase kChanges[] = {
    {"the first that begins so is replaced, with its unknown lines", kRegionFile, kRegions,
     MatchEntry{"eu", "E", {"UK", "1"}},
     Replaced(kRegions, "Region: EUROPE, \"All of it\"\nMatch: UK\n; kept\nMatch: FR/PAR\n",
              "Region: eu, \"E\"\nMatch: UK\nMatch: 1\n")},
    {"a replaced last one takes the empty line with it", kRegionFile,
     "[REGIONS]\nRegion: A, \"\"\nMatch: X\n\n[OTHER]\nx\n", MatchEntry{"A", "B", {}},
     "[REGIONS]\nRegion: A, \"B\"\n[OTHER]\nx\n"},
    {"a new one takes the place of the empty line", kRegionFile, kRegions, MatchEntry{"ASIA", "", {"1"}},
     kRegions.substr(0, kRegions.size() - 1) + "Region: ASIA, \"\"\nMatch: 1\n"},
    {"and of what follows up to the next entry", kAreaFile, "[AREAS]\nArea: A, \"\"\n\njunk\nArea: Z, \"\"\n\n",
     MatchEntry{"B", "", {}}, "[AREAS]\nArea: A, \"\"\nArea: B, \"\"\nArea: Z, \"\"\n\n"},
    {"a new one before the next header", kAreaFile, "[AREAS]\nArea: A, \"\"\n[NEXT]\nArea: B, \"\"\n",
     MatchEntry{"B", "", {"1*"}}, "[AREAS]\nArea: A, \"\"\nArea: B, \"\"\nMatch: 1*\n[NEXT]\nArea: B, \"\"\n"},
    {"into an empty list", kAreaFile, "[AREAS]\n\n[NEXT]\n", {"B", "", {}}, "[AREAS]\nArea: B, \"\"\n\n[NEXT]\n"},
    {"into a text without a list", kAreaFile, "x", {"B", "", {}}, "x\n[AREAS]\nArea: B, \"\"\n"},
    {"behind a last line without an end", kAreaFile, "[AREAS]\nArea: A, \"\"", MatchEntry{"B", "", {}},
     "[AREAS]\nArea: A, \"\"\nArea: B, \"\"\n"},
    {"deleting takes the exact one and leaves what is not its own", kRegionFile, kRegions,
     MatchEntry{"europe", "-", {}},
     Replaced(Replaced(kRegions, "Region: EUROPE, \"All of it\"\nMatch: UK\n", ""), "Match: FR/PAR\n", "")},
    {"deleting takes the exact one, not a longer one", kRegionFile, kRegions, MatchEntry{"EU", "-", {}},
     Replaced(kRegions, "Region: EU, \"Union\"\nMatch: 33\n", "")},
    {"a country is replaced by its beginning", kCountryFile, kCountries, MatchEntry{"US", "America", {"1"}},
     Replaced(kCountries, "1: USA, \"\", 0", "1: US, \"America\", 0")},
    {"a new country has an empty line behind it", kCountryFile, kCountries, MatchEntry{"DE", "Germany", {"49"}},
     Replaced(kCountries, "\n\n[SYN", "\n49: DE, \"Germany\", 0\n\n[SYN")},
    {"also at the end", kCountryFile, kNewCountries, {"DE", "", {"49"}}, kNewCountries + "49: DE, \"\", 0\n\n"},
    {"and before a header", kCountryFile, "[COUNTRIES]\n[SYNONYMS]\nx\n", MatchEntry{"DE", "", {"49"}},
     "[COUNTRIES]\n49: DE, \"\", 0\n\n[SYNONYMS]\nx\n"},
    {"a country is deleted", kCountryFile, kCountries, MatchEntry{"fr", "-", {}},
     Replaced(kCountries, "33: FR, \"France\", 0\n", "")},
};

std::string Changed(const ChangeCase& one, const std::string& before) {
    const bool isCountry = one.File.EntryKey.empty();
    if (one.Entry.Description == "-")
        return (isCountry ? WithoutCountry(before, one.Entry.Identifier)
                          : WithoutMatchEntry(one.File, before, one.Entry.Identifier))
            .value_or("(not found)");
    if (!isCountry) return WithMatchEntry(one.File, before, one.Entry);
    return WithCountry(before, {one.Entry.Identifier, one.Entry.Description, one.Entry.Matches.at(0), ""});
}

TEST(Destinations, AChangeTouchesItsEntryAlone) {
    for (const ChangeCase& one : kChanges) {
        const std::string after = Changed(one, Replaced(one.Before, "\n", "\r\n"));
        EXPECT_EQ(Replaced(after, "\r\n", "\n"), one.After) << one.Name;
    }
    EXPECT_EQ(WithoutMatchEntry(kRegionFile, kRegions, "E"), std::nullopt);
    EXPECT_EQ(WithoutCountry(kCountries, "U"), std::nullopt);
}

TEST(DestinationEditing, ReplacesTheLiveFilesTogetherOrNotAtAll) {
    DestinationServer server;
    DestinationEdit edit;
    ASSERT_TRUE(BeginDestinationEdit(edit));
    EXPECT_TRUE(WriteArea(edit, "44", edit.Tables.FindCountry("UK")->Areas[0])) << "as it is";
    EXPECT_FALSE(edit.Changed);
    EXPECT_THAT(server.Left(), ElementsAre("Country.new", "Region.new"));
    EXPECT_TRUE(WriteArea(edit, "44", {"YORK", "", {"1904*"}}));
    EXPECT_TRUE(WriteCountry(edit, {"DE", "Germany", "49", ""}));
    EXPECT_TRUE(WriteArea(edit, "49", {"B", "Berlin", {"30*"}}));
    EXPECT_TRUE(DeleteRegion(edit, "EU"));
    EXPECT_FALSE(DeleteRegion(edit, "EU"));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: There is no region EU"));
    EXPECT_EQ(edit.Tables.Convert("de/b", ReferenceForm::DiallingCode), "49/B");
    EXPECT_EQ(edit.Tables.Convert("UK/YORK", ReferenceForm::Identifier), "UK/YORK");
    EXPECT_TRUE(DeleteCountry(edit, "UK") && WriteCountry(edit, {"UK", "", "44", ""}));
    EXPECT_EQ(edit.Tables.Convert("UK/YORK", ReferenceForm::Identifier), "UK/YORK") << "its areas have stayed";
    EXPECT_THAT(server.Left(), ElementsAre("Area44.new", "Area49.new", "Country.new", "Region.new"));
    EXPECT_EQ(server.GetFile("Area44.ini"), kAreas);

    EXPECT_FALSE(AbandonDestinationEdit(edit)) << "the answer was No";
    server.PutFile("Region.ini", kNewRegions);
    EXPECT_FALSE(CommitDestinationEdit(edit)) << "somebody else has changed one meanwhile";
    EXPECT_EQ(server.GetFile("Region.ini"), kNewRegions);
    server.PutFile("Region.ini", kRegions);
    Startup().SettingsChanged = false;
    ASSERT_TRUE(CommitDestinationEdit(edit));
    EXPECT_TRUE(Startup().SettingsChanged);
    EXPECT_EQ(server.GetFile("Area44.ini"), kAreas + "Area: YORK, \"\"\nMatch: 1904*\n");
    EXPECT_EQ(server.GetFile("Area49.ini"),
              "[BRIVANE]\nType: Area\nRevision: A\n\n[AREAS]\nArea: B, \"Berlin\"\nMatch: 30*\n");
    EXPECT_THAT(server.Left(), IsEmpty());
    EXPECT_THAT(server.Files.List(kBase, "A*"), ElementsAre("Area44.ini", "Area49.ini"));
}

TEST(DestinationEditing, WithoutFilesBeginsWithEmptyOnesAndLeavesNoneWhenAbandoned) {
    DestinationServer server;
    server.Files.Delete(kBase + "Region.ini");
    server.Files.Delete(kBase + "Country.ini");
    DestinationEdit edit;
    ASSERT_TRUE(BeginDestinationEdit(edit));
    EXPECT_EQ(server.GetFile("Region.new"), kNewRegions);
    EXPECT_EQ(server.GetFile("Country.new"), kNewCountries);
    EXPECT_TRUE(WriteRegion(edit, {"EU", "", {"UK"}}));
    server.Front.Answer = true;
    EXPECT_TRUE(AbandonDestinationEdit(edit));
    EXPECT_THAT(server.Front.TakeSaid(),
                ElementsAre("ask warning: This will mean all changes will be lost.  Lose changes?"));
    EXPECT_THAT(server.Left(), IsEmpty());
    EXPECT_EQ(server.GetFile("Region.ini"), "(none)");
}

// Loses the file that is to be replaced, and makes no other.
class LosingFiles final : public platform::FileSystem {
  public:
    explicit LosingFiles(platform::FileSystem& wrapped) : wrapped_(wrapped) {}

    platform::OpenResult Open(const std::string& path, const platform::OpenRequest& request) override {
        const bool isRefused = hasLost_ && request.How != platform::Creation::OpenExisting;
        return isRefused ? platform::OpenResult{nullptr, FileError::DiskFull} : wrapped_.Open(path, request);
    }
    FileError Replace(const std::string&, const std::string& to) override {
        hasLost_ = true;
        wrapped_.Delete(to);
        return FileError::Failed;
    }
    FileError Delete(const std::string& path) override { return wrapped_.Delete(path); }
    FileError Rename(const std::string&, const std::string&) override { return FileError::Failed; }
    std::optional<platform::FileInfo> Find(const std::string& path) override { return wrapped_.Find(path); }
    FileError ReadDirectory(const std::string& directory, std::string_view pattern,
                            std::vector<std::string>& names) override {
        return wrapped_.ReadDirectory(directory, pattern, names);
    }
    FileError MakeDirectory(const std::string& path) override { return wrapped_.MakeDirectory(path); }
    FileError RemoveEmptyDirectory(const std::string& path) override { return wrapped_.RemoveEmptyDirectory(path); }

  private:
    platform::FileSystem& wrapped_;
    bool hasLost_ = false;
};

TEST(DestinationEditing, SaysThatAWorkingCopyIsLostAndCommitsNothing) {
    DestinationServer server;
    DestinationEdit edit;
    ASSERT_TRUE(BeginDestinationEdit(edit) && WriteRegion(edit, {"ASIA", "", {"1"}}));
    {
        LosingFiles losing(server.Files);
        const platform::Substitute<platform::FileSystem> use(losing);
        EXPECT_FALSE(WriteRegion(edit, {"AFRICA", "", {"27"}}));
    }
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to update file " + kBase + "Region.new",
                                                     "error: Error updating file " + kBase + "Region.new"));
    EXPECT_FALSE(CommitDestinationEdit(edit));
    DropDestinationEdit(edit);
    EXPECT_EQ(server.GetFile("Region.ini"), kRegions);
    EXPECT_THAT(server.Left(), IsEmpty());
}

} // namespace
} // namespace bv::test
