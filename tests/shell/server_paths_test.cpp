#include "shell/server_paths.h"

#include <gmock/gmock.h>

#include "support/memory_server.h"
#include "support/temporary_directory.h"

namespace bv {
namespace {

using namespace std::string_literals;
using test::MemoryServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string kIni = "C:\\WINDOWS\\BRIVANE.INI";
const std::string kSetup = "F:\\BRIVANE\\B-DB\\SETUP.INI";
const std::string kServer = "[SERVER]\r\n";
const std::string kAreas = "AllUserArea: F:\\BRIVANE\\USERS\\\r\nRequestArea: F:\\BRIVANE\\B-REQ\\\r\n"
                           "ServerArea: F:\\BRIVANE\\SERVER\\\r\nSystemArea: F:\\BRIVANE\\\r\n";
const std::string kLong(500, 'x');

TEST(FindIniDirectory, TakesTheFirstDirectoryOfTheSearchList) {
    using Variables = std::map<std::string, std::string>;
    const struct {
        Variables Set;
        std::vector<std::string> FilesIn;
        const char* Directory; // none: not found
    } cases[] = {
        {{{"PATH", "C:\\BIN"}}, {"C:\\OTHER\\"}, nullptr},
        {{{"PATH", "C:\\BIN"}}, {"F:\\BRIVANE\\"}, "F:\\BRIVANE\\"},
        {{{"PATH", "C:\\BIN"}}, {"F:\\BRIVANE\\", "C:\\WINDOWS\\"}, "C:\\WINDOWS\\"},
        {{{"PATH", "C:\\DOS;c:\\bin"}}, {"C:\\WINDOWS\\", "C:\\BIN\\"}, "C:\\BIN\\"},
        {{{"PATH", "C:\\BIN"}, {"INIT", "C:\\SET\\"}}, {"C:\\BIN\\", "C:\\SET\\"}, "C:\\SET\\"},
        {{{"INIT", "C:\\SET"}, {"BVAXINIT", "C:\\BV"}}, {"C:\\WINDOWS\\", "C:\\SET\\", "C:\\BV\\"}, "C:\\BV\\"},
        {{{"BVAXINIT", "C:\\BV; c:\\b\xFC two\t;C:\\X"}}, {"C:\\B\xFC TWO\\", "C:\\X\\"}, "C:\\B\xFC TWO\\"},
        {{{"PATH", "C:\\BIN; ;C:\\DOS"}}, {"", "C:\\DOS\\"}, ""}, // an empty element is the current directory
        // 511 characters
        {{{"BVAXINIT", kLong}, {"INIT", "C:\\SET1234"}}, {"C:\\SET1234\\", "C:\\WINDOWS\\"}, "C:\\SET1234\\"},
        {{{"BVAXINIT", kLong}, {"INIT", "C:\\SET12345"}}, {"C:\\SET12345\\", "C:\\WINDOWS\\"}, nullptr},
        {{{"BVAXINIT", kLong + kLong}}, {"C:\\WINDOWS\\"}, nullptr},
    };
    for (const auto& [set, filesIn, expected] : cases) {
        MemoryServer server;
        server.Environment.Variables = set;
        for (const std::string& directory : filesIn) server.Put(directory + "BRIVANE.INI", "");
        std::string directory;
        EXPECT_EQ(FindIniDirectory(directory), expected != nullptr ? 0 : -4072);
        EXPECT_EQ(directory, expected != nullptr ? expected : "");
        EXPECT_THAT(server.Front.Said, IsEmpty());
    }
}

TEST(FindIniDirectory, PassesOverADirectoryOfTheFilesName) {
    const test::TemporaryDirectory disk;
    disk.Write("A\\BRIVANE.INI\\file", "");
    disk.Write("B\\BRIVANE.INI", "");
    test::FakeEnvironment environment;
    environment.Variables["BVAXINIT"] = disk.Path("A") + ";" + disk.Path("B");
    const platform::Substitute<platform::Environment> substitute(environment);
    std::string directory;
    EXPECT_EQ(FindIniDirectory(directory), 0);
    EXPECT_THAT(directory, testing::EndsWith("\\B\\"));
}

TEST(LoadServerPaths, AFaultIsSaidAndLeavesTheRecordAsItWas) {
    const std::string noParagraph = "error: ERROR - [SERVER] Paragraph missing from BRIVANE.INI file";
    const std::string noServerArea = "error: ServerArea line missing from BRIVANE.INI file";
    const std::string noSystemArea = "error: SystemArea line missing from BRIVANE.INI file";
    const std::string noUserArea = "error: AllUserArea line missing from BRIVANE.INI file";
    const std::string noRequestArea = "error: RequestArea line missing from BRIVANE.INI file";
    const std::string noSetup = "error: ERROR - Unable to open file " + kSetup;
    const struct {
        std::optional<std::string> Ini;
        StatusCode Status;
        std::vector<std::string> Said;
    } cases[] = {
        {{}, -4072, {"error: ERROR - File BRIVANE.INI not found"}},
        {"", -4071, {noParagraph}},
        {"[SERVICE]\r\n" + kAreas + " [SERVER]\r\n", -4071, {noParagraph}},
        {"\0[SERVER]\r\n\xFF\n[SERV\0ER]\x1A\n"s + kAreas, -4071, {noParagraph}},
        {kServer + "\r\n[X]\r\n" + kAreas, -4059, {noServerArea, noSystemArea, noUserArea, noRequestArea}},
        {kServer + "RequestArea:\r\nRequestArea= R\r\nSystemArea: S\r\nAllUserArea: U",
         -4059,
         {noServerArea, noRequestArea}},
        {kServer + ";SystemArea: S\r\n AllUserArea: U\r\nServerArea: P\nRequestArea: R",
         -4059,
         {noSystemArea, noUserArea}},
        {kServer + kAreas, -4058, {noSetup}},
    };
    const ServerPaths before = Paths();
    for (const auto& [ini, status, said] : cases) {
        SCOPED_TRACE(ini.value_or("none"));
        MemoryServer server;
        if (ini) server.Put(kIni, *ini);
        ControlStream setupFile;
        EXPECT_EQ(LoadServerPaths(&setupFile), status);
        EXPECT_THAT(server.Front.Said, ElementsAreArray(said));
        EXPECT_FALSE(setupFile);
        EXPECT_EQ(Paths(), before);
    }
}

TEST(LoadServerPaths, WaitsForALockedFileAndThenNamesIt) {
    const std::tuple<std::string, StatusCode, int, std::string> cases[] = {
        {kIni, -4084, 10, "error: ERROR - Can't open file " + kIni},
        {kSetup, -4058, 30, "error: ERROR - Unable to open file " + kSetup},
    };
    for (const auto& [path, status, seconds, said] : cases) {
        MemoryServer server;
        server.Load();
        const ControlStream locked = OpenShared(path, "r+b");
        const std::int64_t start = server.Clock.Ticks();
        EXPECT_EQ(LoadServerPaths(), status);
        EXPECT_EQ((server.Clock.Ticks() - start) / 1000, seconds);
        EXPECT_THAT(server.Front.Said, ElementsAre(said));
    }
}

// A save of SETUP.INI deletes it and gives Setup.new its name; this is what a kill in between leaves.
TEST(LoadServerPaths, OffersTheNewTextOfASaveThatWasCutOff) {
    const std::string newSetup = "F:\\BRIVANE\\B-DB\\Setup.new";
    const std::string question = "ask question: File " + kSetup +
                                 " is not there: a save of it was cut off.  Its new "
                                 "text is complete in file " +
                                 newSetup + ".\n\nPut it in place now?";
    for (const bool answer : {true, false}) {
        MemoryServer server;
        server.Put(kIni, kServer + kAreas);
        server.Put(newSetup, "[OPTIONS]\r\nLogKeepDays: 7\r\n");
        server.Front.Answer = answer;
        EXPECT_EQ(LoadServerPaths(), answer ? 0 : -4058);
        EXPECT_EQ(server.Get(answer ? kSetup : newSetup), "[OPTIONS]\r\nLogKeepDays: 7\r\n");
        EXPECT_EQ(server.Get(answer ? newSetup : kSetup), "(none)");
        EXPECT_EQ(server.Front.TakeSaid().front(), question);
        EXPECT_TRUE(!answer || Paths().LogKeepDays == 7);
    }
    // Beside its live file it means nothing.
    MemoryServer server;
    server.Load();
    server.Put(newSetup, "");
    EXPECT_EQ(LoadServerPaths(), 0);
    EXPECT_THAT(server.Front.Said, IsEmpty());
}

TEST(LoadServerPaths, APathHasAtMost268Characters) {
    for (const std::size_t length : {268U, 269U}) {
        MemoryServer server;
        const std::string directory = "C:\\" + std::string(length - 15, 'D') + "\\";
        server.Put(directory + "BRIVANE.INI", "");
        server.Environment.Variables["BVAXINIT"] = directory;
        EXPECT_EQ(LoadServerPaths(), length == 268 ? -4071 : -4084);
    }
}

TEST(LoadServerPaths, ReadsTheServersParagraphInEachOfItsForms) {
    const std::string cases[] = {
        kServer + kAreas,
        "[CLIENT]\r\nSystemArea: X\r\n[server-wkn] 2\r\n" + kAreas,
        "[SERVER-WKN]\r\nSystemArea: X\r\n[SERVER]\r\n" + kAreas + "[SERVER]\r\nSystemArea: Y\r\n",
        "[SERVER]\nRequestArea=F:\\BRIVANE\\B-REQ\nSYSTEMAREA =X\nsystemarea=\tF:\\BRIVANE\n"s +
            "ServerArea=F:\\BRIVANE\\SERVER\nAllUserArea= F:\\BRIVANE\\USERS",
        kServer + "SystemArea= X\r\n" + kAreas + "SystemArea: Y\r\n",
        kServer + "MailArea:\r\nMailArea= X\r\n" + kAreas,
        std::string(2'000'000, ';') + "\r\n[SERVER]\r\n" + kAreas,
    };
    ServerPaths expected;
    expected.AllUserArea = "F:\\BRIVANE\\USERS\\";
    expected.RequestArea = "F:\\BRIVANE\\B-REQ\\";
    expected.ServerArea = "F:\\BRIVANE\\SERVER\\";
    expected.SystemArea = "F:\\BRIVANE\\";
    expected.MailArea = "F:\\BRIVANE\\SERVER\\B-MAIL\\";
    expected.MailAreaConfigured = false;
    expected.LogFile = "F:\\BRIVANE\\SERVER\\B-DB\\SERVER.LOG";
    for (const std::string& ini : cases) {
        SCOPED_TRACE(ini.substr(0, 100));
        MemoryServer server;
        server.Put(kIni, ini);
        server.Put(kSetup, "");
        EXPECT_EQ(LoadServerPaths(), 0);
        EXPECT_EQ(Paths(), expected);
        EXPECT_THAT(server.Front.Said, IsEmpty());
    }
}

TEST(LoadServerPaths, ReadsTheLogSettings) {
    const std::string directory = "F:\\BRIVANE\\SERVER\\B-DB\\";
    const std::string longest = std::string(241, 'L') + ".LOG"; // 268 characters with the directory
    const struct {
        std::string Setup;
        std::string LogFile;
        int KeepDays;
        const char* Language;
    } cases[] = {
        {"[QUEUE]\r\nLogFile: X.LOG\r\nLanguage: ENG\r\n", directory + "SERVER.LOG", 0, ""},
        {"[OPTIONS]\r\nLogFile:\r\nLogKeepDays: \r\nLanguage:\r\n", directory + "SERVER.LOG", 0, ""},
        {"[OPTIONS]\nlogfile: A LOG\nLANGUAGE: English\nLogKeepDays: 30", directory + "A LOG", 30, "Eng"},
        {"[OPTIONS]\r\nLogFile: D:\\LOGS\\FAX.LOG\r\n", "D:\\LOGS\\FAX.LOG", 0, ""},
        {"[OPTIONS]\r\nLogFile: D:FAX.LOG\r\nLogKeepDays:30\r\nLogKeepDays: 65537\r\n", "D:FAX.LOG", 1, ""},
        {"[OPTIONS]\r\nLogFile: " + longest, directory + longest, 0, ""},
        {"[OPTIONS]\r\nLogFile: L" + longest + "\r\nLogKeepDays: 7\r\n", "", 7, ""},
    };
    for (const auto& [setup, logFile, keepDays, language] : cases) {
        SCOPED_TRACE(setup);
        MemoryServer server;
        server.Load();
        server.Put(kSetup, setup);
        EXPECT_EQ(LoadServerPaths(), 0);
        EXPECT_EQ(Paths().LogFile.View(), logFile);
        EXPECT_EQ(Paths().LogKeepDays, keepDays);
        EXPECT_EQ(Paths().Language, language);
        std::vector<std::string> said;
        if (logFile.empty()) said = {"error: Invalid log file name '" + directory + "L" + longest + "'"};
        EXPECT_EQ(server.Front.Said, said);
    }
}

TEST(LoadServerPaths, HandsOverTheSettingsFromTheirStartOrClosesThem) {
    MemoryServer server;
    server.Load();
    EXPECT_EQ(Paths().MailArea, "F:\\BRIVANE\\B-MAIL\\");
    EXPECT_TRUE(Paths().MailAreaConfigured);
    EXPECT_TRUE(OpenShared(kSetup, "r+b"));
    EXPECT_TRUE(OpenShared(kIni, "r+b"));
    server.Put(kSetup, "; first\r\n[OPTIONS]\r\nLogFile: X\r\n");
    ControlStream setupFile;
    ASSERT_EQ(LoadServerPaths(&setupFile), 0);
    EXPECT_EQ(setupFile.NextRawLine(), "; first\r\n");
    EXPECT_EQ(setupFile.Path(), DatabaseFile("SETUP.INI"));
    EXPECT_FALSE(OpenShared(kSetup, "r+b")) << "still open";
}

} // namespace
} // namespace bv
