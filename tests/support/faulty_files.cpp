#include "support/faulty_files.h"

#include <array>
#include <set>
#include <utility>

namespace bv::test {

using platform::FileError;

namespace {
enum class Verdict { Pass, Fail, Half };
} // namespace

struct FaultState {
    FaultPlan Plan;
    std::array<int, 2> Counts{}; // by CallKind
    bool Fired = false;
    bool Killed = false;
    std::set<std::unique_ptr<platform::File>*> OpenFiles; // of the wrapped file system

    Verdict Judge(CallKind kind) {
        if (Killed) return Verdict::Fail;
        const int call = ++Counts[static_cast<std::size_t>(kind)];
        if (kind != Plan.Counted) return Verdict::Pass;
        if (call != Plan.AtCall) return Fired && Plan.Kind == FaultKind::FailFromThenOn ? Verdict::Fail : Verdict::Pass;
        Fired = true;
        if (Plan.Kind == FaultKind::ShortWrite || Plan.Kind == FaultKind::KillHalfWritten) return Verdict::Half;
        if (Plan.Kind == FaultKind::Kill) Kill();
        return Verdict::Fail;
    }

    // Whether a call that has no half may go on.
    bool Allows(CallKind kind) {
        const Verdict verdict = Judge(kind);
        if (verdict == Verdict::Half) EndHalf();
        return verdict == Verdict::Pass;
    }

    void EndHalf() {
        if (Plan.Kind == FaultKind::KillHalfWritten) Kill();
    }

    void Kill() {
        Killed = true;
        for (auto* file : OpenFiles) file->reset();
    }

    [[nodiscard]] FileError Error() const {
        return Plan.Kind == FaultKind::ShortWrite ? FileError::DiskFull : Plan.Error;
    }
};

namespace {

class FaultyFile final : public platform::File {
  public:
    FaultyFile(std::shared_ptr<FaultState> state, std::unique_ptr<platform::File> wrapped)
        : state_(std::move(state)), wrapped_(std::move(wrapped)) {
        state_->OpenFiles.insert(&wrapped_);
    }
    ~FaultyFile() override { state_->OpenFiles.erase(&wrapped_); }
    FaultyFile(const FaultyFile&) = delete;
    FaultyFile& operator=(const FaultyFile&) = delete;

    platform::Transfer Read(std::uint64_t offset, char* bytes, std::size_t size) override {
        if (!state_->Allows(CallKind::Looks)) return {0, state_->Error()};
        return wrapped_->Read(offset, bytes, size);
    }

    platform::Transfer Write(std::uint64_t offset, std::string_view bytes) override {
        written_ = true;
        const Verdict verdict = state_->Judge(CallKind::Changes);
        if (verdict == Verdict::Pass) return wrapped_->Write(offset, bytes);
        if (verdict == Verdict::Fail) return {0, state_->Error()};
        const platform::Transfer half = wrapped_->Write(offset, bytes.substr(0, bytes.size() / 2));
        state_->EndHalf();
        return {half.Count, state_->Error()};
    }

    std::optional<std::uint64_t> Length() override {
        return state_->Allows(CallKind::Looks) ? wrapped_->Length() : std::nullopt;
    }

    FileError SetLength(std::uint64_t length) override {
        written_ = true;
        return state_->Allows(CallKind::Changes) ? wrapped_->SetLength(length) : state_->Error();
    }

    std::optional<std::int64_t> WriteTime() override {
        return state_->Allows(CallKind::Looks) ? wrapped_->WriteTime() : std::nullopt;
    }

    FileError SetWriteTime(std::int64_t seconds) override {
        return state_->Allows(CallKind::Changes) ? wrapped_->SetWriteTime(seconds) : state_->Error();
    }

    // A close that fails has closed all the same.
    FileError Close() override {
        const bool allowed = !written_ || state_->Allows(CallKind::Changes);
        const std::unique_ptr<platform::File> closing = std::move(wrapped_);
        const FileError error = closing ? closing->Close() : FileError::None;
        return allowed ? error : state_->Error();
    }

  private:
    std::shared_ptr<FaultState> state_;
    std::unique_ptr<platform::File> wrapped_; // none after a kill
    bool written_ = false;
};

bool ChangesFiles(platform::FileSystem& files, const std::string& path, platform::Creation how) {
    if (how == platform::Creation::OpenOrCreate) return !files.Find(path);
    return how != platform::Creation::OpenExisting;
}

} // namespace

FaultyFiles::FaultyFiles(platform::FileSystem& wrapped, const FaultPlan& plan)
    : wrapped_(wrapped), state_(std::make_shared<FaultState>()) {
    state_->Plan = plan;
}

platform::OpenResult FaultyFiles::Open(const std::string& path, const platform::OpenRequest& request) {
    const CallKind kind = ChangesFiles(wrapped_, path, request.How) ? CallKind::Changes : CallKind::Looks;
    if (!state_->Allows(kind)) return {nullptr, state_->Error()};
    platform::OpenResult result = wrapped_.Open(path, request);
    if (result.Opened) result.Opened = std::make_unique<FaultyFile>(state_, std::move(result.Opened));
    return result;
}

FileError FaultyFiles::Delete(const std::string& path) {
    return state_->Allows(CallKind::Changes) ? wrapped_.Delete(path) : state_->Error();
}

FileError FaultyFiles::Rename(const std::string& from, const std::string& to) {
    return state_->Allows(CallKind::Changes) ? wrapped_.Rename(from, to) : state_->Error();
}

FileError FaultyFiles::Replace(const std::string& from, const std::string& to) {
    return state_->Allows(CallKind::Changes) ? wrapped_.Replace(from, to) : state_->Error();
}

std::optional<platform::FileInfo> FaultyFiles::Find(const std::string& path) {
    return state_->Allows(CallKind::Looks) ? wrapped_.Find(path) : std::nullopt;
}

FileError FaultyFiles::ReadDirectory(const std::string& directory, std::string_view pattern,
                                     std::vector<std::string>& names) {
    if (!state_->Allows(CallKind::Looks)) return state_->Error();
    return wrapped_.ReadDirectory(directory, pattern, names);
}

FileError FaultyFiles::MakeDirectory(const std::string& path) {
    return state_->Allows(CallKind::Changes) ? wrapped_.MakeDirectory(path) : state_->Error();
}

FileError FaultyFiles::RemoveEmptyDirectory(const std::string& path) {
    return state_->Allows(CallKind::Changes) ? wrapped_.RemoveEmptyDirectory(path) : state_->Error();
}

bool FaultyFiles::Fired() const { return state_->Fired; }

int FaultyFiles::Calls(CallKind kind) const { return state_->Counts[static_cast<std::size_t>(kind)]; }

} // namespace bv::test
