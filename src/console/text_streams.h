// The one way of texts between a person and the engine: the person's are encoded as the locale or the console says, the
// engine's are bytes of the files' code page.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/console.h"

namespace bv::console {

// How a result looks where colours are taken.
enum class Look { Plain, Header, Removed, Added };

class TextStreams : public Console {
  public:
    // Raw: bytes pass as they are.
    TextStreams(Console& console, bool isRaw) : console_(console), isEncoded_(!isRaw && console.HasEncoding()) {}

    // Whether what leaves and comes is UTF-8.
    [[nodiscard]] bool IsUtf8() const;

    void PrintResult(std::string_view text) override { PrintResult(text, Look::Plain); }
    void PrintResult(std::string_view text, Look look);
    void PrintNotice(std::string_view text) override;

    // A notice in the place of the last one.
    void PrintProgress(std::string_view text);

    // A result that is already as it is to leave.
    void PrintDocument(std::string_view text);

    std::optional<std::string> ReadLine() override { return Taken(console_.ReadLine()); }
    std::optional<std::string> ReadHiddenLine() override { return Taken(console_.ReadHiddenLine()); }

    // Whether a line that was read could not be taken; a message has said why.
    [[nodiscard]] bool HasRefusedLine() const { return hasRefusedLine_; }

    bool IsTerminal() override { return console_.IsTerminal(); }
    std::optional<std::size_t> Width() override { return console_.Width(); }

    // Turns an argument into the engine's. Returns why that cannot be, as ToCodePage does.
    [[nodiscard]] std::string TakeArgument(std::string& text) const;

    // The same for a path, which becomes the system's Windows path. One of the host stays as it is in every text: there
    // it is printed as it was given.
    [[nodiscard]] std::string TakePath(std::string& path);

    // From here on the path is printed as it was given.
    void PrintAsGiven(std::string path, std::string given) { given_.emplace_back(std::move(path), std::move(given)); }

    // The text as the person sees it, and in UTF-8.
    [[nodiscard]] std::string Shown(std::string_view text) const;
    [[nodiscard]] std::string Utf8Text(std::string_view text) const;

    // How many places of a line the text takes.
    [[nodiscard]] std::size_t WidthOf(std::string_view text) const;

  private:
    std::optional<std::string> Taken(std::optional<std::string> line);

    Console& console_;
    bool isEncoded_;
    bool hasRefusedLine_ = false;
    std::vector<std::pair<std::string, std::string>> given_; // paths of the engine, and of the person
};

// The text as it is printed: control characters that come from files would move the cursor of a terminal, or worse, and
// stand as "\x1b" in it. Tabs and line ends part what is printed, and stay.
std::string PrintableText(std::string_view text);

} // namespace bv::console
