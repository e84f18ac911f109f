#include "users/permissions.h"

#include <algorithm>
#include <limits>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_file.h"
#include "users/week_days.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr std::size_t kSendTimeSize = 54;
constexpr std::size_t kDialSize = 64;
constexpr std::int16_t kEndOfDay = 24;

// Takes the first token off the front of a value; none at its end.
std::optional<std::string_view> TakeToken(std::optional<std::string_view>& rest) {
    const QuotedToken token = ParseQuotedToken(rest && !rest->empty() ? rest : std::nullopt);
    rest = token.Rest;
    return token.Token;
}

// Takes a number with an optional sign off the front; none without a digit. Numbers are held within 16 bits.
std::optional<std::int16_t> TakeNumber(std::string_view& text) {
    constexpr int kLargest = std::numeric_limits<std::int16_t>::max();
    text = SkipBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (text.empty() || !IsDigit(text.front())) return {};
    int number = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        number = std::min(number * 10 + (text.front() - '0'), kLargest);
    }
    return static_cast<std::int16_t>(negative ? -number : number);
}

bool ParseTime(std::optional<std::string_view> token, std::int16_t& hour, std::int16_t& minute) {
    if (!token) return false;
    const std::optional<std::int16_t> hours = TakeNumber(*token);
    if (!hours || !token->starts_with(':')) return false;
    token->remove_prefix(1);
    const std::optional<std::int16_t> minutes = TakeNumber(*token);
    if (!minutes) return false;
    hour = *hours;
    minute = *minutes;
    return true;
}

bool ParseDay(std::string_view token, std::uint16_t& days) {
    const auto isIt = [token](const WeekDay& day) { return StartsWithFolded(token, day.Word); };
    const auto day = std::ranges::find_if(kWeekDays, isIt);
    if (day == std::end(kWeekDays)) return false;
    days = static_cast<std::uint16_t>(days | day->Bit);
    return true;
}

bool IsAfter(std::string_view token) { return StartsWithFolded(token, "AFTER"); }
bool IsBefore(std::string_view token) { return StartsWithFolded(token, "BEFORE"); }

// "h:mm" or "hh:mm" within a day, as a person enters it.
bool IsClockTime(std::string_view token) {
    const std::size_t colon = token.find(':');
    if (colon == 0 || colon > 2 || token.size() != colon + 3) return false;
    if (!std::ranges::all_of(token, [](char c) { return IsDigit(c) || c == ':'; })) return false;
    std::int16_t hour = 0, minute = 0;
    return ParseTime(token, hour, minute) && minute < 60 && (hour < kEndOfDay || (hour == kEndOfDay && minute == 0));
}

// National and International have nine classes each.
constexpr int kClasses = 9;
constexpr std::string_view kEveryClass = "1,2,3,4,5,6,7,8,9";

struct DialWord {
    std::string_view Name;
    int FirstBit;
};
constexpr DialWord kNational = {"National", 1};
constexpr DialWord kInternational = {"International", 10};

bool IsClass(std::string_view text) { return text.size() == 1 && text[0] >= '1' && text[0] <= '9'; }
std::uint32_t ClassBit(const DialWord& word, std::string_view digit) { return 1U << (word.FirstBit + digit[0] - '1'); }
std::uint32_t ClassBits(const DialWord& word) { return ((1U << kClasses) - 1) << word.FirstBit; }

// The bits of a token that is the word or the word with a class behind it; none for any other token.
std::uint32_t BitsOf(const DialWord& word, std::string_view token) {
    if (!StartsWithFolded(token, word.Name)) return 0;
    const std::string_view digit = token.substr(word.Name.size());
    if (digit.empty()) return ClassBits(word);
    return IsClass(digit) ? ClassBit(word, digit) : 0;
}

// The word and its classes with a blank behind them; empty when no bit is set.
std::string FormatClasses(const DialWord& word, std::uint32_t dialMask) {
    std::string classes;
    for (char digit = '1'; digit <= '9'; ++digit) {
        if ((dialMask & ClassBit(word, {&digit, 1})) != 0) classes.append({digit, ','});
    }
    if (classes.empty()) return classes;
    classes.pop_back();
    return std::string(word.Name).append(classes == kEveryClass ? "" : classes).append(" ");
}

// A record's permission keys while its lines are read.
class KeyReader {
  public:
    explicit KeyReader(UserPermissions& permissions) : permissions_(permissions) {
        permissions_ = {};
        permissions_.Flags = kDefaultPermissionFlags;
    }

    void Read(std::string_view line) {
        const std::string_view value = KeyValue(line).value_or("");
        if (BeginsWith(line, kDialKey)) {
            hasDial_ = true;
            Note(ParseDialPermissions(value, permissions_.DialMask), PermissionFault::Dial);
            return;
        }
        for (const PermissionKey& key : kPermissionKeys) {
            if (!BeginsWith(line, key.Key)) continue;
            Note(ParsePermission(value, key.Flag, permissions_.Flags), key.Fault);
            return;
        }
        if (hasSendTime_ || !BeginsWith(line, kSendTimeKey)) return;
        hasSendTime_ = true;
        Note(ParseSendTime(value, permissions_.SendTime), PermissionFault::SendTime);
    }

    PermissionFault Finish() {
        if (!hasDial_) permissions_.DialMask = kEveryDialClass;
        if (!hasSendTime_) permissions_.SendTime.Days = kEveryDay;
        return fault_;
    }

