#include <fstream>

#include <gtest/gtest.h>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/file_names.h"
#include "platform/processes.h"
#include "requests.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using platform::Files;
using platform::OpenRequest;
using platform::OpenResult;

constexpr OpenRequest kAlone = {Access::ReadWrite, Deny::ReadingAndWriting, Creation::OpenExisting};

bool IsWindows() { return !platform::TheEnvironment().WindowsDirectory().empty(); }

TEST(Files, CreationDecidesWhatBecomesOfAFile) {
    const struct {
        Creation How;
        FileError WhenThere;
        const char* OldFile;
        FileError WhenMissing;
        const char* NewFile;
    } rows[] = {
        {Creation::OpenExisting, FileError::None, "old", FileError::NotFound, "(missing)"},
        {Creation::OpenOrCreate, FileError::None, "old", FileError::None, ""},
        {Creation::CreateOrTruncate, FileError::None, "", FileError::None, ""},
        {Creation::CreateNew, FileError::Exists, "old", FileError::None, ""},
    };
    for (const auto& row : rows) {
        for (const Access access : {Access::Read, Access::ReadWrite}) {
            const TemporaryDirectory directory;
            directory.Write("OLD", "old");
            const OpenRequest request = {access, Deny::Nothing, row.How};
            EXPECT_EQ(Files().Open(directory.Path("OLD"), request).Error, row.WhenThere);
            EXPECT_EQ(directory.Read("OLD"), row.OldFile);
            EXPECT_EQ(Files().Open(directory.Path("NEW"), request).Error, row.WhenMissing);
            EXPECT_EQ(directory.Read("NEW"), row.NewFile);
        }
    }
}

TEST(Files, WhatIsNoFileIsRefused) {
    const TemporaryDirectory directory;
    directory.Write("FILE", "x");
    directory.Write("SUB\\FILE", "x");
    const std::string device = IsWindows() ? "NUL" : "/dev/null";
    for (const Creation how : {Creation::OpenExisting, Creation::OpenOrCreate, Creation::CreateOrTruncate}) {
        for (const Access access : {Access::Read, Access::ReadWrite}) {
            const OpenRequest request = {access, Deny::Nothing, how};
            EXPECT_EQ(Files().Open(directory.Path("SUB"), request).Error, FileError::NotAFile);
            EXPECT_EQ(Files().Open(device, request).Error, FileError::NotAFile);
            EXPECT_EQ(Files().Open(directory.Path("NONE\\FILE"), request).Error, FileError::NotFound);
            EXPECT_EQ(Files().Open(directory.Path("FILE\\FILE"), request).Error, FileError::NotFound);
            EXPECT_EQ(Files().Open("", request).Error, FileError::NotFound);
            EXPECT_EQ(Files().Open(directory.Path("FILE") + '\0' + "X", request).Error, FileError::NotFound);
        }
    }
    EXPECT_EQ(Files().Delete(directory.Path("SUB")), FileError::NotAFile);
    EXPECT_EQ(Files().Delete(directory.Path("NONE")), FileError::NotFound);
    EXPECT_EQ(Files().Delete(directory.Path("FILE") + '\0' + "X"), FileError::NotFound);
    EXPECT_TRUE(directory.Has("FILE"));
    EXPECT_FALSE(Files().Find(""));
    EXPECT_FALSE(Files().Find(directory.Path("NONE")));
}

TEST(Files, DirectoriesAreMadeAndRemovedOneByOne) {
    const TemporaryDirectory directory;
    directory.Write("FILE", "x");
    EXPECT_EQ(Files().MakeDirectory(directory.Path("A\\B")), FileError::NotFound);
    EXPECT_EQ(Files().MakeDirectory(directory.Path("FILE\\B")), FileError::NotFound);
    EXPECT_EQ(Files().MakeDirectory(directory.Path("FILE")), FileError::Exists);
    EXPECT_EQ(Files().MakeDirectory(directory.Path("A")), FileError::None);
    EXPECT_EQ(Files().MakeDirectory(directory.Path("a")), FileError::Exists);
    EXPECT_EQ(Files().MakeDirectory(directory.Path("a\\B")), FileError::None);
    EXPECT_TRUE(Files().Find(directory.Path("A\\b"))->IsDirectory);
    EXPECT_EQ(Files().RemoveEmptyDirectory(directory.Path("A")), FileError::Failed);
    EXPECT_EQ(Files().RemoveEmptyDirectory(directory.Path("A\\b")), FileError::None);
    EXPECT_EQ(Files().RemoveEmptyDirectory(directory.Path("A")), FileError::None);
    EXPECT_EQ(Files().RemoveEmptyDirectory(directory.Path("A")), FileError::NotFound);
    EXPECT_EQ(Files().RemoveEmptyDirectory(directory.Path("FILE")), FileError::NotFound);
    EXPECT_EQ(Files().MakeDirectory(""), FileError::NotFound);
    EXPECT_EQ(directory.Read("FILE"), "x");
}

