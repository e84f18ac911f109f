// Editing destinations together with what refers to them: rules, regions and other names.
#include "lcr/destination_session.h"

#include <gmock/gmock.h>

#include "lcr/place_filter.h"
#include "shell/startup.h"
#include "support/memory_server.h"
#include "support/texts.h"

namespace bv::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Change = UseChange::Kind;

const std::string kBase = "F:\\BRIVANE\\B-DB\\";
const std::string kRules = "[BRIVANE]\nType: LCRRules\nRevision: A\n\n[RULE]\nDescription: One\nRegion: HOME\n"
                           "Country: 44\nServer: A\n\n[RULE]\nDescription: Two\nArea: UK/LON\nServer: A\n\n";
const std::string kRegions = "[REGIONS]\nRegion: HOME, \"\"\nMatch: UK/LON\nmatch: 44\nMatch: MARS\n; kept\n"
                             "Region: FAR, \"\"\nMatch: FR\n";
const std::string kCountries =
    "[COUNTRIES]\n44: UK, \"Kingdom\", 0\n33: FR, \"\", x\n\n[SYNONYMS]\nGB: UK\nLOND: UK/LON\n";
const std::string kAreas = "[AREAS]\nArea: LON, \"London\"\nMatch: 20*\nArea: LDS, \"\"\nMatch: 113*\n";

struct SessionServer : MemoryServer {
    SessionServer() {
        Load();
        Restore();
    }
    void Restore() {
        PutFile("REGION.INI", kRegions);
        PutFile("COUNTRY.INI", kCountries);
        PutFile("Area44.ini", kAreas);
        PutFile("LCRRULES.INI", kRules);
    }
    void PutFile(const std::string& name, const std::string& text) { Put(kBase + name, Replaced(text, "\n", "\r\n")); }
    std::string GetFile(const std::string& name) { return Replaced(Get(kBase + name), "\r\n", "\n"); }
    std::string All() {
        return GetFile("LCRRULES.INI") + GetFile("REGION.INI") + GetFile("COUNTRY.INI") + GetFile("Area44.ini");
    }
};

using Asked = std::vector<std::string>;

// Answers with the change, and notes the places.
AskAboutUses Answering(std::optional<UseChange> change, Asked& asked) {
    return [change, &asked](const std::vector<Use>& uses) {
        for (const Use& use : uses) asked.push_back(use.Where + ": " + use.Name + (use.Widens ? "!" : ""));
        return change;
    };
}

struct SessionCase {
    const char* Name;
    std::function<bool(DestinationSession&, const AskAboutUses&)> Do;
    std::optional<UseChange> Answer;
    Asked Uses;
    std::vector<std::pair<std::string, std::string>> Changed; // in all files
};

bool RenameCountry(DestinationSession& session, const AskAboutUses& ask) {
    CountryEntry entry = session.Places().Countries()[0];
    entry.Identifier = "GBR";
    return session.Save(CountryKind(), session.Places().Countries()[0], entry, ask).empty();
}
bool RenameArea(DestinationSession& session, const AskAboutUses& ask) {
    return session.Save(AreaKind{"44"}, session.Places().Countries()[0].Areas[0], {"LDN", "London", {"20*"}}, ask)
        .empty();
}
bool DeleteArea(DestinationSession& session, const AskAboutUses& ask) {
    return session.Delete({PlaceKind::Area, "lon", "44"}, ask);
}

const Asked kUsesOfCountry = {"rule 1 \"One\": 44", "rule 2 \"Two\": UK/LON!", "region HOME: UK/LON, 44",
                              "other name GB: UK", "other name LOND: UK/LON"};
const Asked kUsesOfNames = {"rule 2 \"Two\": UK/LON!", "region HOME: UK/LON", "other name GB: UK",
                            "other name LOND: UK/LON"};
const Asked kUsesOfLondon = {"rule 2 \"Two\": UK/LON!", "region HOME: UK/LON", "other name LOND: UK/LON"};
const std::pair<std::string, std::string> kCountryLine = {"44: UK, \"Kingdom\", 0\n33: FR, \"\", x\n",
                                                          "33: FR, \"\", x\n44: GBR, \"Kingdom\", 0\n"};

