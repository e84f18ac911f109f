#include "support/faulty_files.h"

#include <gtest/gtest.h>

#include "platform/overlay_files.h"
#include "requests.h"

namespace bv::test {
namespace {

using platform::OpenRequest;

constexpr OpenRequest kCreate = {Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateOrTruncate};

// Five changes, and two looks; goes on after a failure. A letter for each call: "." done, "F" failed, "D" disk full.
std::string RunJob(platform::FileSystem& files) {
    std::string outcome;
    const auto note = [&](FileError error) {
        outcome += error == FileError::None ? '.' : error == FileError::DiskFull ? 'D' : 'F';
    };
    note(files.Delete("OLD"));
    const platform::OpenResult file = files.Open("NEW", kCreate);
    note(file.Error);
    if (!file.Opened) return outcome;
    note(file.Opened->Write(0, "1234").Error);
    char bytes[2];
    note(file.Opened->Read(0, bytes, 2).Error);
    note(file.Opened->SetLength(3));
    note(file.Opened->Close());
    note(files.Open("NEW", {}).Error);
    return outcome;
}

std::string Contents(platform::FileSystem& files, const std::string& path) {
    const platform::OpenResult file = files.Open(path, {Access::Read, Deny::ReadingAndWriting});
    if (!file.Opened) return file.Error == FileError::NotFound ? "none" : "held";
    char bytes[8];
    return {bytes, file.Opened->Read(0, bytes, 8).Count};
}

TEST(FaultyFiles, EachFaultLeavesWhatItShould) {
    const struct {
        FaultKind Kind;
        CallKind Counted;
        std::vector<std::string> Outcomes; // the outcome with AtCall 1, 2, ...; then OLD and NEW afterwards
    } rows[] = {
        {FaultKind::FailOnce,
         CallKind::Changes,
         {"F...... old 123", ".F none none", "..F.... none " + std::string("\0\0\0", 3), "....F.. none 1234",
          ".....F. none 123", "....... none 123"}},
        {FaultKind::FailFromThenOn,
         CallKind::Changes,
         {"FF old none", ".F none none", "..F.FF. none ", "....FF. none 1234", ".....F. none 123", "....... none 123"}},
        {FaultKind::ShortWrite,
         CallKind::Changes,
         {"D...... old 123", ".D none none", "..D.... none " + std::string("12\0", 3), "....D.. none 1234",
          ".....D. none 123", "....... none 123"}},
        {FaultKind::Kill,
         CallKind::Changes,
         {"FF old none", ".F none none", "..FFFFF none ", "....FFF none 1234", ".....FF none 123", "....... none 123"}},
        {FaultKind::KillHalfWritten,
         CallKind::Changes,
         {"FF old none", ".F none none", "..FFFFF none 12", "....FFF none 1234", ".....FF none 123",
          "....... none 123"}},
        {FaultKind::FailFromThenOn, CallKind::Looks, {"...F..F none 123", "......F none 123", "....... none 123"}},
        {FaultKind::Kill, CallKind::Looks, {"...FFFF none 1234", "......F none 123", "....... none 123"}},
    };
    for (const auto& row : rows) {
        for (int n = 1; n <= static_cast<int>(row.Outcomes.size()); ++n) {
            platform::OverlayFiles memory;
            memory.Open("OLD", kCreate).Opened->Write(0, "old");
            FaultyFiles faulty(memory, {row.Kind, n, row.Counted});
            const std::string outcome = RunJob(faulty);
            EXPECT_EQ(outcome + " " + Contents(memory, "OLD") + " " + Contents(memory, "NEW"),
                      row.Outcomes[static_cast<std::size_t>(n) - 1])
                << "kind " << static_cast<int>(row.Kind) << " at " << n;
            EXPECT_EQ(faulty.Fired(), n < static_cast<int>(row.Outcomes.size()));
        }
    }
}

TEST(FaultyFiles, AKillFreesWhatIsOpen) {
    platform::OverlayFiles memory;
    FaultyFiles faulty(memory, {FaultKind::Kill, 2});
    const platform::OpenResult open = faulty.Open("FILE", kCreate);
    EXPECT_EQ(Contents(memory, "FILE"), "held");
    EXPECT_EQ(open.Opened->Write(0, "x").Error, FileError::Failed);
    EXPECT_EQ(Contents(memory, "FILE"), "");
    EXPECT_FALSE(open.Opened->Length());
    EXPECT_FALSE(faulty.Find("FILE"));
    EXPECT_EQ(faulty.Calls(CallKind::Changes), 2);
}

} // namespace
} // namespace bv::test
