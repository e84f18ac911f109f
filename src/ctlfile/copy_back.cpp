#include "ctlfile/copy_back.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "ctlfile/file_gate.h"
#include "ctlfile/leftover.h"
#include "ctlfile/paths.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::size_t kBlock = 512; // after each so many bytes the system gets its turn

enum class Outcome { Copied, FileWhole, FileTorn };

// Copies the temporary's bytes from `from` to `to` to the same place of the control file; pieces that stand there in
// the old text already are not written. The number copied.
std::uint64_t CopyRange(ControlStream& temporary, ControlStream& control, std::string_view oldText, Position from,
                        Position to) {
    const auto largest = static_cast<std::size_t>(std::min<Position>(to - from, kCopyPiece));
    const std::unique_ptr<char[]> piece(new (std::nothrow) char[largest]); // an exception would leave a torn file
    if (!piece) return 0;
    for (Position at = from; at < to;) {
        const auto wanted = static_cast<std::size_t>(std::min<Position>(to - at, kCopyPiece));
        const platform::Transfer read = temporary.ReadAt(at, piece.get(), wanted);
        if (read.Count < wanted || read.Error != platform::FileError::None) return at - from;
        for (std::size_t done = 0; done < wanted; done += kBlock) YieldToSystem();
        const std::string_view bytes(piece.get(), wanted);
        const bool isThere = at < oldText.size() && oldText.substr(static_cast<std::size_t>(at), wanted) == bytes;
        const platform::Transfer written = isThere ? platform::Transfer{wanted} : control.WriteAt(at, bytes);
        at += written.Count;
        if (written.Error != platform::FileError::None) return at - from;
    }
    return to - from;
}

// A length that is right is left alone, so that a disk that takes no change any more cannot refuse it.
bool RestoreLength(ControlStream& control, std::uint64_t length) {
    return control.Length() == length || control.SetLength(length);
}

// Writes the old text over what was copied.
bool PutBack(ControlStream& control, std::string_view oldText, std::uint64_t copied) {
    const std::string_view lost = oldText.substr(0, static_cast<std::size_t>(copied));
    if (!lost.empty() && control.WriteAt(0, lost).Error != platform::FileError::None) return false;
    return RestoreLength(control, oldText.size());
}

bool TemporaryReadable(ControlStream& temporary, std::uint64_t length) {
    char first = 0;
    return length == 0 || temporary.ReadAt(0, &first, 1).Count == 1;
}

// The part past the old end goes first: it makes the room, so that a full disk is met while the old text is whole.
Outcome Overwrite(ControlStream& temporary, ControlStream& control, std::string_view oldText, std::uint64_t length) {
    if (length > oldText.size()) {
        const std::uint64_t growth = length - oldText.size();
        if (CopyRange(temporary, control, oldText, oldText.size(), length) < growth) {
            return RestoreLength(control, oldText.size()) ? Outcome::FileWhole : Outcome::FileTorn;
        }
    }
    const std::uint64_t rest = std::min<std::uint64_t>(length, oldText.size());
    const std::uint64_t copied = CopyRange(temporary, control, oldText, 0, rest);
    if (copied == rest && (length >= oldText.size() || control.SetLength(length))) return Outcome::Copied;
    if (PutBack(control, oldText, copied)) return Outcome::FileWhole;
    control.SetLength(copied);
    return Outcome::FileTorn;
}

Outcome CopyBackKeeping(ControlStream& temporary, ControlStream& control) {
    if (!temporary.Flush() || !control.Flush()) return Outcome::FileWhole;
    const std::optional<std::uint64_t> length = temporary.Length();
    if (!length || !TemporaryReadable(temporary, *length)) return Outcome::FileWhole;
    const std::optional<FileText> oldText = control.TakeText();
    if (!oldText) return Outcome::FileWhole;
    const Outcome outcome = Overwrite(temporary, control, oldText->View(), *length);
    control.Rewind();
    return outcome;
}

} // namespace

StatusCode CopyFileBack(ControlStream& temporary, ControlStream& control) {
    return CopyBackKeeping(temporary, control) == Outcome::Copied ? kDone : kFileFailed;
}

Rewrite::Rewrite(std::string path, OpenTimeout timeout) : path_(std::move(path)), temporaryPath_(TemporaryPath(path_)) {
    if (path_.size() > kMaxPath || temporaryPath_.size() > kMaxPath) {
        fault_ = Problem::BadPath;
        return;
    }
    Control = OpenToRewrite(path_, timeout);
    if (!Control) {
        fault_ = Problem::Control;
        return;
    }
    if (PutLeftoverAside(Control, timeout)) Temporary = OpenShared(temporaryPath_, "w+b", timeout, path_);
    if (!Temporary) {
        fault_ = Problem::Temporary;
        Control.Close();
    }
}

bool Rewrite::Begin() {
    if (temporaryIsNeeded_ || !Control.Rewind() || !Temporary.Rewind() || !Temporary.Flush()) return false;
    // Some file systems take any truncation for a reason to write the file out when it is closed.
    return Temporary.Length() == 0 || Temporary.SetLength(0);
}

bool Rewrite::CopyBack() {
    if (Control.Failed() || Temporary.Failed()) return false;
    const Outcome outcome = CopyBackKeeping(Temporary, Control);
    temporaryIsNeeded_ = outcome == Outcome::FileTorn;
    wasCopied_ = wasCopied_ || outcome == Outcome::Copied;
    return outcome == Outcome::Copied;
}

bool Rewrite::Finish() {
    if (!Temporary && !Control) return true;
    const bool hasTemporary{Temporary};
    const bool hadFailed = Control.Failed();
    // What was copied may be lost yet: a share may find only now that it has no room. The temporary is held until then.
    const bool controlClosed = Control.Close();
    const bool temporaryClosed = Temporary.Close();
    if (wasCopied_ && !hadFailed && !controlClosed) temporaryIsNeeded_ = true;
    // One that cannot be deleted does no harm: the next rewrite writes over it, or puts it aside.
    if (hasTemporary && !temporaryIsNeeded_) platform::Files().Delete(temporaryPath_);
    return controlClosed && temporaryClosed;
}

} // namespace bv
