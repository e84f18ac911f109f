#include "options/telephone_types.h"

#include <algorithm>
#include <utility>

#include "ctlfile/key_fields.h"
#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "options/option_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kParagraph = "[QUEUEMAN]";
constexpr std::string_view kKey = "TelnumType:";
constexpr OpenTimeout kTimeout{10};

constexpr TelephoneTypeCode kLocal = 1;
constexpr TelephoneTypeCode kBeforeNational = 1;       // code of "National" with a digit, less that digit
constexpr TelephoneTypeCode kBeforeInternational = 10; // the same
constexpr TelephoneTypeCode kLastType = 19;

// The digit 1 to 9 that alone follows the word, 0 when nothing does; none for another text.
std::optional<int> DigitAfter(std::string_view text, std::string_view word) {
    if (!StartsWithFolded(text, word)) return {};
    text.remove_prefix(word.size());
    if (text.empty()) return 0;
    if (text.size() > 1 || !IsDigit(text[0]) || text[0] == '0') return {};
    return text[0] - '0';
}

// The entry of a line's value; none for a value of another form.
std::optional<TelephoneType> ParseEntry(std::optional<std::string_view> value) {
    const QuotedToken word = ParseQuotedToken(value);
    const std::optional<std::string_view> text = ParseQuotedToken(word.Rest).Token;
    if (!text || text->size() < 2 || !text->starts_with('"') || !text->ends_with('"')) return {};
    const std::optional<TelephoneTypeCode> code = ParseTelephoneType(*word.Token);
    if (!code) return {};
    return TelephoneType{*code, StripQuotes(*text)};
}

// The lines of the list, without the first one's key and the last one's end.
std::string ListText(const TelephoneTypes& types) {
    std::string text;
    for (const TelephoneType& type : types) {
        if (type.Code == 0) break;
        if (!text.empty()) text.append(kLineEnd).append(kKey).append(" ");
        text += CleanLine(FormatText("%-15s \"%s\"", TelephoneTypeWord(type.Code), type.Description.View()));
    }
    return text;
}

bool Refuse(const std::string& reason) {
    ShowError("%s", reason);
    return false;
}

// The code of a word that comes back as the same type; none, after a message, for any other word.
std::optional<TelephoneTypeCode> KeptType(std::string_view word) {
    const auto code = ParseTelephoneType(word);
    if (!code) {
        ShowError("Type: \"%s\" is not Local, National1 to National9 or International2 to International9", word);
        return {};
    }
    const std::string written = TelephoneTypeWord(*code);
    const auto readBack = ParseTelephoneType(written);
    const bool isKept = readBack == code && (EqualFolded(written, word) || EqualFolded(word, "National"));
    if (isKept) return code;
    ShowError("%s cannot be kept: %s would come back", word, TelephoneTypeWord(readBack.value_or(*code)));
    return {};
}

} // namespace

std::string TelephoneTypeWord(TelephoneTypeCode code) {
    if (code <= kLocal || code > kLastType) return "Local";
    if (code <= kBeforeInternational) return FormatText("National%d", code - kBeforeNational);
    return FormatText("International%d", code - kBeforeInternational);
}

std::optional<TelephoneTypeCode> ParseTelephoneType(std::string_view word) {
    if (EqualFolded(word, "Local")) return kLocal;
    if (const std::optional<int> digit = DigitAfter(word, "National"))
        return static_cast<TelephoneTypeCode>(kBeforeNational + std::max(*digit, 1));
    const std::optional<int> digit = DigitAfter(word, "International");
    if (!digit) return {};
    return static_cast<TelephoneTypeCode>(*digit == 0 ? kBeforeInternational + 1
                                                      : kBeforeInternational + std::max(*digit, 2));
}

std::optional<std::string> FaultOfTypeDescription(std::string_view text) {
    constexpr std::size_t kLimit = decltype(TelephoneType::Description)::kLimit;
    constexpr ValueRule kRule = {ValueRule::Form::Other,
                                 kLimit,
                                 {},
                                 "a text of at most 100 characters without quotes",
                                 [](std::string_view description) {
                                     return description.size() <= kLimit &&
                                            description.find('"') == std::string_view::npos;
                                 }};
    return FaultOfValue("TelnumType", kRule, text);
}

std::vector<std::string> KeptTypeWords() {
    std::vector<std::string> words;
    for (TelephoneTypeCode code = kLocal; code <= kLastType; ++code)
        if (ParseTelephoneType(TelephoneTypeWord(code)) == code) words.push_back(TelephoneTypeWord(code));
    return words;
}

