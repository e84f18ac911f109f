#include "console/text_streams.h"

#include <algorithm>

#include "console/letter_width.h"
#include "ctlfile/lines.h"
#include "ctlfile/utf8.h"
#include "platform/code_page.h"
#include "platform/drives.h"
#include "voice/format.h"

namespace bv::console {
namespace {

constexpr std::string_view kLooks[] = {"", "\x1b[1m", "\x1b[31m", "\x1b[32m"}; // by Look
constexpr std::string_view kPlain = "\x1b[0m";

// The text in UTF-8, with the control letters that the code page may have from 0x80 on as PrintableText shows others.
std::string PrintableUtf8(std::string_view text) {
    std::string out;
    for (const char32_t letter : platform::LettersOf(PrintableText(text))) {
        if (letter >= 0x80 && letter < 0xA0)
            out += FormatText("\\x%02x", static_cast<int>(letter));
        else
            AppendUtf8(out, letter);
    }
    return out;
}

// Hands the text out in pieces: what stands between the paths, and the paths as they were given.
template <class OnText, class OnPath>
void PartPaths(std::string_view text, const std::vector<std::pair<std::string, std::string>>& paths, OnText onText,
               OnPath onPath) {
    for (;;) {
        std::size_t first = std::string_view::npos;
        const std::pair<std::string, std::string>* path = nullptr;
        for (const auto& known : paths) {
            const std::size_t at = text.find(known.first);
            if (at >= first || text.substr(at + known.first.size()).starts_with('\\')) continue;
            first = at;
            path = &known;
        }
        onText(text.substr(0, first));
        if (path == nullptr) return;
        onPath(path->second);
        text.remove_prefix(first + path->first.size());
    }
}

} // namespace

bool TextStreams::IsUtf8() const {
    constexpr std::string_view kEuro = "\xE2\x82\xAC";
    return isEncoded_ && console_.Encode(kEuro) == kEuro;
}

void TextStreams::PrintResult(std::string_view text, Look look) {
    const bool isColoured = look != Look::Plain && console_.TakesColours();
    if (!isColoured) return console_.PrintResult(Shown(text));
    const bool endsLine = text.ends_with('\n');
    if (endsLine) text.remove_suffix(1);
    const std::string_view start = kLooks[static_cast<std::size_t>(look)];
    console_.PrintResult(std::string(start) + Shown(text) + std::string(kPlain) + (endsLine ? "\n" : ""));
}

void TextStreams::PrintNotice(std::string_view text) { console_.PrintNotice(Shown(text)); }

void TextStreams::PrintProgress(std::string_view text) { console_.PrintNotice('\r' + Shown(text)); }

void TextStreams::PrintDocument(std::string_view text) { console_.PrintResult(PrintableText(text)); }

std::optional<std::string> TextStreams::Taken(std::optional<std::string> line) {
    if (!line || !isEncoded_) return line;
    std::optional<std::string> text = console_.Decode(*line);
    const std::string fault = text ? ToCodePage(*text) : "the text is not in the encoding of the terminal";
    if (fault.empty()) return text;
    PrintNotice("Standard input: " + fault + '\n');
    hasRefusedLine_ = true;
    return {};
}

std::string TextStreams::TakeArgument(std::string& text) const {
    const bool isUtf8 = console_.HasUtf8Arguments();
    if (!isEncoded_ && !isUtf8) return {};
    std::optional<std::string> decoded = isUtf8 ? std::optional(text) : console_.Decode(text);
    std::string fault = decoded ? ToCodePage(*decoded) : "the text is not in the encoding of the terminal";
    if (fault.empty()) text = *decoded;
    return fault;
}

std::string TextStreams::TakePath(std::string& path) {
    const std::string known = platform::ToWindowsPath(path);
    if (known == path) return TakeArgument(path);
    PrintAsGiven(known, path);
    path = known;
    return {};
}

std::string TextStreams::Shown(std::string_view text) const {
    std::string shown;
    const auto addText = [&](std::string_view part) {
        shown += isEncoded_ ? console_.Encode(PrintableUtf8(part)) : PrintableText(part);
    };
    PartPaths(text, given_, addText, [&](std::string_view given) { shown += PrintableText(given); });
    return shown;
}

std::string TextStreams::Utf8Text(std::string_view text) const {
    std::string utf8;
    const auto addText = [&](std::string_view part) { utf8 += FromCodePage(part); };
    const auto addPath = [&](const std::string& given) {
        const std::string path = isEncoded_ ? console_.Decode(given).value_or(given) : given;
        utf8 += bv::IsUtf8(path) ? path : FromCodePage(path);
    };
    PartPaths(text, given_, addText, addPath);
    return utf8;
}

std::size_t TextStreams::WidthOf(std::string_view text) const {
    if (!isEncoded_) return text.size();
    std::size_t width = 0;
    for (const char32_t letter : platform::LettersOf(text)) width += LetterWidth(letter);
    return width;
}

std::string PrintableText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isSeparator = c == '\t' || c == '\n' || text.substr(i, 2) == kLineEnd;
        if (isSeparator || !IsControl(c))
            out += c;
        else
            out += FormatText("\\x%02x", static_cast<int>(c));
    }
    return out;
}

} // namespace bv::console
