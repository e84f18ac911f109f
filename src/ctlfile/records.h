// Files of records: paragraphs of one header, each a record, told apart by a key ("[USER]" and "Name:").
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/control_stream.h"
#include "ctlfile/fixed_text.h"

namespace bv {

// Walks the records of one header in file order, in one pass, and picks the values of a few keys of each: of the first
// line that begins with the key, as GetKeyString would find it.
//
//   RecordWalker walker(stream, "[USER]", kKeys);
//   while (walker.Next()) walker.Get(0, name);
class RecordWalker {
  public:
    // Starts at the stream's position. The keys (each with its separator) and the header must outlive the walker.
    RecordWalker(ControlStream& stream, std::string_view header, std::span<const std::string_view> keys);

    // To the next record; false at the end of the file.
    bool Next();

    // The value of the key of that index in the current record, or none. It lasts until the next one is asked for, or
    // the stream is read or written.
    std::optional<std::string_view> Value(std::size_t index) const;

    // The same put into a place; false, with the place emptied, when there is none.
    bool Get(std::size_t index, TextPlace place) const;

    // Where the current record's header line begins, where its body begins, and where the next paragraph does.
    [[nodiscard]] Position Start() const { return start_; }
    [[nodiscard]] Position BodyStart() const { return bodyStart_; }
    [[nodiscard]] Position End() const { return end_; }

  private:
    // Eight characters to be compared in one go. Those of a line fit in any case of the letters.
    struct Word {
        [[nodiscard]] bool Fits(const char* characters) const;

        std::uint64_t Bits = 0;
        std::uint64_t Counts = 0; // the bits that tell: not which case a letter has
    };
    // What a line begins with: a key, or the header.
    struct Key {
        explicit Key(std::string_view text);
        [[nodiscard]] bool Begins(std::string_view line) const;

        std::string_view Text;
        std::size_t ValueStart; // on its line
        std::size_t TailAt;     // where the second word begins, which ends with the key
        bool WordsAreAll;       // the two words hold all its characters, and no blanks
        Word Head;              // of a shorter key what follows counts nothing
        Word Tail;
        std::uint8_t Next = 0; // the next key with the same first letter: its index plus 1, or 0
    };
    // A key's line in the current record; without a size when there is none.
    struct Line {
        Position At = 0;
        std::size_t Size = 0;
    };
    static Word WordOf(std::string_view text);
    bool FindHeader();
    void Note(std::string_view line, Position at);

    ControlStream& stream_;
    Key header_;
    std::vector<Key> keys_;
    std::vector<Line> lines_;               // of each key
    std::array<std::uint8_t, 256> first_{}; // the first key that begins with the character, in any case, as Next
    std::size_t missing_ = 0;               // keys not found yet in the current record
    Position start_ = 0;
    Position bodyStart_ = 0;
    Position end_ = 0;
    mutable std::string cleaned_; // the value last asked for, where it is not clean as it stands
};

} // namespace bv
