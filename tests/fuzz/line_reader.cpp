// Reading control files: each line, each record, and searches from many places, against the model.
// Parameters: header | key | stop character | how often the text is repeated.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "ctlfile/memory_disk.h"
#include "ctlfile/reader.h"
#include "ctlfile/records.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

using model::Line;

constexpr std::size_t kMaxText = 20'000; // more than a stream takes at once
constexpr std::size_t kPlaces = 8;       // searched from

struct Reading {
    std::string_view Text;
    std::string Header;
    std::string Key;
    char Stop;
    ControlStream& Stream;

    void From(Position at) const { Require(Stream.Seek(at) && Stream.Tell() == at, "seek"); }
};

// Whether a search did what the model does: the line, and the position after it or the old one.
void Check(const Reading& reading, bool found, const ControlLine& line, const std::optional<Line>& expected,
           Position before, const char* what) {
    Require(found == expected.has_value(), what);
    RequireEqual(line, expected ? expected->Text : "", what);
    Require(reading.Stream.Tell() == (expected ? expected->Next : before), "position after a search");
}

void CheckLines(const Reading& reading) {
    ControlLine line;
    Position start = 0;
    for (std::size_t at = 0; at <= reading.Text.size();) {
        const std::optional<Line> expected = model::ReadLine(reading.Text, at);
        const bool read = ReadControlLine(reading.Stream, line, &start);
        Check(reading, read, line, expected, at, "ReadControlLine");
        Require(start == at, "start of a line");
        if (!expected) return;
        at = expected->Next;
    }
    Require(false, "more lines than text");
}

void CheckSearches(const Reading& reading, Position at) {
    ControlLine line;
    Position place = 0;
    for (const std::string& header : {reading.Header, std::string()}) {
        const std::optional<Line> expected = model::FindParagraph(reading.Text, at, header);
        reading.From(at);
        const bool found =
            FindParagraph(reading.Stream, header.empty() ? std::nullopt : std::optional(header), line, &place);
        Check(reading, found, line, expected, at, "FindParagraph");
        Require(!found || place == expected->Next, "start of the body");
    }
    for (const std::string& key : {reading.Key, std::string()}) {
        const std::optional<Line> expected = model::FindKeyLine(reading.Text, at, key, reading.Stop);
        reading.From(at == 0 ? 0 : reading.Text.size());
        const bool found = FindKeyLine(reading.Stream, key.empty() ? std::nullopt : std::optional(key), line, at,
                                       &place, reading.Stop);
        Check(reading, found, line, expected, at, "FindKeyLine");
        Require(!found || place == expected->Start, "start of the key's line");
    }
    Require(!FindKeyLine(reading.Stream, reading.Key, line, reading.Text.size() + 1), "start beyond the end");
}

void CheckRecords(const Reading& reading) {
    const bool hasSeparator = reading.Key.find_first_of(":=") != std::string::npos;
    const std::string key = reading.Key + (hasSeparator ? "" : "=");
    const std::array<std::string_view, 2> keys = {key, "Name:"};
    reading.From(0);
    RecordWalker walker(reading.Stream, reading.Header, keys);
    std::size_t at = 0;
    while (const std::optional<Line> header = model::FindParagraph(reading.Text, at, reading.Header)) {
        Require(walker.Next(), "a record is missed");
        Require(walker.Start() == header->Start && walker.BodyStart() == header->Next, "place of a record");
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const std::optional<Line> line = model::FindKeyLine(reading.Text, header->Next, std::string(keys[i]));
            ControlLine value("untouched");
            Require(walker.Get(i, value) == line.has_value(), "key of a record");
            RequireEqual(value, line ? model::Value(line->Text) : "", "value of a record");
        }
        const std::optional<Line> next = model::FindParagraph(reading.Text, header->Next, "");
        at = next ? next->Start : reading.Text.size();
        Require(walker.End() == at, "end of a record");
    }
    Require(!walker.Next(), "a record too many");
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string header = model::Clean(input.Parameters[0]);
    const std::string key = model::Clean(input.Parameter(1).value_or(""));
    const std::string stop = model::Clean(input.Parameter(2).value_or(""));
    if (!model::IsParagraph(header) || !model::IsSignificant(key) || model::IsParagraph(key)) return;

    std::string text(input.Text);
    const std::string times(input.Parameter(3).value_or(""));
    const long repeats = input.Text.empty() ? 0 : std::strtol(times.c_str(), nullptr, 10);
    for (long i = 1; i < repeats && text.size() < kMaxText; ++i) text += input.Text;

    const test::MemoryDisk disk;
    test::MemoryDisk::Put("A.CTL", text);
    ControlStream stream = OpenShared("A.CTL", "rb");
    const Reading reading{text, header, key, stop.size() == 1 && model::IsSignificant(stop) ? stop[0] : '\0', stream};
    CheckLines(reading);
    CheckRecords(reading);
    const std::size_t step = text.size() / kPlaces + 1;
    for (std::size_t at = 0; at <= text.size(); at += step) CheckSearches(reading, at);
    Require(stream.Close(), "the stream has failed");
}

} // namespace bv::fuzz
