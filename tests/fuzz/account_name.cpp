// An account name of any display name and expression: what must not change it, and what it must be.
// Parameters: expression; the text is the display name.
#include "mailgw/account_name.h"

#include "fuzz/fuzz.h"
#include "platform/ascii.h"

namespace bv::fuzz {
namespace {

std::string Made(std::string_view displayName, std::string_view expression) {
    AccountName name = "before";
    Require(MakeMailAccountName(displayName, expression, name) != name.IsEmpty(), "whether there is a name");
    return name.String();
}

// The first words of a name, with one blank between them.
std::string FirstWords(std::string_view name, int most) {
    std::string words;
    for (; most > 0; --most) {
        name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
        const std::string_view word = name.substr(0, name.find(' '));
        if (word.empty()) break;
        words.append(words.empty() ? "" : " ").append(word.substr(0, 27));
        name.remove_prefix(word.size());
    }
    return words;
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const std::string_view expression = input.Parameters[0];
    const std::string_view displayName = input.Text.substr(0, input.Text.find('\t'));
    const std::string name = Made(displayName, expression);
    const std::string words = FirstWords(displayName, 3);

    RequireEqual(Made(words + "\tx y", expression), name, "only three words before the tab count");
    RequireEqual(Made(displayName, expression.substr(0, 27)), name, "only 27 characters of the expression count");
    RequireEqual(Made(displayName, UpperText(expression)), name, "the case of the expression does not count");
    RequireEqual(Made(displayName, "%Last"), FirstWords(displayName, 1), "the first word");
    if (expression.size() < 26) RequireEqual(Made(displayName, std::string(expression) + "%x"), name, "no item");
    for (const char c : name) Require(c != ' ' && words.find(c) != std::string::npos, "of the name's characters");
    // What has an item for each word, without a count, makes a name of any word.
    if (!words.empty()) Require(!Made(displayName, "%First%Second%Last").empty(), "a name of all words");
}

} // namespace bv::fuzz
