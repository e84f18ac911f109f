// An open control file.
//
// Control files live on slow network shares and are small. A stream therefore takes the file in large pieces,
// each byte once, and answers lines, tell and seek from memory; what is written is gathered and leaves in large
// pieces. A writer holds the file against everybody else while it lives, so what is in memory stays true.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/lines.h"
#include "platform/files.h"

namespace bv {

using Position = std::uint64_t; // bytes from the start of the file

// The contents of a whole file, taken out of its stream.
struct FileText {
    std::unique_ptr<char[]> Bytes;
    std::size_t Size = 0;
    [[nodiscard]] std::string_view View() const { return {Bytes.get(), Size}; }
};

class ControlStream {
  public:
    // A stream of no file: false, and already failed.
    ControlStream() = default;
    ControlStream(std::unique_ptr<platform::File> file, std::string path);
    ~ControlStream(); // hands over what was written, if it can, and closes
    ControlStream(ControlStream&& other) noexcept;
    ControlStream& operator=(ControlStream&& other) noexcept;

    // Whether a file is open.
    explicit operator bool() const { return file_ != nullptr; }
    [[nodiscard]] const std::string& Path() const { return path_; }

    // Whether any reading, writing or seeking has failed since the stream was opened.
    [[nodiscard]] bool Failed() const { return failed_ || !file_; }

    [[nodiscard]] Position Tell() const { return position_; }
    bool Seek(Position position); // false, and the position stays, beyond the end of the file
    bool Rewind() { return Seek(0); }

    // The next line as it stands, its LF included (the last line may lack one), and steps over it. The view
    // holds until the stream is next read or written. Empty at the end of the file and after a failure.
    std::string_view NextRawLine() {
        if (pending_.empty() && position_ < loaded_) {
            const std::size_t start = position_;
            const std::size_t end = lineEnds_.Find(Loaded(), start);
            if (end < loaded_) {
                position_ = end + 1;
                return {memory_.get() + start, end + 1 - start};
            }
        }
        return NextRawLineSlowly();
    }

    // Steps to the next line that begins with the character: the one at the position or a later one. False, at the end
    // of the file, when there is none.
    bool SkipToLine(char first);

    // The bytes from the position to the end of the file, and steps over them; the view holds as above.
    std::string_view Rest();

    // Bytes that have been read already. The view holds as above.
    [[nodiscard]] std::string_view Seen(Position from, std::size_t size) const { return {memory_.get() + from, size}; }

    // The whole file's contents, which the stream then forgets; none after a failure. The position stays.
    std::optional<FileText> TakeText();

    // Writes at the position and steps over what was written. False once anything has failed.
    bool Write(std::string_view bytes);

    // Hands what was written to the system. False when that, or anything before, failed.
    bool Flush();

    // Length and change of length of the file, and transfers at any place of it, beside the stream's position. Only
    // after a Flush; a failure is not kept in Failed(), so that the caller can still mend the file.
    std::optional<std::uint64_t> Length();
    bool SetLength(std::uint64_t length);
    platform::Transfer ReadAt(Position position, char* bytes, std::size_t size);
    platform::Transfer WriteAt(Position position, std::string_view bytes);

    // Flushes and closes. False when anything has failed since the stream was opened.
    bool Close();

  private:
    [[nodiscard]] std::string_view Loaded() const { return {memory_.get(), loaded_}; }
    std::string_view NextRawLineSlowly();
    bool LoadMore();
    void LoadAll();
    bool Reserve();
    bool Append(std::string_view bytes);
    void ForgetFrom(Position position);

    std::unique_ptr<platform::File> file_;
    std::string path_;
    Position position_ = 0;
    bool failed_ = false;

    std::unique_ptr<char[]> memory_; // the file's first loaded_ bytes
    std::size_t capacity_ = 0;
    std::size_t loaded_ = 0;
    bool complete_ = false; // the whole file is in memory
    LineEnds lineEnds_;

    std::string pending_; // written, not yet handed over; ends at position_
};

// How long a locked file is tried again; without a number of seconds, the process's default, which is 5 until changed.
using OpenTimeout = std::optional<int>;
inline constexpr OpenTimeout kDefaultTimeout{};

// That number of seconds.
int SecondsOf(OpenTimeout timeout);

// Opens a control file with a mode as the standard library's fopen takes it, always as bytes: "r" denies nothing
// to others, "r+", "w" and "w+" deny reading and writing, "a" denies writing; "c" creates a file and fails when it
// exists. An opening refused as access-denied is tried again, yielding to the system, until the timeout has
// passed; any other failure, a path of over 268 characters and a file of over 1 GiB give no stream at once. Without
// a path, sets the process's default timeout. No message is shown. A file that is opened to write the new text of
// another one stands for that, and gets its rights (platform/files.h).
ControlStream OpenShared(const std::string& path, std::string_view mode, OpenTimeout timeout = kDefaultTimeout,
                         std::string_view standsFor = {});

} // namespace bv
