// Tables of keys: a row for each key of a record, with its kind of value and its limits. Readers, writers, dialogs and
// the console walk the same rows, so that none of them has code for a single key.
//
//   constexpr KeyField<Port> kKeys[] = {FieldOf<&Port::Name>("Name:"), FieldOf<&Port::Speed>("Speed:")};
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "ctlfile/copy_back.h"
#include "ctlfile/fixed_text.h"
#include "ctlfile/reader.h"
#include "ctlfile/rewriter.h"

namespace bv {

// What a person may give as a key's value. Readers go by the codecs below, which take more.
struct ValueRule {
    enum class Form { Text, Number, Boolean, Word, Other, Password, ScrambledPassword };

    Form Kind = Form::Text;
    std::size_t Limit = 0;                        // characters of a Text or Password; the largest Number
    std::span<const std::string_view> Words = {}; // of a Word, by its code
    std::string_view Description = {};            // what Other is: "a time such as ..."
    bool (*IsGood)(std::string_view) = nullptr;   // decides on Other; without it the key's own code does

    [[nodiscard]] constexpr bool IsPassword() const {
        return Kind == Form::Password || Kind == Form::ScrambledPassword;
    }
};

// The largest number stands for none in programs that share the file.
inline constexpr ValueRule kSettingNumber = {ValueRule::Form::Number, 65534};

// What stands for a stored password wherever one is shown, and where one is given.
inline constexpr std::string_view kPasswordMark = "********";

// The value as it may be shown: of a password that is there, only that it is.
std::string ShownText(const ValueRule& rule, const std::string& value);

// The values to choose from, of a rule with a few; none where others can be given.
std::span<const std::string_view> OfferedWords(const ValueRule& rule);

// "a number from 0 to 65535", "YES or NO" and so on.
std::string DescribeValues(const ValueRule& rule);

// Why the text cannot be the key's value, in a sentence that names both; none when it can. Refused is also what a file
// would give back differently: control characters, blanks at either end, a line of over 280 characters. A password is
// not named.
std::optional<std::string> FaultOfValue(std::string_view key, const ValueRule& rule, std::string_view text);

// "Speed: "fast" is not a number from 0 to 65535".
std::string NotAValue(std::string_view key, const ValueRule& rule, std::string_view text);

// What is stored of a text that a person gives for a key: the text, if the rule takes it. Of a password, eight
// asterisks stand for the stored one. One that is kept scrambled goes through ScrambleForPage, unless the text is
// scrambled already; another text that begins with an asterisk stands for the stored one when 9212 is answered Yes.
// None when nothing is to be stored: after the fault that FaultOfValue finds, 9110, 9211, 5033 or the answer No.
std::optional<std::string> TextToStore(std::string_view key, const ValueRule& rule, std::string_view text,
                                       std::string_view stored);

// How a type of value stands in a file: its rule, its text, and the value of a text (false, with nothing stored, for a
// text that is none).
template <class Value>
struct ValueCodec;

template <>
struct ValueCodec<bool> {
    static constexpr ValueRule kRule = {ValueRule::Form::Boolean};
    static std::string Text(bool value) { return value ? "YES" : "NO"; }
    static bool Store(bool& place, std::string_view text) {
        const std::optional<bool> value = ParseBool(text);
        place = value.value_or(place);
        return value.has_value();
    }
};

template <>
struct ValueCodec<std::uint16_t> {
    static constexpr ValueRule kRule = {ValueRule::Form::Number, 65535};
    static std::string Text(std::uint16_t value) { return std::to_string(value); }
    static bool Store(std::uint16_t& place, std::string_view text) {
        if (!text.empty()) place = ParseNumber(text);
        return !text.empty();
    }
};

template <std::size_t N>
struct ValueCodec<FixedText<N>> {
    static constexpr ValueRule kRule = {ValueRule::Form::Text, N};
    static std::string Text(const FixedText<N>& value) { return value.String(); }
    static bool Store(FixedText<N>& place, std::string_view text) {
        place.Assign(text);
        return true;
    }
};

// The words of a choice, by its code.
template <class Choice>
struct ChoiceWords; // static constexpr std::string_view kWords[]

// The index of the word among the words, in any case; none when it is none of them.
std::optional<std::size_t> FindWord(std::span<const std::string_view> words, std::string_view text);

template <class Choice>
requires std::is_enum_v<Choice>
struct ValueCodec<Choice> {
    static constexpr ValueRule kRule = {ValueRule::Form::Word, 0, ChoiceWords<Choice>::kWords};
    static std::string Text(Choice value) { return std::string(kRule.Words[static_cast<std::size_t>(value)]); }
    static bool Store(Choice& place, std::string_view text) {
        const std::optional<std::size_t> code = FindWord(kRule.Words, text);
        if (code) place = static_cast<Choice>(*code);
        return code.has_value();
    }
};

template <class Record>
struct KeyField {
    std::string_view Key; // with its separator
    ValueRule Rule;
    std::string (*Text)(const Record& record);            // the value as a file has it
    bool (*Store)(Record& record, std::string_view text); // false, with nothing stored, for an unreadable value

    [[nodiscard]] std::string_view Name() const { return Key.substr(0, Key.size() - 1); }
    [[nodiscard]] std::optional<std::string> FaultOf(std::string_view text) const {
        return FaultOfValue(Name(), Rule, text);
    }
    // The same in a record: the value that it has already is taken as it is.
    [[nodiscard]] std::optional<std::string> FaultIn(const Record& record, std::string_view text) const {
        return text == Text(record) ? std::nullopt : FaultOf(text);
    }
};

template <auto Member, class Record, class Value>
constexpr KeyField<Record> FieldOfMember(Value Record::*, std::string_view key, const ValueRule& rule) {
    return {key, rule, [](const Record& record) { return ValueCodec<Value>::Text(record.*Member); },
            [](Record& record, std::string_view text) { return ValueCodec<Value>::Store(record.*Member, text); }};
}

template <class Record, class Value>
constexpr ValueRule RuleOfMember(Value Record::*) {
    return ValueCodec<Value>::kRule;
}

// The row of a record's field: by the rule of its type, or by one of its own.
template <auto Member>
constexpr auto FieldOf(std::string_view key, const ValueRule& rule = RuleOfMember(Member)) {
    return FieldOfMember<Member>(Member, key, rule);
}

// Takes a value that a person gives into the record; the value that it has already is taken as it is. False, with
// nothing stored, as TextToStore has it.
template <class Record>
bool EnterValue(const KeyField<Record>& field, std::string_view text, Record& record) {
    if (text == field.Text(record)) return true;
    const std::optional<std::string> taken = TextToStore(field.Name(), field.Rule, text, field.Text(record));
    if (taken) field.Store(record, *taken);
    return taken.has_value();
}

// What a file held for a key when it was last read or written; none when the key was absent or unreadable.
using StoredValue = std::optional<std::string>;

// Reads a key of the paragraph whose body starts there into the record, which keeps its value without a readable one.
template <class Record>
StoredValue ReadField(ControlStream& stream, Position bodyStart, const KeyField<Record>& field, Record& record) {
    ControlLine value;
    if (!GetKeyString(stream, field.Key, value, bodyStart) || !field.Store(record, value)) return {};
    return field.Text(record);
}

// Makes one change of several to the file that is held. False when it is not in the file.
bool RewriteKey(Rewrite& rewrite, const KeyChange& change);

} // namespace bv
