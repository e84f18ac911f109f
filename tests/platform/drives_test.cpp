#include "platform/drives.h"

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/files.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using platform::Files;
using platform::MapDrive;
using platform::ToWindowsPath;

// A current directory for the time of a test.
class CurrentDirectory {
  public:
    explicit CurrentDirectory(const std::filesystem::path& directory) : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(directory);
    }
    ~CurrentDirectory() { std::filesystem::current_path(before_); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

  private:
    std::filesystem::path before_;
};

TEST(Drives, MappedDrivesAndSharesAreFound) {
    const TemporaryDirectory directory;
    directory.Write("outside", "");
    directory.Write("root\\Sub\\File", "");
    if (!MapDrive("q:", directory.HostPath("root").string())) GTEST_SKIP() << "the system has drives of its own";
    ASSERT_TRUE(MapDrive("\\\\Server\\Fax", directory.HostPath("root").string()));
    ASSERT_TRUE(MapDrive("R:", directory.HostPath("root\\Sub").string() + "/"));
    const CurrentDirectory current(directory.HostPath("root\\Sub"));

    for (const char* path :
         {"Q:\\Sub\\File", "q:\\SUB\\file", "Q:Sub\\File", "Q:/sub/File", "Q:\\Sub\\..\\.\\Sub\\\\File",
          "Q:\\..\\..\\Sub\\File", "\\\\server\\FAX\\sub\\FILE", "\\\\SERVER\\fax\\..\\Sub\\File", "R:\\FILE", "file",
          ".\\File", "..\\SUB\\file", "\\FILE"}) {
        EXPECT_TRUE(Files().Find(path)) << path;
    }
    for (const char* path : {"Q:\\..\\outside", "S:\\Sub\\File", "\\\\server\\other\\Sub\\File", "\\\\server", "\\\\",
                             "Q:\\Sub\\File\\", "R:\\Sub\\File", "..\\File"}) {
        EXPECT_FALSE(Files().Find(path)) << path;
        EXPECT_EQ(Files().Open(path, {}).Error, platform::FileError::NotFound) << path;
    }
    EXPECT_TRUE(Files().Find("Q:")->IsDirectory);
    EXPECT_TRUE(Files().Find("\\\\SERVER\\FAX\\")->IsDirectory);
    EXPECT_TRUE(Files().Find("..\\..\\OUTSIDE")) << "the current directory is not below the drive's root";

    EXPECT_EQ(platform::TheEnvironment().CurrentDirectory(), "R:") << "the nearest of all";
    EXPECT_EQ(ToWindowsPath("File"), "R:\\File");
    EXPECT_EQ(ToWindowsPath("../x"), "Q:\\x");
    EXPECT_EQ(ToWindowsPath(directory.HostPath("root").string() + "//Sub/../A"), "Q:\\A");
    EXPECT_EQ(ToWindowsPath("/no/such/../file/"), "Z:\\no\\file");
    EXPECT_EQ(ToWindowsPath("/"), "Z:\\");
    for (const char* path : {"Q:\\x", "\\\\server\\fax", "\\x", "c:x"}) EXPECT_EQ(ToWindowsPath(path), path);
}

TEST(Drives, WhatOthersDoInALargeDirectoryIsSeenAtOnce) {
    const TemporaryDirectory directory;
    for (int i = 0; i < 400; ++i) directory.Write("root\\N" + std::to_string(i), "");
    if (!MapDrive("Q:", directory.HostPath("root").string())) GTEST_SKIP() << "the system has drives of its own";
    const auto isThere = [](const std::string& name) { return Files().Find("Q:\\" + name).has_value(); };
    EXPECT_FALSE(isThere("IRIS") || isThere("IRIS")) << "from then on the names are remembered";
    EXPECT_TRUE(isThere("n399"));

    const auto place = [&](const std::string& name) { return directory.HostPath("root\\" + name); };
    std::filesystem::create_directory(place("Iris"));
    EXPECT_TRUE(isThere("IRIS") && isThere("iris"));
    EXPECT_EQ(Files().MakeDirectory("Q:\\IRIS"), platform::FileError::Exists);
    std::filesystem::rename(place("Iris"), place("Ivy"));
    EXPECT_TRUE(!isThere("IRIS") && isThere("IVY"));
    std::filesystem::remove(place("Ivy"));
    EXPECT_FALSE(isThere("IVY"));
    EXPECT_EQ(Files().MakeDirectory("Q:\\Max"), platform::FileError::None);
    EXPECT_TRUE(isThere("MAX"));

    std::filesystem::rename(directory.HostPath("root"), directory.HostPath("away"));
    directory.Write("root\\Anna", "");
    EXPECT_TRUE(isThere("ANNA") && !isThere("MAX")) << "another directory at the same path";
}

TEST(Drives, OnlyADriveOrShareIsMappedAndOnlyToADirectory) {
    const TemporaryDirectory directory;
    directory.Write("file", "");
    const std::string place = directory.HostPath().string();
    for (const char* name :
         {"", "S", "SS:", "S:\\", "S:x", "\\\\server", "\\\\server\\", "\\\\\\share", "\\\\s\\f\\x", "/s"}) {
        EXPECT_FALSE(MapDrive(name, place)) << name;
    }
    EXPECT_FALSE(MapDrive("S:", ""));
    EXPECT_FALSE(MapDrive("S:", directory.HostPath("none").string()));
    EXPECT_FALSE(MapDrive("S:", directory.HostPath("file").string()));
}

TEST(Drives, ToWindowsPathMakesARelativePathFull) {
    const TemporaryDirectory directory;
    const CurrentDirectory current(directory.HostPath());
    directory.Write("SETUP.INI", "");
    const std::string full = ToWindowsPath("SETUP.INI");
    EXPECT_EQ(full, directory.Path("SETUP.INI"));
    EXPECT_EQ(ToWindowsPath(full), full);
    EXPECT_EQ(platform::TheEnvironment().CurrentDirectory(), directory.Path());
}

} // namespace
} // namespace bv::test
