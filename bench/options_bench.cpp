// Saving the server's options, one rewrite of the setup file a changed key, against the floor of one rewrite; and the
// list of its devices.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>

#include "baselines.h"
#include "devices/device_rows.h"
#include "options/server_options.h"
#include "sample_files.h"
#include "sizes.h"

namespace bv::bench {
namespace {

constexpr std::size_t kUsers = 20000; // of the server; the options do not look at them

void OptionsFloor(benchmark::State& state) {
    const SampleServer& server = UseServer(kUsers);
    for (auto _ : state) Floor(server.Setup.HostPath);
}

// Changes so many keys of two paragraphs, which after the first round stand at the end of the file.
void SaveOptions(benchmark::State& state) {
    UseServer(kUsers);
    ServerOptions options;
    SavedOptions saved;
    if (!LoadServerOptions(options, saved)) std::abort();
    std::uint16_t* const numbers[] = {&options.SendTries, &options.SendRetryWait, &options.CoverLineLen,
                                      &options.CoverMaxLine, &options.SendListEntries};
    for (auto _ : state) {
        for (std::uint16_t* number : std::span(numbers).first(Size(state))) *number ^= 1;
        if (!SaveServerOptions(options, saved)) std::abort();
    }
}

// A setup file with so many modems of some twenty keys.
void WriteDevices(const std::filesystem::path& setup, std::size_t devices) {
    std::ofstream file(setup, std::ios::binary);
    file << "[DEVICES]\r\n";
    for (std::size_t i = 1; i <= devices; ++i) file << "Device: M" << i << " \"Line " << i << "\"\r\n";
    for (std::size_t i = 1; i <= devices; ++i) {
        file << "\r\n[M" << i << "]\r\nType: FCLASS\r\nPort: COM" << i << "\r\n";
        for (int key = 0; key < 18; ++key) file << "Setting" << key << ": a value of usual length\r\n";
    }
}

// The same of so many keys in a long file, which gets the values that it has.
void SaveIntoLongSetup(benchmark::State& state) {
    namespace fs = std::filesystem;
    constexpr std::size_t kLines = 100'000;
    const fs::path setup = UseServer(kUsers).Setup.HostPath;
    const fs::path kept = setup.string() + ".kept";
    fs::copy_file(setup, kept, fs::copy_options::overwrite_existing);
    fs::copy_file(SetupFile(kLines).HostPath, setup, fs::copy_options::overwrite_existing);
    ServerOptions options;
    SavedOptions saved;
    if (!LoadServerOptions(options, saved) || !SaveServerOptions(options, saved)) std::abort();
    for (auto _ : state) {
        std::size_t left = Size(state);
        for (const OptionKey& key : OptionKeys())
            if (key.Trait != OptionKey::Traits::OnlyRead && left > 0) {
                saved[static_cast<std::size_t>(&key - OptionKeys().data())].reset();
                --left;
            }
        if (!SaveServerOptions(options, saved)) std::abort();
    }
    fs::rename(kept, setup);
}

// The list of so many devices, each with a paragraph of its own.
void ListDevices(benchmark::State& state) {
    namespace fs = std::filesystem;
    const fs::path setup = UseServer(kUsers).Setup.HostPath;
    const fs::path kept = setup.string() + ".kept";
    fs::copy_file(setup, kept, fs::copy_options::overwrite_existing);
    WriteDevices(setup, Size(state));
    for (auto _ : state) {
        RowTable rows;
        if (!ReadDeviceRows(NetworkDevices::Hidden, rows) || rows.Count() != Size(state)) std::abort();
    }
    fs::rename(kept, setup);
}

BENCHMARK(OptionsFloor)->Unit(benchmark::kMicrosecond);
BENCHMARK(SaveOptions)->Arg(1)->Arg(5)->Unit(benchmark::kMicrosecond);
BENCHMARK(SaveIntoLongSetup)->Arg(1)->Arg(60)->Unit(benchmark::kMillisecond);
BENCHMARK(ListDevices)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace bv::bench
