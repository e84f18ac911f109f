// What the verbs say when something stands in a file's place that cannot be read: never that there is nothing.
#include <gmock/gmock.h>

#include "console/text_console.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"

namespace bv::console {
namespace {

using test::FaultKind;
using test::FaultyFiles;
using test::MemoryServer;
using test::TextConsole;
using testing::EndsWith;

const std::string kArea = "F:\\BRIVANE\\";
const std::string kUsers = kArea + "B-DB\\USERLIST.INI";
const std::string kSetup = kArea + "B-DB\\SETUP.INI";
const std::string kCovers = kArea + "B-COVER\\MSGDIR.CTL";
const std::string kLetters = kArea + "B-LETTER\\MSGDIR.CTL";

struct Case {
    std::string Command;
    std::string File;
    std::string Said = "Unable to open file ";
};

const Case kCases[] = {
    {"user list", kUsers},
    {"user show A", kUsers},
    {"user export", kUsers},
    {"user add B", kUsers},
    {"group list", kUsers},
    {"group show G", kUsers},
    {"device set MODEM-1 RecdUser=NOBODY", kUsers},
    {"device list", kSetup, "ERROR - Unable to open file "},
    {"paths", kSetup, "ERROR - Unable to open file "},
    {"file list " + kSetup, kSetup},
    {"file set " + kSetup + " A K 1", kSetup},
    {"coversheet list", kCovers},
    {"coversheet installable", kCovers},
    {"coversheet add NEW x", kCovers},
    {"letterhead installable", kLetters},
    {"version", kArea + "SERVER\\VERSION.DAT"},
    {"version", kArea + "B-MAIL\\VERSION.DAT"},
};

TEST(UnreadableFiles, AreNamedAndEndTheVerb) {
    for (const auto& [command, file, said] : kCases) {
        SCOPED_TRACE(command);
        MemoryServer server;
        server.Load();
        server.Put(kSetup, "[DEVICES]\r\nDevice: MODEM-1 \"x\"\r\n\r\n[MODEM-1]\r\nType: FCLASS\r\n");
        server.Put(kArea + "B-COVER\\NEW.EPN", "");
        server.Files.Delete(file);
        server.Files.MakeDirectory(file);
        TextConsole console;
        EXPECT_EQ(console.Type(command), kExitRefused);
        EXPECT_EQ(console.Results, "");
        EXPECT_THAT(console.Notices, EndsWith(said + file + "\n"));
    }
}

// Each look at the files fails in its turn: what is printed is whole, or the verb fails.
TEST(UnreadableFiles, AreNeverListedInPart) {
    const std::vector<std::string> verbs[] = {{"paths"},
                                              {"version"},
                                              {"user", "list"},
                                              {"device", "list"},
                                              {"option", "list"},
                                              {"coversheet", "list"},
                                              {"coversheet", "installable"}};
    MemoryServer server;
    server.Load();
    server.Put(kSetup, "[OPTIONS]\r\nLogFile: OWN.LOG\r\n[DEVICES]\r\nDevice: MODEM-1 \"x\"\r\n");
    server.Put(kUsers, "[USER]\r\nName: A\r\n");
    server.Put(kCovers, "[DIRECTORY]\r\nFile: A \"a\"\r\n");
    server.Put(kArea + "B-COVER\\NEW.EPN", "");
    server.Put(kArea + "SERVER\\VERSION.DAT", "[VERSION]\r\nServer: 6.00\r\n");
    server.Put(kArea + "B-MAIL\\VERSION.DAT", "[VERSION]\r\nMailGateway: 6.00\r\n");
    for (const std::vector<std::string>& verb : verbs) {
        TextConsole console;
        ASSERT_EQ(console.Run(verb), kExitDone);
        const std::string whole = console.Results;
        bool fired = true;
        for (int call = 1; fired; ++call) {
            SCOPED_TRACE(testing::PrintToString(verb) + ", look " + std::to_string(call));
            FaultyFiles faulty(server.Files, {FaultKind::FailOnce, call, test::CallKind::Looks});
            const platform::Substitute<platform::FileSystem> use(faulty);
            const int status = console.Run(verb);
            fired = faulty.Fired();
            EXPECT_EQ(console.Results, status == kExitDone ? whole : "");
            EXPECT_EQ(console.Notices.empty(), status == kExitDone) << console.Notices;
        }
    }
}

} // namespace
} // namespace bv::console