  private:
    void Note(bool parsed, PermissionFault fault) {
        if (!parsed) fault_ = fault;
    }

    UserPermissions& permissions_;
    bool hasDial_ = false;
    bool hasSendTime_ = false;
    PermissionFault fault_ = PermissionFault::None;
};

PermissionFault ReadBody(ControlStream& stream, UserPermissions& permissions) {
    KeyReader reader(permissions);
    ControlLine line;
    while (ReadControlLine(stream, line) && !IsParagraphLine(line)) reader.Read(line);
    return reader.Finish();
}

} // namespace

PermissionFault ReadUserPermissions(ControlStream* stream, std::optional<std::string_view> userName,
                                    UserPermissions& permissions) {
    if (stream == nullptr) {
        ControlStream list = OpenShared(PathOf(ServerFile::UserList), "rb");
        if (!list) return PermissionFault::FileUnreadable;
        return ReadUserPermissions(&list, userName, permissions);
    }
    const Position from = stream->Tell();
    PermissionFault fault = PermissionFault::UserNotFound;
    if (!userName) {
        fault = ReadBody(*stream, permissions);
    } else if (const auto record = FindRecord(*stream, RecordKind::User, userName)) {
        stream->Seek(record->BodyStart);
        fault = ReadBody(*stream, permissions);
    }
    stream->Seek(from);
    return stream->Failed() ? PermissionFault::FileUnreadable : fault;
}

bool ParsePermission(std::string_view value, PermissionFlag flag, std::uint8_t& flags) {
    const char first = value.empty() ? 'y' : ToLower(value.front());
    if (first != 'y' && first != 'n') return false;
    flags = static_cast<std::uint8_t>(first == 'y' ? flags | flag : flags & ~flag);
    return true;
}

bool ParseSendTime(std::string_view value, SendTimeRange& range) {
    std::optional<std::string_view> rest = SkipBlanks(value);
    while (const auto token = TakeToken(rest)) {
        if (IsAfter(*token)) {
            if (!ParseTime(TakeToken(rest), range.FromHour, range.FromMinute)) return false;
            if (range.ToHour == 0 && range.ToMinute == 0) range.ToHour = kEndOfDay;
        } else if (IsBefore(*token)) {
            if (!ParseTime(TakeToken(rest), range.ToHour, range.ToMinute)) return false;
        } else if (!ParseDay(*token, range.Days)) {
            return false;
        }
    }
    return true;
}

bool ParseDialPermissions(std::string_view value, std::uint32_t& dialMask) {
    const DialWord* lastWord = nullptr; // whose classes may follow
    std::optional<std::string_view> rest = SkipBlanks(value);
    while (const auto token = TakeToken(rest)) {
        std::uint32_t bits = lastWord != nullptr && IsClass(*token) ? ClassBit(*lastWord, *token) : 0;
        if (EqualFolded(*token, "Local")) {
            bits = 1;
            lastWord = nullptr;
        }
        for (const DialWord* word : {&kNational, &kInternational}) {
            const std::uint32_t ofWord = BitsOf(*word, *token);
            if (ofWord != 0) lastWord = word;
            bits |= ofWord;
        }
        if (bits == 0) return false;
        dialMask |= bits;
    }
    return true;
}

bool FormatSendTime(std::string& text, std::size_t size, const UserPermissions& permissions) {
    if (size < kSendTimeSize) return false;
    const SendTimeRange& range = permissions.SendTime;
    const bool toEndOfDay = range.ToHour == kEndOfDay && range.ToMinute == 0;
    text.clear();
    if (toEndOfDay && range.FromHour == 0 && range.FromMinute == 0) return true;

    text = FormatText("AFTER %.2d:%.2d", range.FromHour, range.FromMinute);
    if (!toEndOfDay) text += FormatText(" BEFORE %.2d:%.2d", range.ToHour, range.ToMinute);
    // Two blanks before the first day, as the server has always written them.
    if ((range.Days & kEveryDay) != 0) text += ' ';
    for (const WeekDay& day : kWeekDays) {
        if ((range.Days & day.Bit) != 0) text.append(" ").append(day.Word);
    }
    return true;
}

bool FormatDialPermissions(std::string& text, std::size_t size, const UserPermissions& permissions) {
    if (size < kDialSize) return false;
    text = (permissions.DialMask & 1U) != 0 ? "Local " : "";
    text += FormatClasses(kNational, permissions.DialMask);
    text += FormatClasses(kInternational, permissions.DialMask);
    if (!text.empty()) text.pop_back();
    return true;
}

bool IsValidSendTime(std::string_view text) {
    SendTimeRange range;
    if (!ParseSendTime(text, range)) return false;
    std::optional<std::string_view> rest = SkipBlanks(text);
    while (const auto token = TakeToken(rest)) {
        if ((IsAfter(*token) || IsBefore(*token)) && !IsClockTime(TakeToken(rest).value_or(""))) return false;
    }
    return true;
}

bool IsSendTimeWritten(const SendTimeRange& range) {
    const bool wholeDay =
        range.FromHour == 0 && range.FromMinute == 0 && range.ToHour == kEndOfDay && range.ToMinute == 0;
    return !wholeDay && (range.Days & kEveryDay) != kEveryDay;
}

bool IsSendTimeKept(const SendTimeRange& range) { return IsSendTimeWritten(range) || range == kAnyTime; }

} // namespace bv