std::optional<TelephoneType> EnterType(const TelephoneTypes& types, std::size_t place, std::string_view word,
                                       std::string_view description) {
    const bool isNew = place >= types.size();
    if (isNew && types.size() >= kMaxTelephoneTypes) {
        ShowError(kTooManyTypes, kMaxTelephoneTypes);
        return {};
    }
    const bool stays = !isNew && EqualFolded(word, TelephoneTypeWord(types[place].Code));
    const auto code = stays ? std::optional(types[place].Code) : KeptType(word);
    if (!code) return {};
    for (std::size_t i = 0; i < types.size() && !stays; ++i) {
        if (i == place || types[i].Code != *code) continue;
        ShowError(kTypeDescribed, word);
        return {};
    }
    const bool isAsBefore = !isNew && types[place].Description.View() == description;
    if (const auto fault = FaultOfTypeDescription(description); fault && !isAsBefore) {
        ShowError("%s", *fault);
        return {};
    }
    return TelephoneType{*code, description};
}

std::optional<std::size_t> PlaceOfType(const TelephoneTypes& types, std::string_view word) {
    for (std::size_t i = 0; i < types.size(); ++i)
        if (EqualFolded(TelephoneTypeWord(types[i].Code), word)) return i;
    ShowError(kTypeNotDescribed, word);
    return {};
}

bool MoveType(TelephoneTypes& types, std::size_t place, MoveBy way) {
    const bool isAtEnd = way == MoveBy::Up ? place == 0 : place + 1 >= types.size();
    if (isAtEnd || place >= types.size()) return false;
    std::swap(types[place], types[way == MoveBy::Up ? place - 1 : place + 1]);
    return true;
}

std::string TypeReadBack(TelephoneTypeCode code) {
    return TelephoneTypeWord(ParseTelephoneType(TelephoneTypeWord(code)).value_or(code));
}

// The writer's words are not all read as they were meant; a rewrite of the list changes such entries.
void WarnOfShifts(const TelephoneTypes& types) {
    for (const TelephoneType& type : types) {
        const std::string written = TelephoneTypeWord(type.Code);
        if (ParseTelephoneType(written) == type.Code) continue;
        ShowWarning("%s \"%s\" will be read as %s from now on", written, type.Description.View(),
                    TypeReadBack(type.Code));
    }
}

bool DescribeTelephoneTypes(std::span<const TypeDescription> descriptions, TelephoneTypes& types) {
    TelephoneTypes described = types;
    std::vector<TelephoneTypeCode> given;
    for (const auto& [word, description] : descriptions) {
        const auto code = KeptType(word);
        if (!code) return false;
        if (std::ranges::find(given, *code) != given.end()) return Refuse(FormatText("%s is given twice", word));
        given.push_back(*code);
        if (const auto fault = FaultOfTypeDescription(description)) return Refuse(*fault);
        const auto known = std::ranges::find(described, *code, &TelephoneType::Code);
        if (known != described.end())
            known->Description = description;
        else
            described.push_back({*code, description});
    }
    if (described.size() > kMaxTelephoneTypes) return Refuse(FillMessage(kTooManyTypes, kMaxTelephoneTypes));
    if (described != types) WarnOfShifts(described);
    types = std::move(described);
    return true;
}

bool ReadTelephoneTypes(ControlStream& setup, TelephoneTypes& types) {
    types.clear();
    ControlLine line;
    setup.Rewind();
    if (!FindParagraph(setup, kParagraph, line)) return true;
    while (FindKeyLine(setup, kKey, line)) {
        const std::optional<TelephoneType> type = ParseEntry(KeyValue(line));
        if (!type || types.size() == kMaxTelephoneTypes) return false;
        types.push_back(*type);
    }
    return true;
}

bool LoadTelephoneTypes(TelephoneTypes& types) {
    types.clear();
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup), kTimeout);
    if (!setup) return false;
    const bool isWellFormed = ReadTelephoneTypes(setup, types);
    if (!WasRead(setup)) return false;
    if (!isWellFormed) ShowError("File %s holds an unreadable or a surplus telephone-number type", setup.Path());
    return isWellFormed;
}

bool SaveTelephoneTypes(const TelephoneTypes& types, TelephoneTypes& saved) {
    if (types == saved) return true;
    Rewrite rewrite(PathOf(ServerFile::Setup), kTimeout);
    if (!CheckOpened(rewrite)) return false;
    Startup().SettingsChanged = true;
    // As the value of one key, the list goes in the place of the first old line, and the others go.
    const std::string text = ListText(types);
    const KeyChange change = {kParagraph, kKey, text.empty() ? std::nullopt : std::optional<std::string_view>(text)};
    if (!SaveRewrite(rewrite, [&] { return RewriteKey(rewrite, change); })) return false;
    saved = types;
    return true;
}

} // namespace bv