const SessionCase kCases[] = {
    {"a new name goes into all places, and codes stay",
     RenameCountry,
     UseChange{Change::Replace, "GBR"},
     kUsesOfNames,
     {kCountryLine, {"UK", "GBR"}}},
    {"or into none of them", RenameCountry, UseChange{}, kUsesOfNames, {kCountryLine}},
    {"or is not wanted", RenameCountry, std::nullopt, kUsesOfNames, {}},
    {"an area's new name",
     RenameArea,
     UseChange{Change::Replace, "LDN"},
     kUsesOfLondon,
     {{"UK/LON", "UK/LDN"},
      {"Area: LON, \"London\"\nMatch: 20*\n", ""},
      {"Match: 113*\n", "Match: 113*\nArea: LDN, \"London\"\nMatch: 20*\n"}}},
    {"what goes is taken out, and a rule may be left for every destination",
     DeleteArea,
     UseChange{Change::TakeOut},
     kUsesOfLondon,
     {{"Area: UK/LON\n", ""},
      {"Match: UK/LON\n", ""},
      {"LOND: UK/LON\n", ""},
      {"Area: LON, \"London\"\nMatch: 20*\n", ""}}},
    {"or the rule goes, too",
     DeleteArea,
     UseChange{Change::TakeOut, "", true},
     kUsesOfLondon,
     {{"[RULE]\nDescription: Two\nArea: UK/LON\nServer: A\n\n", ""},
      {"Match: UK/LON\n", ""},
      {"LOND: UK/LON\n", ""},
      {"Area: LON, \"London\"\nMatch: 20*\n", ""}}},
    {"a region stands in rules alone",
     [](DestinationSession& session, const AskAboutUses& ask) {
         return session.Delete({PlaceKind::Region, "home"}, ask);
     },
     UseChange{Change::TakeOut},
     {"rule 1 \"One\": HOME"},
     {{"Region: HOME\n", ""}, {"Region: HOME, \"\"\nMatch: UK/LON\nmatch: 44\nMatch: MARS\n", ""}}},
    {"a country, of which the areas stay",
     [](DestinationSession& session, const AskAboutUses& ask) {
         return session.Delete({PlaceKind::Country, "UK"}, ask);
     },
     UseChange{},
     kUsesOfCountry,
     {{"44: UK, \"Kingdom\", 0\n", ""}}},
    {"other names are added, changed and taken away in their lines",
     [](DestinationSession& session, const AskAboutUses& ask) {
         return session.SaveSynonym({}, {"LEEDS", "44/LDS"}).empty() &&
                session.SaveSynonym({"GB", "UK"}, {"Great Britain", "UK"}).empty() &&
                session.Delete({PlaceKind::Synonym, "LOND"}, ask);
     },
     UseChange{},
     {},
     {{"GB: UK\nLOND: UK/LON\n", "Great Britain: UK\nLEEDS: 44/LDS\n"}}},
};

TEST(DestinationSession, ChangesDestinationsWithWhatRefersToThem) {
    SessionServer server;
    server.Front.Answer = true;
    const std::string before = server.All();
    for (const SessionCase& one : kCases) {
        server.Restore();
        DestinationSession session;
        ASSERT_TRUE(session.Begin());
        Asked asked;
        EXPECT_EQ(one.Do(session, Answering(one.Answer, asked)), one.Answer.has_value()) << one.Name;
        EXPECT_EQ(asked, one.Uses) << one.Name;
        EXPECT_EQ(server.All(), before) << one.Name << ": before it is saved";
        EXPECT_TRUE(session.Commit());
        std::string expected = before;
        for (const auto& [from, to] : one.Changed) {
            EXPECT_THAT(expected, testing::HasSubstr(from)) << one.Name;
            expected = Replaced(expected, from, to);
        }
        EXPECT_EQ(server.All(), expected) << one.Name;
        EXPECT_THAT(server.Files.List(kBase, "*.NE?"), IsEmpty()) << one.Name;
    }
}

TEST(DestinationSession, RefusesWhatItCannotKeep) {
    SessionServer server;
    DestinationSession session;
    ASSERT_TRUE(session.Begin());
    const AskAboutUses none = [](const auto&) { return std::nullopt; };
    const auto country = [&](const CountryEntry& entry) { return session.Save(CountryKind(), {}, entry, none); };
    const auto area = [&](const AreaEntry& entry) { return session.Save(AreaKind{"44"}, {}, entry, none); };
    const std::string long29(29, 'X');
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {country({"fr", "", "5", ""}), "Identifier",
         "error: Identifier: \"fr\" - there is a country of that name already"},
        {country({"A", "", "", ""}), "DiallingCode", "error: DiallingCode: \"\" - a country needs one"},
        {country({"A", "a\"b", "5", ""}), "Description",
         "error: Description: \"a\"b\" is not a text of at most 100 characters without quotes"},
        {country({"A", "", "33", ""}), "DiallingCode",
         "ask warning: Dialling code 33 is that of FR, too, and finds only the first of them.\n\nKeep it?"},
        {country({"U", "", "5", ""}), "Identifier",
         "ask warning: U takes the place of UK, which begins with the same name.\n\nReplace it?"},
        {area({long29, "", {}}), "Identifier",
         "error: Identifier: \"UK/" + long29 + "\" - rules hold at most 29 characters of a name"},
        {area({"A", "", {"2x"}}), "Matches", "error: Matches: \"2x\" is not a number, or the beginning of one and *"},
        {session.SaveSynonym({}, {"a:b", "UK"}), "Name",
         "error: Name: \"a:b\" is not a name of 1 to 29 characters without colon and quotes"},
        {session.SaveSynonym({}, {"gb", "UK"}), "Name",
         "error: Identifier: \"gb\" - there is a name of that name already"},
        {session.SaveSynonym({}, {"X", "MARS"}), "StandsFor",
         "error: Stands for: \"MARS\" is no country and no area that is there"},
    };
    std::vector<std::string> said;
    for (const auto& [field, expected, message] : rows) {
        EXPECT_EQ(field, expected) << message;
        said.push_back(message);
    }
    EXPECT_EQ(server.Front.TakeSaid(), said);
    EXPECT_FALSE(session.IsChanged());
}

