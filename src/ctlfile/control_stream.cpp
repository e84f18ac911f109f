#include "ctlfile/control_stream.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "ctlfile/open_retry.h"
#include "ctlfile/paths.h"
#include "platform/memory.h"

namespace bv {
namespace {

constexpr std::size_t kFirstPiece = 16 * 1024; // what is read at first; then ever larger pieces
constexpr std::size_t kLargestPiece = 4 * 1024 * 1024;
constexpr std::size_t kWritePiece = 128 * 1024;
constexpr std::size_t kLargePiece = 4 * 1024 * 1024; // of memory
constexpr std::uint64_t kLargestFile = 1024 * 1024 * 1024;

int defaultTimeout = 5; // seconds

// What an fopen mode asks for, or none when it is no mode.
std::optional<platform::OpenRequest> RequestOf(std::string_view mode) {
    using namespace platform;
    if (mode.empty()) return {};
    const bool update = mode.find('+') != std::string_view::npos;
    switch (mode.front()) {
    case 'r':
        if (!update) return OpenRequest{Access::Read, Deny::Nothing, Creation::OpenExisting};
        return OpenRequest{Access::ReadWrite, Deny::ReadingAndWriting, Creation::OpenExisting};
    case 'w': return OpenRequest{Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateOrTruncate};
    case 'c': return OpenRequest{Access::ReadWrite, Deny::ReadingAndWriting, Creation::CreateNew};
    case 'a': return OpenRequest{Access::ReadWrite, Deny::Writing, Creation::OpenOrCreate};
    default: return {};
    }
}

} // namespace

ControlStream::ControlStream(std::unique_ptr<platform::File> file, std::string path)
    : file_(std::move(file)), path_(std::move(path)) {}

ControlStream::~ControlStream() {
    if (file_) Close();
}

ControlStream::ControlStream(ControlStream&& other) noexcept { *this = std::move(other); }

ControlStream& ControlStream::operator=(ControlStream&& other) noexcept {
    std::swap(file_, other.file_);
    std::swap(path_, other.path_);
    std::swap(position_, other.position_);
    std::swap(failed_, other.failed_);
    std::swap(memory_, other.memory_);
    std::swap(capacity_, other.capacity_);
    std::swap(loaded_, other.loaded_);
    std::swap(complete_, other.complete_);
    std::swap(lineEnds_, other.lineEnds_);
    std::swap(pending_, other.pending_);
    return *this;
}

bool ControlStream::Seek(Position position) {
    if (position == position_) return !Failed();
    if (!Flush()) return false;
    if (position > loaded_ && position > Length().value_or(0)) return false;
    position_ = position;
    return true;
}

std::string_view ControlStream::NextRawLineSlowly() {
    if (!Flush()) return {};
    std::size_t searched = 0; // bytes after the position without a line end
    for (;;) {
        if (position_ < loaded_) {
            const std::string_view line(memory_.get() + position_, loaded_ - position_);
            const std::size_t end = line.find('\n', searched);
            if (end != std::string_view::npos || complete_) {
                const std::size_t length = std::min(end, line.size() - 1) + 1;
                position_ += length;
                return line.substr(0, length);
            }
            searched = line.size();
        }
        if (complete_ || !LoadMore()) return {};
    }
}

bool ControlStream::SkipToLine(char first) {
    if (!Flush()) return false;
    for (std::size_t at = static_cast<std::size_t>(position_);;) {
        const std::size_t found = Loaded().find(first, at);
        if (found != std::string_view::npos && (found == position_ || memory_[found - 1] == '\n')) {
            position_ = found;
            return true;
        }
        at = found == std::string_view::npos ? loaded_ : found + 1;
        if (at < loaded_) continue;
        if (complete_ || !LoadMore()) break;
    }
    position_ = loaded_;
    return false;
}

std::string_view ControlStream::Rest() {
    LoadAll();
    if (Failed() || position_ >= loaded_) return {};
    const std::string_view rest(memory_.get() + position_, loaded_ - position_);
    position_ = loaded_;
    return rest;
}

std::optional<FileText> ControlStream::TakeText() {
    LoadAll();
    if (Failed()) return {};
    FileText text{std::move(memory_), loaded_};
    capacity_ = 0;
    ForgetFrom(0);
    return text;
}

void ControlStream::LoadAll() {
    if (!Flush()) return;
    while (!complete_ && LoadMore()) {
    }
}

// Makes room for the whole file and one byte more, whose absence shows the end; more when the file has grown.
bool ControlStream::Reserve() {
    const std::uint64_t length = Length().value_or(kLargestFile + 1);
    if (length > kLargestFile) return false;
    const std::size_t wanted = std::max(static_cast<std::size_t>(length) + 1, 2 * capacity_);
    std::unique_ptr<char[]> larger(new (std::nothrow) char[wanted]);
    if (!larger) return false;
    if (wanted >= kLargePiece) platform::ExpectWholeUse(larger.get(), wanted);
    if (loaded_ != 0) std::memcpy(larger.get(), memory_.get(), loaded_);
    memory_ = std::move(larger);
    capacity_ = wanted;
    return true;
}

bool ControlStream::LoadMore() {
    if (loaded_ == capacity_ && !Reserve()) failed_ = true;
    if (Failed()) return false;
    const std::size_t piece = std::clamp(loaded_ * 16, kFirstPiece, kLargestPiece);
    const std::size_t wanted = std::min(capacity_ - loaded_, piece);
    const platform::Transfer read = file_->Read(loaded_, memory_.get() + loaded_, wanted);
    loaded_ += read.Count;
    complete_ = read.Count < wanted;
    failed_ = read.Error != platform::FileError::None;
    return !failed_;
}

void ControlStream::ForgetFrom(Position position) {
    loaded_ = static_cast<std::size_t>(std::min<Position>(loaded_, position));
    complete_ = false;
    lineEnds_.Forget();
}

bool ControlStream::Write(std::string_view bytes) {
    if (Failed()) return false;
    if (pending_.empty()) ForgetFrom(position_);
    const bool direct = bytes.size() >= kWritePiece;
    if (direct && !Flush()) return false;
    if (direct) {
        failed_ = file_->Write(position_, bytes).Error != platform::FileError::None;
    } else {
        failed_ = !Append(bytes);
    }
    if (failed_) return false;
    position_ += bytes.size();
    return direct || pending_.size() < kWritePiece || Flush();
}

// A lack of memory is a failed write, after which nothing counts as written.
bool ControlStream::Append(std::string_view bytes) {
    try {
        pending_ += bytes;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool ControlStream::Flush() {
    if (Failed()) return false;
    if (pending_.empty()) return true;
    const platform::Transfer written = file_->Write(position_ - pending_.size(), pending_);
    pending_.clear();
    failed_ = written.Error != platform::FileError::None;
    return !failed_;
}

std::optional<std::uint64_t> ControlStream::Length() { return file_ ? file_->Length() : std::nullopt; }

bool ControlStream::SetLength(std::uint64_t length) {
    ForgetFrom(length);
    return file_ && file_->SetLength(length) == platform::FileError::None;
}

platform::Transfer ControlStream::ReadAt(Position position, char* bytes, std::size_t size) {
    if (!file_) return {0, platform::FileError::Failed};
    return file_->Read(position, bytes, size);
}

platform::Transfer ControlStream::WriteAt(Position position, std::string_view bytes) {
    if (!file_) return {0, platform::FileError::Failed};
    ForgetFrom(position);
    return file_->Write(position, bytes);
}

bool ControlStream::Close() {
    bool whole = Flush();
    if (file_ && file_->Close() != platform::FileError::None) whole = false;
    file_.reset();
    return whole;
}

int SecondsOf(OpenTimeout timeout) { return timeout.value_or(defaultTimeout); }

ControlStream OpenShared(const std::string& path, std::string_view mode, OpenTimeout timeout,
                         std::string_view standsFor) {
    if (path.empty()) {
        defaultTimeout = timeout.value_or(defaultTimeout);
        return {};
    }
    std::optional<platform::OpenRequest> request = RequestOf(mode);
    if (!request || path.size() > kMaxPath) return {};
    request->StandsFor = standsFor;
    std::string ownPath = path; // before a file is truncated
    platform::OpenResult result = OpenRetrying(path, *request, SecondsOf(timeout));
    if (!result.Opened) return {};
    // A new file has a known length; an asking that failed would leave the file behind.
    const bool isNew = mode.front() == 'w' || mode.front() == 'c';
    const std::optional<std::uint64_t> length = isNew ? 0 : result.Opened->Length();
    if (length.value_or(kLargestFile + 1) > kLargestFile) return {};
    ControlStream stream(std::move(result.Opened), std::move(ownPath));
    if (mode.front() == 'a') stream.Seek(*length);
    return stream;
}

} // namespace bv
