#include "ctlfile/file_gate.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "ctlfile/open_retry.h"
#include "ctlfile/paths.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::FileError;
using platform::Files;

struct HeldGate {
    std::unique_ptr<platform::File> Opened;
    int Holders = 0;
};

// The gates that this process holds, by their paths.
std::map<std::string, HeldGate>& HeldGates() {
    static std::map<std::string, HeldGate> gates;
    return gates;
}

constexpr platform::OpenRequest Request(platform::Creation how) {
    return {platform::Access::ReadWrite, platform::Deny::ReadingAndWriting, how, {}, true};
}

// A gate that is there is opened, never made again: some systems refuse to make what another user has made.
std::unique_ptr<platform::File> OpenGate(const std::string& path) {
    constexpr int kTries = 10; // it can come and go between the two
    for (int i = 0; i < kTries; ++i) {
        platform::OpenResult there = OpenRetrying(path, Request(platform::Creation::OpenExisting), kGatePatience);
        if (there.Error != FileError::NotFound) return std::move(there.Opened);
        platform::OpenResult made = Files().Open(path, Request(platform::Creation::CreateNew));
        if (made.Opened) return std::move(made.Opened);
        if (made.Error != FileError::Exists && made.Error != FileError::AccessDenied) return {};
    }
    return {};
}

} // namespace

// In capitals, so that one file has one gate also where names are told apart by case.
std::string GatePath(const std::string& path) {
    std::string gate = WithExtension(path, "LCK");
    const std::size_t name = DirectoryPart(gate).size();
    std::transform(gate.begin() + static_cast<std::ptrdiff_t>(name), gate.end(),
                   gate.begin() + static_cast<std::ptrdiff_t>(name), ToUpper);
    return gate;
}

FileGate::FileGate(const std::string& path) : path_(GatePath(path)) {
    auto& gates = HeldGates();
    auto held = gates.find(path_);
    if (held == gates.end()) {
        std::unique_ptr<platform::File> opened = OpenGate(path_);
        if (!opened) return;
        held = gates.emplace(path_, HeldGate{std::move(opened)}).first;
    }
    ++held->second.Holders;
    isHeld_ = true;
}

FileGate::~FileGate() {
    if (!isHeld_) return;
    auto& gates = HeldGates();
    const auto held = gates.find(path_);
    if (--held->second.Holders > 0) return;
    gates.erase(held);
    Files().Delete(path_); // refused when the next one has it
}

bool GateIsHeldElsewhere(const std::string& path) {
    const std::string gate = GatePath(path);
    return !HeldGates().contains(gate) && Files().Open(gate, {}).Error == FileError::AccessDenied;
}

ControlStream OpenToRewrite(const std::string& path, OpenTimeout timeout) {
    constexpr std::int64_t kPause = 10; // milliseconds
    platform::Clock& clock = platform::TheClock();
    const std::int64_t end = clock.Ticks() + std::int64_t{SecondsOf(timeout)} * 1000;
    FileWait wait(path);
    for (;;) {
        ControlStream file = OpenShared(path, "r+b", static_cast<int>((end - clock.Ticks() + 999) / 1000));
        if (!GateIsHeldElsewhere(path)) return file;
        file.Close();
        do { // without the file, so that who has the gate finds it free
            if (clock.Ticks() >= end) return {};
            wait.Pause(kPause);
        } while (GateIsHeldElsewhere(path));
    }
}

ControlStream OpenToRead(const std::string& path, OpenTimeout timeout) {
    constexpr std::int64_t kPause = 10; // milliseconds
    platform::Clock& clock = platform::TheClock();
    const std::int64_t end = clock.Ticks() + std::int64_t{SecondsOf(timeout)} * 1000;
    int tries = 5; // with the gate free: the file can be back at each look, and gone again before it is opened
    FileWait wait(path);
    for (;;) {
        ControlStream file = OpenShared(path, "rb", static_cast<int>((end - clock.Ticks() + 999) / 1000));
        if (file || clock.Ticks() >= end) return file;
        if (!GateIsHeldElsewhere(path) && (--tries == 0 || IsMissing(path))) return file;
        wait.Pause(kPause);
    }
}

} // namespace bv
