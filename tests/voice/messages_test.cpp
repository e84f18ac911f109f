#include "voice/messages.h"

#include <gmock/gmock.h>

#include "devices/device_messages.h"
#include "support/fakes.h"
#include "support/recording_front.h"

namespace bv {
namespace {

using test::FakeClock;
using test::FakeProcesses;
using test::RecordingFront;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Texts = std::vector<std::string>;

TEST(Messages, EachStyleHasItsBoxAndOtherNumbersShowNothing) {
    const std::tuple<int, Texts, Texts> cases[] = {
        {2, {}, {}},
        {3, {"status 1: Added device COM1"}, {}},
        {4, {"warning: Added device COM1"}, {"Brivane Setup - Warning!"}},
        {5, {"error: Added device COM1"}, {"Brivane Setup - Error!"}},
        {6, {"error: Added device COM1"}, {"Brivane Setup - Error!"}},
        {7, {}, {}},
    };
    for (const auto& [style, said, captions] : cases) {
        SCOPED_TRACE(style);
        RecordingFront front;
        EXPECT_EQ(ReportMessage(style, kAddedDevice, "COM1"), style - 3);
        EXPECT_THAT(front.Said, ElementsAreArray(said));
        EXPECT_THAT(front.Captions, ElementsAreArray(captions));
    }
}

TEST(Messages, ATextMustExistAndFit) {
    EXPECT_EQ(FillMessage(Message(64000), "unused"), "ERROR - 64000");
    EXPECT_EQ(FillMessage(""), "ERROR - message string too long");
    EXPECT_EQ(FillMessage(std::string(1001, 'x')), std::string(1001, 'x'));
    EXPECT_EQ(FillMessage(std::string(1002, 'x')), "ERROR - message string too long");
}

TEST(Messages, AStatusLineHoldsTwoHundredCharacters) {
    RecordingFront front;
    SetStatusLine(std::string(201, 'x'), 3);
    EXPECT_THAT(front.Said, ElementsAre("status 3: " + std::string(200, 'x')));
}

TEST(Messages, QuestionsSayWhatYesMeansAndPassTheAnswerOn) {
    EXPECT_FALSE(AskContinue("%d users", 3)) << "nobody there to ask";
    RecordingFront front;
    EXPECT_FALSE(AskIgnoreError("File %s", "A"));
    front.Answer = true;
    EXPECT_TRUE(AskIgnoreError("File %s", "B"));
    EXPECT_TRUE(AskContinue("%d users", 3));
    EXPECT_THAT(front.Said, ElementsAre("ask error: File A - Ignore error and continue?",
                                        "ask error: File B - Ignore error and continue?",
                                        "ask question: 3 users - Would you like to continue?"));
    EXPECT_THAT(front.Captions,
                ElementsAre("Brivane Setup - Error!", "Brivane Setup - Error!", "Brivane Configuration"));
}

TEST(RunProgram, TellsWhatHappensAndGivesTheWindowBack) {
    const std::string notStarted = "error: Windows error 2 running program 'edit %s A'";
    const std::string noTimer = "error: Unable to create timer - wait for server install program to complete";
    const struct {
        unsigned long SystemError;
        WaitForProgram Wait;
        bool CanWait;
        Texts Between; // the beginning and the end are always the same
        Texts After;
    } cases[] = {
        {2, WaitForProgram::Yes, true, {notStarted}, {}},
        {0, WaitForProgram::No, true, {}, {}},
        {0, WaitForProgram::Yes, true, {}, {"wait for program"}},
        {0, WaitForProgram::Yes, false, {}, {"wait for program", noTimer}},
    };
    for (const auto& [systemError, wait, canWait, between, after] : cases) {
        RecordingFront front;
        front.CanWait = canWait;
        FakeProcesses processes;
        processes.SystemError = systemError;
        const platform::Substitute<platform::Processes> substitute(processes);
        EXPECT_EQ(RunProgram("edit %s A", wait), systemError == 0);
        EXPECT_THAT(processes.Started, ElementsAre("edit %s A"));
        Texts expected = {"input off", "status 1: Loading module  - please wait", "wait cursor on"};
        expected.insert(expected.end(), between.begin(), between.end());
        expected.insert(expected.end(), {"status 1: ", "wait cursor off"});
        expected.insert(expected.end(), after.begin(), after.end());
        expected.emplace_back("input on");
        EXPECT_EQ(front.Said, expected);
    }
}

TEST(YieldToSystem, PeeksEveryQuarterSecondUnlessTold) {
    RecordingFront front;
    FakeClock clock;
    const platform::Substitute<platform::Clock> substitute(clock);
    const auto peeksAfter = [&](std::int64_t milliseconds, bool force) {
        clock.Milliseconds += milliseconds;
        front.Peeks = 0;
        YieldToSystem(force);
        return front.Peeks;
    };
    EXPECT_EQ(peeksAfter(0, true), 1);
    EXPECT_EQ(peeksAfter(249, false), 0);
    EXPECT_EQ(peeksAfter(1, false), 1);
    EXPECT_EQ(peeksAfter(0, false), 0);
    SetYieldNow();
    EXPECT_EQ(peeksAfter(0, false), 1);
    EXPECT_EQ(peeksAfter(0, false), 0) << "the flag counts once";
}

} // namespace
} // namespace bv
