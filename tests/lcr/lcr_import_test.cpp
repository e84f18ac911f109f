// Rules and destinations from files of comma-separated values: what is said of each row, and the files after.
#include <gmock/gmock.h>

#include "lcr/destination_import.h"
#include "lcr/rule_file.h"
#include "lcr/rule_import.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::ElementsAre;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kRules = "[BRIVANE]\nType: LCRRules\nRevision: A\n\n"
                           "[RULE]\nDescription: One\nCountry: UK\n; kept\nServer: LON\n\n"
                           "[RULE]\nDescription: Twin\nServer: LON\n\n[RULE]\nDescription: Twin\nServer: LON\n\n";

struct ImportServer : MemoryServer {
    ImportServer() {
        Load();
        Put("F:\\BRIVANE\\B-REQ\\QUEUE", "");
        PutFile("USERLIST.INI", "[USER]\nName: ANN\n");
        PutFile("LINK.INI", "[LINK]\nRemoteServerID: LON\n");
        PutFile("REGION.INI", "[REGIONS]\nRegion: EUROPE, \"All\"\nMatch: UK\n");
        PutFile("COUNTRY.INI", "[COUNTRIES]\n44: UK, \"Kingdom\", 0\n33: FR, \"\", 0\n");
        PutFile("Area44.ini", "[AREAS]\nArea: LON, \"London\"\nMatch: 171*\n");
        PutFile("LCRRULES.INI", kRules);
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
};

// A line for each row: what it would do, the name, and each note with its column.
std::vector<std::string> Check(CsvImport& import, const std::string& text) {
    const CsvTable table = ReadCsvTable(text, import.Columns(), import.Title());
    EXPECT_TRUE(table.Faults.empty());
    std::vector<std::string> lines;
    const auto verdicts = import.Check(table);
    for (const RowVerdict& verdict : verdicts.value()) {
        std::string line = std::string(1, "+*=!"[static_cast<std::size_t>(verdict.State)]);
        if (verdict.State != RowState::Wrong) line += " " + verdict.Name;
        for (const auto& [column, note] : verdict.Notes) line += " | " + std::to_string(column) + " " + note;
        lines.push_back(line);
    }
    return lines;
}

ImportCounts Apply(CsvImport& import) {
    return import.Apply([](std::size_t) { return true; });
}

TEST(RuleImport, JudgesEachRowAndTakesThemInOneSave) {
    ImportServer server;
    RuleImport import;
    EXPECT_THAT(Check(import, "User,Description,Size,Server\n,one,,MARS\n,One,,LON\nANN,,,LON\nANN,Twin,,LON\n"
                              "ANN,Three,many,LON\nANN,Four,,\n,Five,,LON\n"),
                ElementsAre("! | 4 Server: \"MARS\" is not defined", "! | 2 Description: \"One\" is there twice",
                            "! | 2 Description: \"\" - a rule needs a description",
                            "! | 2 Description: \"Twin\" - there are several rules of that name",
                            "! | 3 Size: \"many\" is not PAGES GE n or PAGES LE n with n from 1 to 100, or nothing",
                            "! | 2 You must select some remote servers, or allow the local server to be used",
                            "+ Five"));
    EXPECT_THAT(Check(import, "Description,User,Server\nNew,ANN,*\none,ANN,\"LON,*\"\n"),
                ElementsAre("+ New", "* one | 2 User: \"\" -> \"ANN\" | 3 Server: \"LON\" -> \"LON,*\""));
    EXPECT_THAT(server.Front.TakeSaid(), testing::IsEmpty());
    EXPECT_EQ(Apply(import), (ImportCounts{1, 1}));
    const std::string after = Replaced(kRules, "Country: UK\n; kept\nServer: LON\n",
                                       "Country: UK\nUser: ANN\n; kept\nServer: LON\nServer: *\n") +
                              "[RULE]\nDescription: New\nUser: ANN\nServer: *\n\n";
    EXPECT_EQ(server.GetFile("LCRRULES.INI"), after);

    server.PutFile("LCRRULES.INI", kRules.substr(0, kRules.find("[RULE]\nDescription: Twin")));
    EXPECT_THAT(Check(import, RulesAsCsv(ReadRules().value())), ElementsAre("= One"));

    server.PutFile("LCRRULES.NEW", kRules);
    EXPECT_FALSE(import.Check({}));
}

TEST(DestinationImport, JudgesEachRowAndTakesThemInOneEdit) {
    ImportServer server;
    DestinationImport import;
    EXPECT_THAT(
        Check(import, "Kind,Country,Identifier,DiallingCode,Matches\n"
                      "planet,,MARS,,\ncountry,,X,,\ncountry,,UK,45,\narea,DE,B,,1*\narea,uk,X,,1x\n"
                      "region,,EU,,UK\nregion,,ASIA,,JP\ncountry,,FR,33,\ncountry,,fr,33,\n"),
        ElementsAre("! | 1 Kind: \"planet\" is not country, area or region",
                    "! | 4 DiallingCode: \"\" is not a dialling code of 1 to 19 digits that does not begin with 0",
                    "! | 4 DiallingCode: \"45\" - the areas of country UK are kept under 44; delete them first",
                    "! | 2 Country: \"DE\" is no country that is there",
                    "! | 5 Matches: \"1x\" is not a number, or the beginning of one and *",
                    "! | 3 Identifier: \"EU\" would take the place of EUROPE, which begins with the same name",
                    "! | 5 Matches: \"JP\" is not a country or an area that is there", "= FR",
                    "! | 3 Identifier: \"fr\" is there twice"));
    // what a row refers to may stand below it
    EXPECT_THAT(Check(import, "Kind,Country,Identifier,DiallingCode,Matches\nregion,,NEW,,DE/BER\n"
                              "area,DE,BER,,30*\ncountry,,DE,49,\narea,44,LON,,171* 20*\n"),
                ElementsAre("+ NEW", "+ DE/BER", "+ DE", "* UK/LON | 5 Matches: \"171*\" -> \"171* 20*\""));
    EXPECT_EQ(Apply(import), (ImportCounts{3, 1}));
    EXPECT_EQ(server.GetFile("COUNTRY.INI"),
              "[COUNTRIES]\n44: UK, \"Kingdom\", 0\n33: FR, \"\", 0\n49: DE, \"\", 0\n\n");
    EXPECT_EQ(server.GetFile("REGION.INI"),
              "[REGIONS]\nRegion: EUROPE, \"All\"\nMatch: UK\nRegion: NEW, \"\"\nMatch: DE/BER\n");
    EXPECT_EQ(server.GetFile("Area44.ini"), "[AREAS]\nArea: LON, \"London\"\nMatch: 171*\nMatch: 20*\n");
    EXPECT_THAT(server.GetFile("Area49.ini"), testing::EndsWith("[AREAS]\nArea: BER, \"\"\nMatch: 30*\n"));
    Destinations places;
    ASSERT_TRUE(LoadDestinations(places));
    EXPECT_THAT(Check(import, DestinationsAsCsv(places)), testing::Each(testing::StartsWith("= ")));
    EXPECT_THAT(server.Files.List(kBase, "*.ne?"), testing::IsEmpty());
}

} // namespace
} // namespace bv::test
