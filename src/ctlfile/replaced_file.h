// Files that an editor replaces as a whole: the new text is written beside the live file (".new") and then takes its
// place. Reading, writing and putting in place are one unit, in which no other program of ours changes the file
// (file_gate.h).
//
// A crash can leave the new text behind. It is put in place only where it is whole, the live file is gone and nobody is
// at work on it, and only after a Yes to that very question; beside a live file it is nothing, and written over. (The
// changes of routing rules that wait for their save are another matter: lcr/rule_file.h.)
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "voice/messages.h"

namespace bv {

// A kind of such a file, and what is said when one cannot be opened, written or replaced; each with its path.
struct ReplacedFile {
    std::string Path;      // the live file
    std::string NewPath;   // its new text
    std::string_view Type; // of its header "[BRIVANE]", in any case; empty: it has none
    MessageWith<1> NotOpened = kUnableToOpenFile;
    MessageWith<1> NotWritten = kErrorUpdatingFile;
    MessageWith<1> NotReplaced = kErrorUpdatingFile;
    bool MayBePending = false; // the new text can be changes that wait for their save
};

struct TextOfFile {
    bool IsThere = false; // false: no file, no text
    std::string Text = {};
};

// By which a text that was read earlier is known again.
struct TextStamp {
    bool IsThere = false;
    std::size_t Length = 0; // bytes
    std::uint64_t Hash = 0; // FNV-1a of 64 bits
    friend bool operator==(const TextStamp&, const TextStamp&) = default;
};
TextStamp StampOf(const TextOfFile& file);

// None, after the message or 9011, for a file that is there and cannot be read to its end.
std::optional<TextOfFile> ReadText(const std::string& path, const MessageWith<1>& notOpened);

// The path for a reader: the live file's, or after warning 9012 that of its new text when a replacement was cut off. A
// file that is not there because it is being replaced is waited for.
std::string PathToRead(const ReplacedFile& file);

// The text at that path. None as above.
std::optional<TextOfFile> ReadReplacedFile(const ReplacedFile& file);

// Whether the text begins with the header and the type, or without a type with any paragraph, and ends a line.
bool IsWholeText(std::string_view text, std::string_view type);

// Whether the live file is certainly gone, its new text is whole and no program is at work on it.
bool IsCutOff(const ReplacedFile& file);

// Keeps a file's text, if there is one, beside it with the extension ".old". False after 413, 9011 or 5002.
bool KeepAsOld(const std::string& path);

// Puts the new text of a file that is cut off in its place. False, with nothing done, when it is not, or after the
// file's message.
bool RecoverReplacedFile(const ReplacedFile& file);

// Before a change: true unless the file is cut off. Then asks 9166; Yes puts the new text in place.
bool OfferRecovery(const ReplacedFile& file);

// Write the new text beside the live file, unless it is pending there already, and put it in its place. False after the
// file's message.
bool WriteNewText(const ReplacedFile& file, std::string_view text);
bool PutNewTextInPlace(const ReplacedFile& file);

// What a change makes of the live file's text; none, after a message, when it is not to be.
using TextChange = std::function<std::optional<std::string>(const TextOfFile& live)>;

// The whole of a change: offers a recovery, unless the new text may be pending, gets in, reads, and writes and swaps
// what the change makes of it. With the stamp of a text that was read earlier, that one must still be there, else error
// 9025. A text that is the live file's is not written. False after a message; then the live file is as it was.
bool ChangeReplacedFile(const ReplacedFile& file, const TextChange& change,
                        const std::optional<TextStamp>& expected = {});

} // namespace bv
