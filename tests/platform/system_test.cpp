// The smaller services: environment, clock, locale, libraries and processes.
#include <cstdlib>
#include <fstream>
#include <optional>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/libraries.h"
#include "platform/locale.h"
#include "platform/processes.h"
#include "requests.h"
#include "support/temporary_directory.h"

namespace bv::test {
namespace {

using namespace platform;

TEST(Environment, VariablesReachTheRunTimeLibraryToo) {
    Environment& environment = TheEnvironment();
    EXPECT_FALSE(environment.Variable("BV_NONE"));
    const std::string longValue(3000, 'x');
    for (const std::string& value : {std::string("PST8PDT"), longValue}) {
        environment.SetVariable("BV_TEST", value);
        EXPECT_EQ(environment.Variable("BV_TEST"), value);
        ASSERT_NE(std::getenv("BV_TEST"), nullptr);
        EXPECT_EQ(std::getenv("BV_TEST"), value);
    }
    environment.SetVariable("BV_TEST", "");
    EXPECT_FALSE(environment.Variable("BV_TEST"));
    EXPECT_EQ(std::getenv("BV_TEST"), nullptr);
}

TEST(Environment, DirectoriesHaveNoTrailingBackslash) {
    for (const std::string& directory : {TheEnvironment().CurrentDirectory(), TheEnvironment().ProgramDirectory()}) {
        EXPECT_FALSE(directory.ends_with('\\'));
        ASSERT_TRUE(Files().Find(directory)) << directory;
        EXPECT_TRUE(Files().Find(directory)->IsDirectory);
    }
    EXPECT_FALSE(Files().List(TheEnvironment().ProgramDirectory(), "lock_holder*").empty());
}

TEST(Environment, TheProfileIsTheSystemsOwn) {
    const std::optional<std::string> value = TheEnvironment().ProfileText("mail", "mapi");
    if (!value) GTEST_SKIP() << "no profile here";
    EXPECT_EQ(*value, "1"); // a mail library is there
    EXPECT_EQ(TheEnvironment().ProfileText("Mail", "NoSuchKey"), "");
}

TEST(Clock, RunsWhileAsleep) {
    const std::int64_t before = TheClock().Ticks();
    TheClock().Sleep(40);
    EXPECT_GE(TheClock().Ticks() - before, 20); // Windows counts in steps of 16 ms
    EXPECT_NEAR(static_cast<double>(TheClock().Now()) / 1000, static_cast<double>(std::time(nullptr)), 5);
}

TEST(Locale, SundayIsTheFirstDay) {
    EXPECT_EQ(TheLocale().DayName(7, NameStyle::Full), "");
    EXPECT_EQ(TheLocale().MonthName(0, NameStyle::Full), "");
    EXPECT_EQ(TheLocale().MonthName(13, NameStyle::Abbreviated), "");
    bool english = false;
    for (int day = 0; day < 7; ++day) english |= TheLocale().DayName(day, NameStyle::Full) == "Monday";
    if (!english) GTEST_SKIP() << "no English names here";
    EXPECT_EQ(TheLocale().DayName(0, NameStyle::Full), "Sunday");
    EXPECT_EQ(TheLocale().DayName(6, NameStyle::Abbreviated), "Sat");
    EXPECT_EQ(TheLocale().MonthName(1, NameStyle::Full), "January");
    EXPECT_EQ(TheLocale().MonthName(12, NameStyle::Abbreviated), "Dec");
    EXPECT_NE(TheLocale().DatePicture(DateStyle::Short).find("yy"), std::string::npos);
    EXPECT_NE(TheLocale().DatePicture(DateStyle::Long).find("MMMM"), std::string::npos);
}

TEST(Libraries, AreLoadedWhenTheyAreThere) {
    EXPECT_FALSE(TheLibraries().Load("CTL3DNONE.DLL"));
    EXPECT_FALSE(TheLibraries().Load("Y:\\NONE\\CTL3DNONE.DLL"));
    const TemporaryDirectory directory;
    directory.Write("OTHER.DLL", "this is none, as one of another width is none\n");
    EXPECT_FALSE(TheLibraries().Load(directory.Path("OTHER.DLL")));
    std::unique_ptr<Library> library = TheLibraries().Load("kernel32.dll");
    const std::string entry = library ? "GetTickCount" : "cos";
    if (!library) library = TheLibraries().Load("libm.so.6");
    ASSERT_TRUE(library);
    EXPECT_NE(library->Entry(entry), nullptr);
    EXPECT_EQ(library->Entry("NoSuchEntry"), nullptr);
}

TEST(Processes, WhatCannotBeStartedHasAnErrorNumber) {
    const TemporaryDirectory directory;
    directory.Write("NOPROG.EXE", "this is no program\n");
    constexpr unsigned long kNoSuchFile = 2; // on both systems
    EXPECT_EQ(TheProcesses().Start("no_such_program_here -x").SystemError, kNoSuchFile);
    EXPECT_EQ(TheProcesses().Start("\"" + directory.Path("NONE.EXE") + "\" -x").SystemError, kNoSuchFile);
    for (const std::string& line : {std::string(), "\"" + directory.Path("NOPROG.EXE") + "\"", directory.Path()}) {
        const StartResult result = TheProcesses().StartRestored(line);
        EXPECT_FALSE(result.Started) << line;
        EXPECT_NE(result.SystemError, 0U) << line;
    }
}

TEST(Processes, ArgumentsArriveAndTheEndIsSeen) {
    const TemporaryDirectory directory;
    directory.Write("with blank\\FILE", "");
    directory.Write("signal", "");
    const StartResult program = TheProcesses().StartRestored("lock_holder \"" + directory.Path("with blank\\FILE") +
                                                             "\"  r - " + directory.Path("signal"));
    ASSERT_TRUE(program.Started) << program.SystemError;
    EXPECT_TRUE(WaitUntil([&] { return directory.Has("signal.state") && directory.Read("signal.state") == "held"; }));
    EXPECT_TRUE(program.Started->IsRunning());
    std::filesystem::remove(directory.HostPath("signal"));
    EXPECT_TRUE(WaitUntil([&] { return !program.Started->IsRunning(); }));
    EXPECT_FALSE(program.Started->IsRunning()) << "asked once more";
}

// The state of every process that this one has started, as the system lists them: "Z" for one that nobody collects.
std::string StatesOfChildren() {
    std::string states;
    const std::string self = std::filesystem::read_symlink("/proc/self").string();
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::string number, name, state, parent;
        std::ifstream(entry.path() / "stat") >> number >> name >> state >> parent;
        if (parent == self) states += state;
    }
    return states;
}

TEST(Processes, AForgottenOneLeavesNoZombie) {
    if (!TheEnvironment().WindowsDirectory().empty()) GTEST_SKIP() << "Windows has none";
    const TemporaryDirectory directory;
    directory.Write("FILE", "");
    directory.Write("signal", "");
    const std::string before = StatesOfChildren();
    TheProcesses().Start("lock_holder " + directory.Path("FILE") + " r - " + directory.Path("signal"));
    EXPECT_EQ(StatesOfChildren().size(), before.size() + 1) << "it goes on";
    std::filesystem::remove(directory.HostPath("signal"));
    EXPECT_TRUE(WaitUntil([&] { return StatesOfChildren() == before; })) << StatesOfChildren();
}

} // namespace
} // namespace bv::test