TEST(DestinationSession, KeepsRulesAndDestinationsTogether) {
    SessionServer server;
    Asked asked;
    const AskAboutUses ask = Answering(UseChange{Change::Replace, "LDN"}, asked);
    {
        DestinationSession session; // the rules wait for their save
        server.PutFile("LCRRULES.NEW", kRules);
        ASSERT_TRUE(session.Begin() && RenameArea(session, ask) && session.Commit());
        EXPECT_EQ(server.GetFile("LCRRULES.INI"), kRules);
        EXPECT_THAT(server.Front.TakeSaid(),
                    Contains(testing::StartsWith("warning: There are unsaved changes of the rules in")));
        server.Files.Delete(kBase + "LCRRULES.NEW");
        server.Restore();
    }
    DestinationSession session;
    ASSERT_TRUE(session.Begin() && RenameArea(session, ask));
    server.PutFile("LCRRULES.INI", kRules + "; changed\n");
    EXPECT_FALSE(session.Commit());
    EXPECT_EQ(server.GetFile("REGION.INI"), kRegions);
    server.PutFile("LCRRULES.INI", kRules);
    server.PutFile("REGION.INI", kRegions + "; changed\n");
    EXPECT_FALSE(session.Commit()) << "and no rules are left waiting";
    EXPECT_EQ(server.GetFile("LCRRULES.NEW"), "(none)");
    server.PutFile("REGION.INI", kRegions);
    {
        const auto held = server.Files.Open(kBase + "Area44.ini", {platform::Access::Read, platform::Deny::Nothing});
        EXPECT_FALSE(session.Commit()) << "the last file cannot be replaced";
    }
    {
        const auto held = server.Files.Open(kBase + "LCRRULES.INI", {platform::Access::Read, platform::Deny::Nothing});
        EXPECT_FALSE(session.Commit()) << "then the rules";
    }
    EXPECT_THAT(server.GetFile("REGION.INI"), testing::HasSubstr("UK/LDN"));
    EXPECT_THAT(server.GetFile("LCRRULES.NEW"), testing::HasSubstr("UK/LDN")) << "for when the program ends here";
    ASSERT_TRUE(session.Commit());
    EXPECT_THAT(server.GetFile("LCRRULES.INI"), testing::HasSubstr("Area: UK/LDN"));
    EXPECT_EQ(server.GetFile("LCRRULES.NEW"), "(none)");
}

// "UK/LON UK/LDS HOME".
std::string ShownText(const DestinationSession& session, std::string_view words) {
    const Destinations all = OnlyShown(session.Places(), FilterPlaces(session.Places(), session.Synonyms(), words));
    std::string text;
    for (const CountryEntry& country : all.Countries()) {
        text += country.Identifier + ":";
        for (const AreaEntry& area : country.Areas) text += area.Identifier + " ";
    }
    for (const RegionEntry& region : all.Regions()) text += region.Identifier;
    return text;
}

TEST(FilterPlaces, KeepsTheCountriesOfHits) {
    SessionServer server;
    DestinationSession session;
    ASSERT_TRUE(session.Begin());
    const std::pair<const char*, const char*> rows[] = {{"", "UK:LON LDS FR:HOMEFAR"},
                                                        {"king", "UK:LON LDS "},
                                                        {"lon DON", "UK:LON "},
                                                        {"113", "UK:LDS "},
                                                        {"mars", "HOME"},
                                                        {"uk x", ""}};
    for (const auto& [words, expected] : rows) EXPECT_EQ(ShownText(session, words), expected) << words;
}

} // namespace
} // namespace bv::test
