#include "shell/startup.h"

#include <gtest/gtest.h>

#include "support/memory_server.h"

namespace bv {
namespace {

using test::MemoryServer;

// The fault's number, the start function and the letters of the installer modes that are set.
std::string Parse(std::string_view commandLine) {
    StartupOptions options;
    std::string parsed = std::to_string(ParseCommandLine(commandLine, options)) + " ";
    parsed += std::to_string(options.StartFunction) + " ";
    if (options.InstallerModeA) parsed += 'A';
    if (options.InstallerModeD) parsed += 'D';
    if (options.InstallerModeM) parsed += 'M';
    if (options.InstallerModeU) parsed += 'U';
    return parsed;
}

TEST(CommandLine, Switches) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "0 0 "},        {" \t", "0 0 "},          {"/2", "0 2 "},       {" -5 ", "0 5 "},
        {"/1-3", "0 3 "},    {"-d /M\t-u", "0 0 DMU"}, {"-A", "0 0 A"},      {"-ax/2", "0 2 A"},
        {"-A -D", "0 0 AD"}, {"-A-D", "5236 0 A"},     {"/0", "5235 0 "},    {"/6", "5235 0 "},
        {"/X", "5235 0 "},   {"/v", "5235 0 "},        {"/\xE4", "5235 0 "}, {"-", "5235 0 "},
        {"/ 2", "5235 0 "},  {"--2", "5235 0 "},       {"2", "5236 0 "},     {"setup", "5236 0 "},
        {"/12", "5236 1 "},  {"/2 setup", "5236 2 "},
    };
    for (const auto& [commandLine, parsed] : cases) EXPECT_EQ(Parse(commandLine), parsed) << commandLine;
}

TEST(HelpFile, LiesInTheCurrentDirectoryOrElseInTheServerArea) {
    MemoryServer server;
    server.Load();
    StartupOptions options;
    EXPECT_EQ(FindHelpFile(options), "F:\\BRIVANE\\SERVER\\BVSETUP.HLP");
    server.Put("F:\\BRIVANE\\BVSETUP.HLP", "");
    server.Put("D:\\BVSETUP.HLP", "");
    EXPECT_EQ(FindHelpFile(options), "F:\\BRIVANE\\BVSETUP.HLP");
    server.Environment.Current = "D:\\";
    EXPECT_EQ(FindHelpFile(options), "D:\\BVSETUP.HLP");
    options.InstallerModeA = true;
    EXPECT_EQ(FindHelpFile(options), "F:\\BRIVANE\\SERVER\\BVSETUP.HLP");
}

TEST(ServerSwitches, AreReadFromTheOptionsAndElseKeepTheirDefaults) {
    const std::tuple<const char*, bool, char, bool> cases[] = {
        {"", true, '@', false},
        {"[OTHER]\r\nEnableRouting: NO\r\n", true, '@', false},
        {"[OPTIONS]\r\nUserGroupIdentifier:\r\nEnableRouting:\r\nEnableAutoAdd:\r\n", true, '@', true},
        {"[OPTIONS]\nenablerouting: false\nUserGroupIdentifier: groups\nEnableAutoAdd: On", false, 'G', true},
        {"[OPTIONS]\r\nEnableRouting: ?\r\nUserGroupIdentifier: \xE4\r\nEnableAutoAdd: 2\r\n", true, '\xE4', false},
    };
    MemoryServer server;
    for (const auto& [setup, enableRouting, userGroupIdentifier, enableAutoAdd] : cases) {
        SCOPED_TRACE(setup);
        server.Put("SETUP.INI", setup);
        ControlStream stream = OpenShared("SETUP.INI", "rb");
        ReadServerSwitches(stream);
        EXPECT_EQ(Switches().EnableRouting, enableRouting);
        EXPECT_EQ(Switches().UserGroupIdentifier, userGroupIdentifier);
        EXPECT_EQ(Switches().EnableAutoAdd, enableAutoAdd);
    }
}

} // namespace
} // namespace bv