TEST(Files, AreRenamedButNeverOverAnother) {
    const TemporaryDirectory directory;
    directory.Write("OLD", "x");
    directory.Write("OTHER", "y");
    EXPECT_EQ(Files().Rename(directory.Path("OLD"), directory.Path("other")), FileError::Exists);
    EXPECT_EQ(Files().Rename(directory.Path("NONE"), directory.Path("NEW")), FileError::NotFound);
    {
        const platform::OpenResult held = Files().Open(directory.Path("OLD"), kAlone);
        EXPECT_EQ(Files().Rename(directory.Path("OLD"), directory.Path("NEW")), FileError::AccessDenied);
    }
    EXPECT_EQ(Files().Rename(directory.Path("old"), directory.Path("New")), FileError::None);
    EXPECT_FALSE(directory.Has("OLD"));
    EXPECT_EQ(directory.Read("New"), "x");
    EXPECT_EQ(directory.Read("OTHER"), "y");
}

TEST(Files, TakeTheirPlaceInOneStepUnlessSomebodyWritesTheOldOne) {
    const TemporaryDirectory directory;
    const auto replace = [&] { return Files().Replace(directory.Path("NEW"), directory.Path("LIVE")); };
    directory.Write("NEW", "new");
    EXPECT_EQ(replace(), FileError::NotFound);
    directory.Write("LIVE", "old");
    for (const char* held : {"LIVE", "NEW"}) {
        const OpenResult other = Files().Open(directory.Path(held), kAlone);
        EXPECT_EQ(replace(), FileError::AccessDenied) << held;
        EXPECT_EQ(directory.Has("NEW") && directory.Has("LIVE"), true);
    }
    EXPECT_EQ(replace(), FileError::None);
    EXPECT_EQ(directory.Read("LIVE"), "new");
    EXPECT_EQ(replace(), FileError::NotFound);
}

// A temporary is never more readable than the file that it stands for, and no link leads it elsewhere; the file that
// takes another one's place gets its mode, and a link to that one stays.
TEST(Files, KeepTheRightsOfTheFileThatTheyStandFor) {
    if (IsWindows()) GTEST_SKIP() << "access lists are Wine's own";
    const TemporaryDirectory directory;
    const std::filesystem::path elsewhere = directory.HostPath("ELSE");
    directory.Write("ELSE", "other");
    directory.Write("REAL", "old");
    std::filesystem::create_symlink(elsewhere, directory.HostPath("NEW"));
    std::filesystem::create_symlink(directory.HostPath("REAL"), directory.HostPath("LIVE"));
    constexpr auto kMode = std::filesystem::perms(0640);
    std::filesystem::permissions(directory.HostPath("REAL"), kMode);
    const std::string live = directory.Path("LIVE");
    const OpenRequest request = {Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateOrTruncate, live};
    EXPECT_EQ(Files().Open(directory.Path("NEW"), request).Opened->Write(0, "new").Error, FileError::None);
    EXPECT_EQ(directory.Read("ELSE"), "other");
    EXPECT_EQ(std::filesystem::status(directory.HostPath("NEW")).permissions(), kMode);
    std::filesystem::permissions(directory.HostPath("NEW"), std::filesystem::perms(0666));
    EXPECT_EQ(Files().Replace(directory.Path("NEW"), live), FileError::None);
    EXPECT_EQ(directory.Read("REAL"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.HostPath("LIVE")));
    EXPECT_EQ(std::filesystem::status(directory.HostPath("REAL")).permissions(), kMode);
}

