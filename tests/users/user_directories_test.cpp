// The directories of users and groups, and the files in them.
#include "users/user_directories.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

#include "platform/drives.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/temporary_directory.h"
#include "users/directories.h"

namespace bv {
namespace {

using test::MemoryServer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr RecordKind kUser = RecordKind::User;
const std::string kIris = "F:\\BRIVANE\\USERS\\IRIS";

struct Server : MemoryServer {
    Server() {
        Load();
        Put("F:\\BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\nFrom:\r\n");
    }
    // The directories below the user's root that are there, and the root itself as "".
    std::string Directories() {
        std::string found;
        for (const char* below : {"", "\\B-IN", "\\B-DB", "\\B-OUT", "\\B-OUT\\PREVIEW", "\\B-OUT\\G3N", "\\B-OUT\\G3F",
                                  "\\B-OUT\\G3S", "\\B-GRAPH"}) {
            const auto info = Files.Find(kIris + below);
            if (info && info->IsDirectory) found += std::string(below) + ";";
        }
        return found;
    }
};

TEST(CreateUserDirectories, MakesTheTreeOfEachKind) {
    Server server;
    EXPECT_TRUE(CreateUserDirectories("IRIS", "Iris, sales", kUser));
    EXPECT_EQ(server.Directories(),
              ";\\B-IN;\\B-DB;\\B-OUT;\\B-OUT\\PREVIEW;\\B-OUT\\G3N;\\B-OUT\\G3F;\\B-OUT\\G3S;\\B-GRAPH;");
    EXPECT_EQ(server.Get(kIris + "\\B-IN\\MSGDIR.CTL"), "[BRIVANE]\r\nType: ReceiveDir\r\nRevision: A\r\n");
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\MSGDIR.CTL"), "[BRIVANE]\r\nType: SendDir\r\nRevision: A\r\n");
    EXPECT_EQ(server.Get(kIris + "\\B-DB\\USER.INI"), "[OPTIONS]\r\nFrom: Iris, sales\r\n");
    const std::vector<std::string> said = server.Front.TakeSaid();
    ASSERT_EQ(said.size(), 11U);
    EXPECT_EQ(said.at(0), "status 1: Creating directory structure for user IRIS");
    EXPECT_EQ(said.at(1), "status 1: Created directory F:\\BRIVANE\\USERS");
    EXPECT_EQ(said.at(10), "status 1: Created directory " + kIris + "\\B-GRAPH");
}

TEST(CreateUserDirectories, MakesLessForAGroup) {
    Server server;
    server.Files.MakeDirectory("F:\\BRIVANE\\USERS");
    EXPECT_TRUE(CreateUserDirectories("IRIS", "", RecordKind::Group));
    EXPECT_EQ(server.Directories(), ";\\B-IN;\\B-DB;");
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\MSGDIR.CTL"), "(none)");
    EXPECT_EQ(server.Get(kIris + "\\B-DB\\USER.INI"), "[OPTIONS]\r\nFrom: \r\n");
    EXPECT_EQ(server.Front.TakeSaid().at(0), "status 1: Creating directory structure for usergroup IRIS");

    server.Files.Delete("F:\\BRIVANE\\B-DB\\USER.INI");
    EXPECT_FALSE(CreateUserDirectories("IRIS", "", RecordKind::Group));
    server.Front.Said.erase(server.Front.Said.begin());
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("error: Unable to open file F:\\BRIVANE\\B-DB\\USER.INI",
                                                     "error: Unable to create file B-DB\\USER.INI for user"));
}

TEST(CreateUserDirectories, KeepsTheMessagesAndEmptiesTheWorkOfOneWhoComesBack) {
    Server server;
    EXPECT_TRUE(CreateUserDirectories("IRIS", "Old", kUser));
    server.Put(kIris + "\\B-IN\\MSGDIR.CTL", "received");
    server.Put(kIris + "\\B-OUT\\MSGDIR.CTL", "sent");
    for (const char* file : {"PREVIEW\\A.1", "G3N\\NOEXTENSION", "G3F\\A.G3F", "G3S\\.hidden", "TXT\\A.TXT"}) {
        server.Put(kIris + "\\B-OUT\\" + file, "x");
    }
    server.Front.TakeSaid();
    EXPECT_TRUE(CreateUserDirectories("iris", "New", kUser));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre("status 1: Creating directory structure for user iris"));
    EXPECT_EQ(server.Get(kIris + "\\B-IN\\MSGDIR.CTL"), "received");
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\MSGDIR.CTL"), "sent");
    EXPECT_EQ(server.Get(kIris + "\\B-DB\\USER.INI"), "[OPTIONS]\r\nFrom: New\r\n");
    for (const char* directory : {"PREVIEW", "G3N", "G3F"}) {
        EXPECT_THAT(server.Files.List(kIris + "\\B-OUT\\" + directory, "*"), IsEmpty()) << directory;
    }
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\G3S\\.hidden"), "x");
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\TXT\\A.TXT"), "x");

