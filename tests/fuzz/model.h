// The rules of control files a second time, as simply as they can be put: one character after the other, nothing
// shared with the engine. It must stay slow and plain; the fuzz targets hold the engine to it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bv::fuzz::model {

struct Line {
    std::size_t Start = 0;
    std::size_t Next = 0; // where the line after it starts
    std::string Text;     // cleaned
};

// The line at a place of the text; none at its end.
std::optional<Line> ReadLine(std::string_view text, std::size_t at);

// The cleaned lines of a text.
std::vector<std::string> ReadLines(std::string_view text);

// A text on one line, cleaned.
std::string Clean(std::string_view text);

// Whether the line begins with the key, in any case.
bool Begins(const std::string& line, const std::string& key);
bool IsParagraph(const std::string& line);
bool IsSignificant(const std::string& line);

// What the searches find from a place on: FindParagraph and FindKeyLine; an empty header or key is any.
std::optional<Line> FindParagraph(std::string_view text, std::size_t at, const std::string& header);
std::optional<Line> FindKeyLine(std::string_view text, std::size_t at, const std::string& key, char stop = '\0');

// The value of a keyed line; empty when it has none.
std::string Value(const std::string& line);

std::string KeyedLine(const std::string& key, const std::string& value);

// Below, at or above zero as the first sorts before, with or after the second in any case.
int Compare(const std::string& first, const std::string& second);

} // namespace bv::fuzz::model