// Opening a pipe waits for somebody at its other end, unless told not to.
TEST(Files, APipeIsRefusedAtOnce) {
    if (IsWindows()) GTEST_SKIP() << "pipes have names of their own there";
    const TemporaryDirectory directory;
    const auto made = platform::TheProcesses().Start("mkfifo \"" + directory.HostPath("PIPE").string() + "\"");
    ASSERT_TRUE(made.Started);
    ASSERT_TRUE(WaitUntil([&] { return directory.Has("PIPE"); }));
    EXPECT_EQ(Files().Open(directory.Path("PIPE"), {}).Error, FileError::NotAFile);
    EXPECT_EQ(Files().Open(directory.Path("PIPE"), kAlone).Error, FileError::NotAFile);
    EXPECT_EQ(Files().Delete(directory.Path("PIPE")), FileError::NotAFile);
}

TEST(Files, AReadOnlyFileIsNotWritten) {
    const TemporaryDirectory directory;
    directory.Write("FIXED", "x");
    std::filesystem::permissions(directory.HostPath("FIXED"), std::filesystem::perms::owner_read);
    const bool above = std::ofstream(directory.HostPath("FIXED"), std::ios::app).is_open();
    EXPECT_EQ(Files().Open(directory.Path("FIXED"), kAlone).Error, above ? FileError::None : FileError::AccessDenied);
    EXPECT_EQ(Files().Open(directory.Path("FIXED"), {}).Error, FileError::None);
    EXPECT_EQ(Files().IsWritable(directory.Path("FIXED")), above && !IsWindows());
    std::filesystem::permissions(directory.HostPath("FIXED"), std::filesystem::perms::owner_all);
    const auto held = Files().Open(directory.Path("FIXED"), kAlone);
    EXPECT_TRUE(Files().IsWritable(directory.Path("FIXED"))) << "by another program, for a while";
}

TEST(Files, ReadingAndWritingGoByOffset) {
    const TemporaryDirectory directory;
    directory.Write("FILE", "0123456789");
    const OpenResult file = Files().Open(directory.Path("FILE"), kAlone);
    ASSERT_TRUE(file.Opened);

    char bytes[8] = {};
    EXPECT_EQ(file.Opened->Read(7, bytes, 8).Count, 3U);
    EXPECT_EQ(std::string(bytes), "789");
    const platform::Transfer behind = file.Opened->Read(100, bytes, 8);
    EXPECT_EQ(behind.Count, 0U);
    EXPECT_EQ(behind.Error, FileError::None);

    EXPECT_EQ(file.Opened->Write(2, "ab").Count, 2U);
    EXPECT_EQ(file.Opened->SetLength(5), FileError::None);
    EXPECT_EQ(file.Opened->Length(), 5U);
    EXPECT_EQ(file.Opened->Write(7, "z").Error, FileError::None);
    EXPECT_EQ(file.Opened->Close(), FileError::None);
    EXPECT_EQ(directory.Read("FILE"), std::string("01ab4\0\0z", 8));

    const OpenResult reader = Files().Open(directory.Path("FILE"), {});
    EXPECT_EQ(reader.Opened->Write(0, "X").Error, FileError::AccessDenied);
    EXPECT_NE(reader.Opened->SetLength(0), FileError::None);
    EXPECT_EQ(Files().Find(directory.Path("FILE"))->Length, 8U);
}