    server.Put(kIris + "\\B-OUT\\MSGDIR.CTL", ""); // what a program that was ended has left
    EXPECT_TRUE(CreateUserDirectories("iris", "New", kUser));
    EXPECT_EQ(server.Get(kIris + "\\B-OUT\\MSGDIR.CTL"), "[BRIVANE]\r\nType: SendDir\r\nRevision: A\r\n");
}

TEST(WriteUserOptionsFile, PutsTheSenderIntoTheTemplate) {
    const struct {
        std::string Template;
        std::string Written;
    } rows[] = {
        {"", "\r\n[OPTIONS]\r\nFrom: I\r\n"},
        {"[OPTIONS]\nfrom: x\nFrom:\tx\n", "[OPTIONS]\r\nFrom: I\r\nFrom: I\r\n"},
        {"[options] x\r\nA: 1 \t\r\n\r\n[VIEW]\r\nFrom: view",
         "[options] x\r\nA: 1\r\n\r\nFrom: I\r\n\r\n[VIEW]\r\nFrom: view\r\n"},
        {"[OPTIONS]\nFrom:\n[VIEW]\n[OPTIONS]\nB: 2\n", "[OPTIONS]\r\nFrom: I\r\n\r\n[VIEW]\r\n[OPTIONS]\r\nB: 2\r\n"},
        {"[OPTIONS]\n[OPTIONS]\nFrom: x\n", "[OPTIONS]\r\nFrom: I\r\n\r\n[OPTIONS]\r\nFrom: I\r\n"},
        {"From: x\n[OPTIONS]\nA: 1\n", "From: x\r\n[OPTIONS]\r\nA: 1\r\n\r\n[OPTIONS]\r\nFrom: I\r\n"},
        {" From: x\n[VIEW]\nC: \x01 \xa3\n", " From: x\r\n[VIEW]\r\nC:   \xa3\r\n\r\n[OPTIONS]\r\nFrom: I\r\n"},
    };
    for (const auto& [text, written] : rows) {
        Server server;
        server.Put("F:\\BRIVANE\\B-DB\\USER.INI", text);
        EXPECT_TRUE(WriteUserOptionsFile("IRIS", "I"));
        EXPECT_EQ(server.Get(kIris + "\\B-DB\\USER.INI"), written);
    }
}

TEST(CreateDirectoryPath, NeedsADriveAndNamesWhatIsInTheWay) {
    MemoryServer server;
    server.Load();
    server.Put("C:\\A\\FILE", "");
    server.Files.MakeDirectory("C:\\A");
    const struct {
        const char* Path;
        std::vector<std::string> Said;
    } rows[] = {
        {"C:\\A\\B\\\\c", {"status 1: Created directory C:\\A\\B", "status 1: Created directory C:\\A\\B\\\\c"}},
        {"c:\\a\\b\\", {}},
        {"C:\\", {}},
        {"\\\\SRV\\SHARE\\X\\Y",
         {"status 1: Created directory \\\\SRV\\SHARE\\X", "status 1: Created directory \\\\SRV\\SHARE\\X\\Y"}},
        {"\\\\SRV\\SHARE", {}},
        {"USERS\\IRIS", {"error: Unable to create directory USERS\\IRIS - drive not specified"}},
        {"\\USERS", {"error: Unable to create directory \\USERS - drive not specified"}},
        {"", {"error: Unable to create directory  - drive not specified"}},
        {"C:\\A\\FILE\\X", {"error: Unable to create directory C:\\A\\FILE - access error"}},
    };
    for (const auto& [path, said] : rows) {
        const bool fails = !said.empty() && said.back().starts_with("error");
        EXPECT_EQ(CreateDirectoryPath(path), fails ? 0xF00C : 0) << path;
        EXPECT_EQ(server.Front.TakeSaid(), said) << path;
    }
}

TEST(UserDirectories, AreNeverThoseOfSomebodyElse) {
    Server server;
    server.Put("F:\\BRIVANE\\B-DB\\SETUP.INI", "kept");
    server.Put("F:\\BRIVANE\\USERS\\B-IN\\MSGDIR.CTL", "kept");
    for (const char* name : {"", ".", "..", "A\\..\\..", "..\\..", "IRIS.", "IRIS ", "C:", "*"}) {
        EXPECT_FALSE(CreateUserDirectories(name, "", kUser)) << name;
        EXPECT_TRUE(DeleteUserDirectories(name)) << name;
    }
    EXPECT_EQ(server.Get("F:\\BRIVANE\\B-DB\\SETUP.INI"), "kept");
    EXPECT_EQ(server.Get("F:\\BRIVANE\\USERS\\B-IN\\MSGDIR.CTL"), "kept");
}

