#include "ctlfile/key_fields.h"

#include <algorithm>

#include "ctlfile/digits.h"
#include "ctlfile/lines.h"
#include "ctlfile/scramble.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

// "A, B or C"; an empty word is called so.
std::string JoinWords(std::span<const std::string_view> words) {
    std::string joined;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i != 0) joined += i + 1 == words.size() ? " or " : ", ";
        joined += words[i].empty() ? "nothing" : words[i];
    }
    return joined;
}

bool IsNumberUpTo(std::string_view text, std::size_t limit) {
    constexpr std::size_t kMostDigits = 5;
    const std::optional<int> number = ParseDigits(text);
    return number && text.size() <= kMostDigits && static_cast<std::size_t>(*number) <= limit;
}

bool IsAllowed(const ValueRule& rule, std::string_view text) {
    switch (rule.Kind) {
    case ValueRule::Form::Text:
    case ValueRule::Form::Password: return text.size() <= rule.Limit;
    case ValueRule::Form::Number: return IsNumberUpTo(text, rule.Limit);
    case ValueRule::Form::Boolean: return !text.empty() && ParseBool(text); // an empty one in a file is true
    case ValueRule::Form::Word: return FindWord(rule.Words, text).has_value();
    case ValueRule::Form::Other: return rule.IsGood != nullptr && rule.IsGood(text);
    case ValueRule::Form::ScrambledPassword: return text.size() <= kMaxPassword || IsScrambledText(text);
    }
    return false;
}

// What no value of any kind may be; empty when the text is fine.
std::string_view LineFault(std::string_view key, std::string_view text) {
    if (FindControl(text, 0) != text.size()) return "holds a control character";
    if (text.starts_with(' ')) return "begins with a blank";
    if (text.ends_with(' ')) return "ends with a blank";
    if (key.size() + std::string_view(": ").size() + text.size() > kMaxLine)
        return "is too long for a line of the file";
    return {};
}

// A text that is no good, on one line and not without the blanks at its ends.
std::string QuotedText(const ValueRule& rule, std::string_view text) {
    std::string quoted = ShownText(rule, std::string(text.substr(0, kMaxLine)));
    std::ranges::transform(quoted, quoted.begin(), Cleaned);
    return '"' + quoted + '"';
}

// The password that is stored already; none, after the message, when there is none.
std::optional<std::string> StoredPassword(std::string_view stored, const std::string& otherwise) {
    if (!stored.empty()) return std::string(stored);
    ShowError("%s", otherwise);
    return {};
}

std::optional<std::string> ScrambledPassword(std::string_view text, std::string_view stored) {
    if (text.starts_with('*')) {
        auto kept = StoredPassword(stored, FillMessage(kAsteriskIsNoPassword));
        return !kept || text == kPasswordMark || AskWarning(kKeepStoredPassword) ? kept : std::nullopt;
    }
    if (IsScrambledText(text)) return std::string(text);
    std::optional<std::string> scrambled = ScrambleForPage(text);
    if (!scrambled) ShowError(kUnableToEncrypt);
    return scrambled;
}

} // namespace

std::string ShownText(const ValueRule& rule, const std::string& value) {
    return rule.IsPassword() && !value.empty() ? std::string(kPasswordMark) : value;
}

std::span<const std::string_view> OfferedWords(const ValueRule& rule) {
    static constexpr std::string_view kYesAndNo[] = {"YES", "NO"};
    return rule.Kind == ValueRule::Form::Boolean ? kYesAndNo : rule.Words;
}

std::string DescribeValues(const ValueRule& rule) {
    switch (rule.Kind) {
    case ValueRule::Form::Text: return FormatText("a text of at most %d characters", rule.Limit);
    case ValueRule::Form::Number: return FormatText("a number from 0 to %d", rule.Limit);
    case ValueRule::Form::Boolean: return "YES or NO";
    case ValueRule::Form::Word: return JoinWords(rule.Words);
    case ValueRule::Form::Password: return FormatText("a password of at most %d characters", rule.Limit);
    case ValueRule::Form::ScrambledPassword: return FormatText("a password of at most %d characters", kMaxPassword);
    case ValueRule::Form::Other: break;
    }
    return std::string(rule.Description);
}

std::optional<std::string> FaultOfValue(std::string_view key, const ValueRule& rule, std::string_view text) {
    const std::string_view fault = LineFault(key, text);
    if (!fault.empty()) return FormatText("%s: %s %s", key, QuotedText(rule, text), fault);
    if (!IsAllowed(rule, text)) return NotAValue(key, rule, text);
    return {};
}

std::string NotAValue(std::string_view key, const ValueRule& rule, std::string_view text) {
    return FormatText("%s: \"%s\" is not %s", key, ShownText(rule, std::string(text)), DescribeValues(rule));
}

std::optional<std::string> TextToStore(std::string_view key, const ValueRule& rule, std::string_view text,
                                       std::string_view stored) {
    if (rule.Kind == ValueRule::Form::ScrambledPassword) return ScrambledPassword(text, stored);
    if (rule.Kind == ValueRule::Form::Password && text == kPasswordMark)
        return StoredPassword(stored, FillMessage(kAsterisksForPassword, key));
    const std::optional<std::string> fault = FaultOfValue(key, rule, text);
    if (!fault) return std::string(text);
    ShowError("%s", *fault);
    return {};
}

std::optional<std::size_t> FindWord(std::span<const std::string_view> words, std::string_view text) {
    const auto found = std::ranges::find_if(words, [text](std::string_view word) { return EqualFolded(word, text); });
    if (found == words.end()) return {};
    return static_cast<std::size_t>(found - words.begin());
}

bool RewriteKey(Rewrite& rewrite, const KeyChange& change) {
    return rewrite.Begin() && CopyReplacingKey(rewrite.Control, rewrite.Temporary, change) && rewrite.CopyBack();
}

} // namespace bv