TEST(Files, WriteTimesAreWholeSecondsOfUniversalTime) {
    const TemporaryDirectory directory;
    directory.Write("FILE", "x");
    const std::int64_t now = platform::TheClock().Now() / 1000;
    EXPECT_NEAR(static_cast<double>(Files().Find(directory.Path("FILE"))->WriteTime), static_cast<double>(now), 60);
    for (const std::int64_t time :
         {std::int64_t{315'532'800}, std::int64_t{951'782'399}, std::int64_t{3'600'000'000}}) {
        const OpenResult file = Files().Open(directory.Path("FILE"), kAlone);
        EXPECT_EQ(file.Opened->SetWriteTime(time), FileError::None);
        EXPECT_EQ(file.Opened->WriteTime(), time);
        EXPECT_EQ(file.Opened->Close(), FileError::None);
        EXPECT_EQ(Files().Find(directory.Path("FILE"))->WriteTime, time);
    }
}

TEST(Files, NamesAreFoundInAnyCase) {
    const TemporaryDirectory directory;
    directory.Write("B-DB\\UserList.Ini", "x");
    EXPECT_TRUE(Files().Find(directory.Path("b-db"))->IsDirectory);
    EXPECT_FALSE(Files().Find(directory.Path("B-db\\USERLIST.INI"))->IsDirectory);
    EXPECT_EQ(Files().Open(directory.Path("b-DB/./userlist.ini"), {}).Error, FileError::None);
    EXPECT_EQ(Files().Open(directory.Path("B-DB\\..\\b-db\\USERLIST.INI"), {}).Error, FileError::None);
    EXPECT_EQ(
        Files().Open(directory.Path("b-db\\New.Ini"), {Access::ReadWrite, Deny::Nothing, Creation::CreateNew}).Error,
        FileError::None);
    EXPECT_EQ(
        Files().Open(directory.Path("B-DB\\NEW.INI"), {Access::ReadWrite, Deny::Nothing, Creation::CreateNew}).Error,
        FileError::Exists);
    EXPECT_EQ(Files().List(directory.Path("B-db"), "*"), (std::vector<std::string>{"New.Ini", "UserList.Ini"}));
    EXPECT_EQ(Files().Delete(directory.Path("b-DB\\new.INI")), FileError::None);
    EXPECT_EQ(Files().List(directory.Path("B-DB"), "*.ini"), std::vector<std::string>{"UserList.Ini"});
}

TEST(Files, OfTwoNamesTheExactOneIsMeant) {
    const TemporaryDirectory directory;
    directory.Write("B-DB\\LINK.INI", "upper");
    directory.Write("B-DB\\link.ini", "lower");
    if (directory.Read("B-DB\\LINK.INI") != "upper") GTEST_SKIP() << "the two are one file here";
    for (const char* path : {"B-DB\\link.ini", "b-db\\link.ini"}) {
        char bytes[5] = {};
        EXPECT_EQ(Files().Open(directory.Path(path), {}).Opened->Read(0, bytes, 5).Count, 5U);
        EXPECT_EQ(std::string(bytes, 5), "lower") << path;
    }
}

TEST(Files, ListsAreSortedAndHoldNoDirectories) {
    const TemporaryDirectory directory;
    for (const char* name : {"b.G3F", "A.g31", "C.G3", "c_.G3N", "D.G3XY", "SUB.G3D\\X"}) directory.Write(name, "");
    EXPECT_EQ(Files().List(directory.Path(), "*.G3?"), (std::vector<std::string>{"A.g31", "b.G3F", "c_.G3N"}));
    EXPECT_TRUE(Files().List(directory.Path("NONE"), "*").empty());
    EXPECT_TRUE(Files().List(directory.Path("b.G3F"), "*").empty());
}

TEST(FileNames, Patterns) {
    const struct {
        const char* Pattern;
        const char* Name;
        bool Matches;
    } rows[] = {
        {"*", "", true},
        {"", "", true},
        {"", "A", false},
        {"A", "", false},
        {"?", "", false},
        {"?", "A", true},
        {"*.G3?", "X.G3", false},
        {"*.G3?", "X.G31", true},
        {"*.G3?", "X.G312", false},
        {"*.*", "README", false},
        {"a*b*c", "AxBxBxC", true},
        {"a*b*c", "AxBxBx", false},
        {"*ab", "aab", true},
        {"**a", "ba", true},
        {"A?C*", "abc", true},
        {"\xE4*", "\xC4X", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(platform::MatchesWildcard(row.Pattern, row.Name), row.Matches) << row.Pattern << " on " << row.Name;
    }
}

TEST(FileNames, ThatWindowsCannotHave) {
    for (const char* name : {"A", "@SALES", "A.B", ".A", "CONS", "XCON", "COM", "COM0", "COM10", "LPTX", "A.CON",
                             "NULL.TXT", "\xC4 \xE4", "CON-1", "'#%&+,;=[]{}~$!()"})
        EXPECT_EQ(platform::FaultOfFileName(name), "") << name;
    for (const char* name : {"",        ".",       "..",     "A.",   "A ",       " A",   "A\tB",    "\x7F",  "A\"",
                             "A|",      "<A",      "A>",     "A*",   "A?",       "A:",   "A/B",     "A\\B",  "con",
                             "NUL.TXT", "prn.a.b", "Aux .x", "COM1", "com9.TXT", "LPT1", "lpt\xB2", "CONIN$"})
        EXPECT_NE(platform::FaultOfFileName(name), "") << name;
}

} // namespace
} // namespace bv::test
