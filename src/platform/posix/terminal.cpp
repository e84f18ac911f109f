#include "platform/terminal.h"

#include <langinfo.h>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is not in the standard one
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/ascii.h"
#include "platform/posix/charset.h"

namespace bv::platform {
namespace {

constexpr std::string_view kUtf8 = "UTF-8";

// What a variable says of the locale, the first of those that say anything.
std::string_view LocaleName() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') return value;
    }
    return "C";
}

// The locale's encoding by the system's name; empty in the C locale. A locale that is not installed tells it by name.
std::string EncodingOfLocale() {
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) {
        const std::string_view name = LocaleName();
        const std::size_t dot = name.find('.');
        return std::string(dot == std::string_view::npos ? "" : name.substr(dot + 1, name.find('@') - dot - 1));
    }
    std::string encoding = nl_langinfo_l(CODESET, locale);
    freelocale(locale);
    return encoding == "ANSI_X3.4-1968" || encoding == "US-ASCII" ? "" : encoding;
}

const std::string& Encoding() {
    static const std::string kEncoding = EncodingOfLocale();
    return kEncoding;
}

bool IsUtf8Name(std::string_view encoding) { return EqualFolded(encoding, kUtf8) || EqualFolded(encoding, "utf8"); }

// A letter of UTF-8 by its number.
std::string NameOfLetter(std::string_view utf8) {
    const std::string units = Converted(utf8, std::string(kUtf8), "UTF-16BE").value_or("");
    std::string name;
    for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "\\u%02x%02x", static_cast<unsigned char>(units[i]),
                      static_cast<unsigned char>(units[i + 1]));
        name += text.data();
    }
    return name;
}

} // namespace

bool HasEncoding() { return !Encoding().empty(); }

std::optional<std::string> FromTerminal(std::string_view text) {
    const std::string& encoding = Encoding();
    if (IsUtf8Name(encoding)) return std::string(text);
    return Converted(text, encoding, std::string(kUtf8));
}

std::string ToTerminal(std::string_view utf8) {
    const std::string& encoding = Encoding();
    if (IsUtf8Name(encoding)) return std::string(utf8);
    if (auto whole = Converted(utf8, std::string(kUtf8), encoding)) return *whole;
    std::string text;
    for (std::size_t size = 0; !utf8.empty(); utf8.remove_prefix(size)) {
        const auto continues = [utf8](std::size_t at) { return (static_cast<unsigned char>(utf8[at]) & 0xC0) == 0x80; };
        for (size = 1; size < utf8.size() && continues(size); ++size) {
        }
        const std::string_view letter = utf8.substr(0, size);
        text += Converted(letter, std::string(kUtf8), encoding).value_or(NameOfLetter(letter));
    }
    return text;
}

std::vector<std::string> ProgramArguments(int count, char** arguments) {
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

bool HasUtf8Arguments() { return false; }

std::optional<std::size_t> TerminalWidth() {
    constexpr std::size_t kUsual = 80; // of one that does not say
    winsize size{};
    if (isatty(STDOUT_FILENO) != 1) return {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

bool TakesColours() {
    const char* kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

bool IsTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1; }

struct HiddenTyping::Mode {
    termios Settings;
};

HiddenTyping::HiddenTyping() {
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0) return;
    before_ = std::make_unique<Mode>(Mode{settings});
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

HiddenTyping::~HiddenTyping() {
    if (before_) tcsetattr(STDIN_FILENO, TCSANOW, &before_->Settings);
}

} // namespace bv::platform
