#include <optional>

#include "console/commands.h"
#include "console/output.h"
#include "console/password_input.h"
#include "ctlfile/digits.h"
#include "ctlfile/scramble.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

constexpr std::size_t kMaxLetters = 196;

// The number of letters that --size asks for; none when it asks for an impossible one.
std::optional<std::size_t> Letters(const std::string& text) {
    const auto letters = static_cast<std::size_t>(ParseDigits(text).value_or(0));
    if (letters == 0 || letters > kMaxLetters || letters % 2 != 0) return {};
    return letters;
}

int Scramble(Session& session, const Arguments& arguments) {
    std::optional<std::size_t> letters;
    if (arguments.Has("--size")) {
        letters = Letters(arguments["--size"]);
        if (!letters) return session.WrongUsage("--size is an even number from 2 to " + std::to_string(kMaxLetters));
    }
    const std::optional<std::string> text = ReadOnlyLine(session, "Text to scramble", "The text to scramble");
    if (!text) return kExitWrongUsage;

    const auto scrambled = letters ? ScrambleText(*text, *letters + 2) : ScrambleForPage(*text);
    if (!scrambled) {
        ShowError(kUnableToEncrypt);
        return kExitRefused;
    }
    PrintLines(session, {*scrambled});
    return kExitDone;
}

int Unscramble(Session& session, const Arguments&) {
    const std::optional<std::string> scrambled = ReadOnlyLine(session, "Text to unscramble", "The text to unscramble");
    if (!scrambled) return kExitWrongUsage;
    const std::optional<std::string> text = UnscrambleText(*scrambled);
    if (!text) return session.Refuse("This is no scrambled text");
    PrintLines(session, {*text});
    return kExitDone;
}

constexpr Verb kVerbs[] = {
    {.Name = "scramble",
     .Help = "Scramble the line on standard input, differently each time",
     .Parameters = {{{"--size",
                      "Letters in the scrambled text, an even number up to 196; else 30, 60, 90 or 100 by the "
                      "text's length, as the settings pages store it",
                      ParameterKind::Option, "N"}}},
     .Example = "< password.txt",
     .Run = Scramble},
    {.Name = "unscramble",
     .Help = "Show what a scrambled text on standard input stands for",
     .Example = "< stored.txt",
     .Run = Unscramble},
};

} // namespace

const Area kSecretArea = {"secret", "Scramble and unscramble the stored form of passwords", kVerbs, kServerOptions};

} // namespace bv::console
