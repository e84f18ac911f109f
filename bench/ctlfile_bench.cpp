// The control-file machinery against the floor and the line scan of the same file.
#include <array>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <vector>

#include "baselines.h"
#include "ctlfile/copy_back.h"
#include "ctlfile/reader.h"
#include "ctlfile/records.h"
#include "ctlfile/rewriter.h"
#include "sample_files.h"
#include "sizes.h"

namespace bv::bench {
namespace {

constexpr std::array<std::string_view, 5> kFields = {"Name:", "Fullname:", "Group:", "Username:", "MailName:"};

void SetupFloor(benchmark::State& state) {
    const SampleFile& file = SetupFile(Size(state));
    for (auto _ : state) Floor(file.HostPath);
}

void SetupLineScan(benchmark::State& state) {
    const SampleFile& file = SetupFile(Size(state));
    for (auto _ : state) benchmark::DoNotOptimize(LineScan(file.HostPath));
}

void SetLateKey(benchmark::State& state) {
    const SampleFile& file = SetupFile(Size(state));
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        if (!UpdateControlFile(file.Path, {"[LAST]", "Wanted:", flip ? "new" : "old"})) std::abort();
    }
}

void LookUp(benchmark::State& state, std::string_view paragraph, std::string_view key) {
    const SampleFile& file = SetupFile(Size(state));
    for (auto _ : state) {
        ControlStream stream = OpenShared(file.Path, "rb");
        ControlLine line;
        Position body = 0;
        FixedText<100> value;
        if (!FindParagraph(stream, paragraph, line, &body) || !GetKeyString(stream, key, value, body)) std::abort();
        benchmark::DoNotOptimize(value);
    }
}
void LookUpLate(benchmark::State& state) { LookUp(state, "[LAST]", "Wanted:"); }
void LookUpEarly(benchmark::State& state) { LookUp(state, "[OPTIONS]", "LogFile:"); }

void UsersFloor(benchmark::State& state) {
    const SampleFile& file = UserList(Size(state));
    for (auto _ : state) Floor(file.HostPath);
}

void UsersLineScan(benchmark::State& state) {
    const SampleFile& file = UserList(Size(state));
    for (auto _ : state) benchmark::DoNotOptimize(LineScan(file.HostPath));
}

void WalkRecords(benchmark::State& state) {
    const SampleFile& file = UserList(Size(state));
    for (auto _ : state) {
        ControlStream stream = OpenShared(file.Path, "rb");
        RecordWalker walker(stream, "[USER]", kFields);
        std::array<FixedText<100>, kFields.size()> fields;
        std::size_t records = 0;
        while (walker.Next()) {
            for (std::size_t key = 0; key < kFields.size(); ++key) walker.Get(key, fields[key]);
            benchmark::DoNotOptimize(fields);
            ++records;
        }
        if (records < Size(state)) std::abort();
    }
}

// Inserts a record in the middle and removes nothing, so the list grows by one record a round.
void InsertRecord(benchmark::State& state) {
    const SampleFile& file = UserList(Size(state));
    const std::string name = RecordName(Size(state) / 2) + "A";
    for (auto _ : state) {
        Rewrite rewrite(file.Path);
        RecordWalker walker(rewrite.Control, "[USER]", std::span(kFields).first(1));
        FixedText<8> there;
        while (walker.Next() && walker.Get(0, there) && there.View() <= name) {
        }
        const Position place = walker.Start();
        rewrite.Control.Rewind();
        const std::string_view text = rewrite.Control.Rest();
        rewrite.Temporary.Write(text.substr(0, place));
        rewrite.Temporary.Write("[USER]\r\nName: " + name + "\r\n\r\n");
        rewrite.Temporary.Write(text.substr(place));
        if (!rewrite.CopyBack() || !rewrite.Finish()) std::abort();
    }
}

#define SETUP_SIZES Arg(200)->Arg(2000)->Arg(100000)->Unit(benchmark::kMicrosecond)
#define LIST_SIZES Arg(1000)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond)
BENCHMARK(SetupFloor)->SETUP_SIZES;
BENCHMARK(SetLateKey)->SETUP_SIZES;
BENCHMARK(SetupLineScan)->SETUP_SIZES;
BENCHMARK(LookUpLate)->SETUP_SIZES;
BENCHMARK(LookUpEarly)->SETUP_SIZES;
BENCHMARK(UsersLineScan)->LIST_SIZES;
BENCHMARK(WalkRecords)->LIST_SIZES;
BENCHMARK(UsersFloor)->LIST_SIZES;
BENCHMARK(InsertRecord)->LIST_SIZES;

} // namespace
} // namespace bv::bench