TEST(DeleteUserDirectories, RemovesWhatItCan) {
    Server server;
    const std::string deleting = "status 1: Deleting directory structure for user IRIS";
    const std::string notDeleted = "status 1: Unable to delete directory " + kIris;
    EXPECT_TRUE(DeleteUserDirectories("IRIS"));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(deleting)) << "there is nothing";

    EXPECT_TRUE(CreateUserDirectories("IRIS", "", kUser) && CreateUserDirectories("IRISH", "", kUser));
    for (const char* type : {"BIN", "TXT", "POS", "MH", "EPN", "HP1", "HP3", "CTL"}) {
        server.Files.MakeDirectory(kIris + "\\B-OUT\\" + type);
        server.Put(kIris + "\\B-OUT\\" + type + "\\A", "x");
    }
    for (const char* file : {"B-IN\\A.1", "B-OUT\\PREVIEW\\B", "B-GRAPH\\C.BMP", "B-OUT\\G3N\\D"})
        server.Put(kIris + "\\" + file, "x");
    server.Front.TakeSaid();
    {
        const ControlStream held = OpenShared(kIris + "\\B-GRAPH\\C.BMP", "rb");
        EXPECT_TRUE(DeleteUserDirectories("IRIS"));
        EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(deleting, notDeleted));
        EXPECT_EQ(server.Directories(), ";\\B-GRAPH;");
    }
    server.Files.MakeDirectory(kIris + "\\OWN");
    EXPECT_TRUE(DeleteUserDirectories("IRIS"));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(deleting, notDeleted));
    server.Files.RemoveEmptyDirectory(kIris + "\\OWN");
    EXPECT_TRUE(DeleteUserDirectories("IRIS"));
    EXPECT_THAT(server.Front.TakeSaid(), ElementsAre(deleting));
    EXPECT_EQ(server.Directories(), "");
    EXPECT_NE(server.Get(kIris + "H\\B-OUT\\MSGDIR.CTL"), "(none)");
}

TEST(UserDirectories, TakeLinksAwayAndNotWhatIsAtTheirEnds) {
    const std::vector<std::string> places[] = {
        {""}, {"B-IN"}, {"B-OUT"}, {"B-OUT\\PREVIEW", "B-OUT\\G3N"}, {"B-DB", "B-GRAPH"}};
    for (const auto& links : places) {
        const test::TemporaryDirectory disk;
        if (!platform::MapDrive("F:", disk.HostPath().string())) GTEST_SKIP() << "the system has drives of its own";
        Server server;
        const platform::Substitute<platform::FileSystem> onDisk(platform::Service<platform::FileSystem>::System());
        disk.Write("BRIVANE\\B-DB\\USER.INI", "[OPTIONS]\r\n");
        disk.Write("elsewhere\\MSGDIR.CTL", "kept");
        for (const char* below : {"", "G3N\\", "PREVIEW\\", "B-IN\\", "B-OUT\\G3N\\"})
            disk.Write(std::string("elsewhere\\").append(below).append("FILE"), "kept");
        ASSERT_TRUE(CreateUserDirectories("IRIS", "", kUser));
        const std::string name = "BRIVANE\\USERS\\IRIS";
        for (const std::string& link : links) {
            const std::filesystem::path path = disk.HostPath(link.empty() ? name : name + "\\" + link);
            std::filesystem::remove_all(path);
            std::filesystem::create_directory_symlink(disk.HostPath("elsewhere"), path);
        }
        const std::string what = links.front();
        EXPECT_TRUE(CreateUserDirectories("IRIS", "", kUser)) << what;
        server.Front.TakeSaid();
        EXPECT_TRUE(DeleteUserDirectories("IRIS")) << what;
        EXPECT_EQ(server.Front.TakeSaid().size(), 1U) << what << ": not all was deleted";
        EXPECT_FALSE(disk.Has(name)) << what;
        EXPECT_EQ(disk.Read("elsewhere\\MSGDIR.CTL"), "kept") << what;
        for (const char* below : {"", "G3N\\", "PREVIEW\\", "B-IN\\", "B-OUT\\G3N\\"})
            EXPECT_EQ(disk.Read(std::string("elsewhere\\").append(below).append("FILE")), "kept") << what << below;
    }
}

} // namespace
} // namespace bv
