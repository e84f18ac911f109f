#include "users/user_record.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "users/print_words.h"
#include "voice/format.h"

namespace bv {
namespace {

// The field that a path of members leads to.
template <auto... kPath>
auto& FieldAt(auto& record) {
    return (record.*....*kPath);
}

bool IsEnterable(std::string_view value, std::size_t limit) {
    const bool isTrimmed = TrimBlanks(value).size() == value.size();
    return value.size() <= limit && isTrimmed && FindControl(value, 0) == value.size();
}

// --- The forms of values. Each has what a row of the table needs. ---

template <auto... kPath>
struct Text {
    using Field = std::remove_cvref_t<decltype(FieldAt<kPath...>(std::declval<UserRecord&>()))>;
    static constexpr ValueRule kRule = ValueCodec<Field>::kRule;

    static void Read(UserRecord& record, std::string_view value) { FieldAt<kPath...>(record) = value; }
    static std::optional<std::string> Write(const UserRecord& record) {
        const std::string value = Show(record);
        return value.empty() ? std::nullopt : std::optional(value);
    }
    static std::string Show(const UserRecord& record) { return FieldAt<kPath...>(record).String(); }
    static bool Enter(UserRecord& record, std::string_view value) {
        auto& field = FieldAt<kPath...>(record);
        if (!IsEnterable(value, field.kLimit)) return false;
        field = value;
        return true;
    }
};

// Written also when empty.
template <auto kField>
struct PlainText : Text<kField> {
    static std::optional<std::string> Write(const UserRecord& record) { return Text<kField>::Show(record); }
};

// A record's name, as the file's keys allow it.
struct GroupName : Text<&UserRecord::Group> {
    static constexpr ValueRule kRule = {
        ValueRule::Form::Other, RecordName::kLimit, {}, "the name of a group, at most 8 characters"};

    static bool Enter(UserRecord& record, std::string_view value) {
        return value.size() <= kRule.Limit && Text::Enter(record, value);
    }
};

template <auto kPrinter>
struct Squash {
    static constexpr ValueRule kRule = ValueCodec<SquashMode>::kRule;

    static void Read(UserRecord& record, std::string_view value) {
        if (!Enter(record, value)) (record.*kPrinter).Squash = SquashMode::None;
    }
    static std::optional<std::string> Write(const UserRecord& record) {
        return (record.*kPrinter).Squash == SquashMode::None ? std::nullopt : std::optional(Show(record));
    }
    static std::string Show(const UserRecord& record) {
        return ValueCodec<SquashMode>::Text((record.*kPrinter).Squash);
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        return ValueCodec<SquashMode>::Store((record.*kPrinter).Squash, value);
    }
};

// Groups have never kept VERTICAL for their first printer; the server relies on that.
struct GroupSquash : Squash<&UserRecord::PrintRecd> {
    static constexpr std::string_view kWords[] = {"NO", "YES"};
    static constexpr ValueRule kRule = {ValueRule::Form::Word, 0, kWords};

    static std::optional<std::string> Write(const UserRecord& record) {
        return record.PrintRecd.Squash == SquashMode::Yes ? Squash::Write(record) : std::nullopt;
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        SquashMode mode = SquashMode::None;
        const bool isMode = ValueCodec<SquashMode>::Store(mode, value);
        return isMode && mode != SquashMode::Vertical && Squash::Enter(record, value);
    }
};

struct OptionWord {
    std::string_view Word;
    bool UserRecord::*Field;
};
struct SentOptions {
    static constexpr std::string_view kDescription = "DEFAULT, or any of STATUS MESSAGE";
    static constexpr auto kIsDefault = &UserRecord::SentOptionsAreDefault;
    static constexpr std::array kWords = {
        OptionWord{kPrintStatus, &UserRecord::SentStatus},
        OptionWord{kPrintMessage, &UserRecord::SentMessage},
    };
};
struct RecdOptions {
    static constexpr std::string_view kDescription = "DEFAULT, or any of STATUS MESSAGE DELETE";
    static constexpr auto kIsDefault = &UserRecord::RecdOptionsAreDefault;
    static constexpr std::array kWords = {
        OptionWord{kPrintStatus, &UserRecord::RecdStatus},
        OptionWord{kPrintMessage, &UserRecord::RecdMessage},
        OptionWord{kPrintDelete, &UserRecord::RecdDelete},
    };
};

template <class Options>
struct PrintOptions {
    static constexpr ValueRule kRule = {ValueRule::Form::Other, 0, {}, Options::kDescription};
    static constexpr std::string_view kDefault = "DEFAULT";

    // The words count wherever they stand, inside other words, too.
    static void Read(UserRecord& record, std::string_view value) {
        const std::string upper = UpperText(value);
        record.*Options::kIsDefault = false;
        for (const OptionWord& option : Options::kWords) {
            record.*option.Field = upper.find(option.Word) != std::string::npos;
        }
    }
    static std::optional<std::string> Write(const UserRecord& record) {
        return record.*Options::kIsDefault ? std::nullopt : std::optional(Words(record));
    }
    static std::string Show(const UserRecord& record) {
        return record.*Options::kIsDefault ? std::string(kDefault) : Words(record);
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        const bool isDefault = EqualFolded(value, kDefault);
        std::optional<std::string_view> rest = value;
        while (!isDefault && rest && !rest->empty()) {
            const QuotedToken token = ParseQuotedToken(rest);
            if (!IsWord(*token.Token)) return false;
            rest = token.Rest;
        }
        Read(record, isDefault ? "" : value);
        record.*Options::kIsDefault = isDefault;
        return true;
    }

  private:
    static bool IsWord(std::string_view token) {
        const auto isIt = [token](const OptionWord& option) { return EqualFolded(option.Word, token); };
        return std::ranges::any_of(Options::kWords, isIt);
    }
    static std::string Words(const UserRecord& record) {
        std::string words;
        for (const OptionWord& option : Options::kWords) {
            if (record.*option.Field) words.append(words.empty() ? "" : " ").append(option.Word);
        }
        return words;
    }
};

template <auto kField>
struct YesOrNo {
    static constexpr ValueRule kRule = ValueCodec<bool>::kRule;

    static void Read(UserRecord& record, std::string_view value) { Enter(record, value); }
    static std::optional<std::string> Write(const UserRecord& record) {
        return record.*kField ? std::optional(Show(record)) : std::nullopt;
    }
    static std::string Show(const UserRecord& record) { return ValueCodec<bool>::Text(record.*kField); }
    static bool Enter(UserRecord& record, std::string_view value) {
        return ValueCodec<bool>::Store(record.*kField, value);
    }
};

struct MailName : Text<&UserRecord::MailName> {
    static constexpr ValueRule kRule = {ValueRule::Form::Other,
                                        Text::kRule.Limit,
                                        {},
                                        "a text of at most 256 characters that does not begin with a bracket"};

    static std::optional<std::string> Write(const UserRecord& record) {
        if (!record.MailInbox && !record.MailGateway) return {};
        return record.MailName.View().starts_with('(') ? "*" : Show(record);
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        return !value.starts_with('(') && Text::Enter(record, value);
    }
};

template <PermissionFlag kFlag>
struct Permission {
    static constexpr ValueRule kRule = ValueCodec<bool>::kRule;
    static constexpr const PermissionKey& kKey = *std::ranges::find(kPermissionKeys, kFlag, &PermissionKey::Flag);

    static void Read(UserRecord& record, std::string_view value) {
        ParsePermission(value, kFlag, record.Permissions.Flags);
    }
    static std::optional<std::string> Write(const UserRecord& record) {
        const bool isDefault = ((record.Permissions.Flags ^ kDefaultPermissionFlags) & kFlag) == 0;
        return isDefault ? std::nullopt : std::optional(Show(record));
    }
    static std::string Show(const UserRecord& record) {
        return ValueCodec<bool>::Text((record.Permissions.Flags & kFlag) != 0);
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        const bool isWord = value.size() <= 1 || EqualFolded(value, "YES") || EqualFolded(value, "NO");
        return isWord && ParsePermission(value, kFlag, record.Permissions.Flags);
    }
};

struct Dial {
    static constexpr ValueRule kRule = {
        ValueRule::Form::Other, 0, {}, "any of Local, National and International, as in Local National1,3"};

    static void Read(UserRecord& record, std::string_view value) {
        ParseDialPermissions(value, record.Permissions.DialMask);
    }
    static std::optional<std::string> Write(const UserRecord& record) {
        const bool everything = (record.Permissions.DialMask & kEveryDialClass) == kEveryDialClass;
        return everything ? std::nullopt : std::optional(Show(record));
    }
    static std::string Show(const UserRecord& record) {
        std::string text;
        FormatDialPermissions(text, kMaxLine, record.Permissions);
        return text;
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        std::uint32_t dialMask = 0;
        if (!ParseDialPermissions(value, dialMask)) return false;
        record.Permissions.DialMask = dialMask;
        return true;
    }
};

// No limit at all is shown, and entered, as nothing.
struct SendTime {
    static constexpr ValueRule kRule = {
        ValueRule::Form::Other,
        0,
        {},
        "a part of the day and some days of the week, as in AFTER 09:00 BEFORE 17:30 MON TUE, or nothing"};

    static void Read(UserRecord& record, std::string_view value) { ParseSendTime(value, record.Permissions.SendTime); }
    static std::optional<std::string> Write(const UserRecord& record) {
        return IsSendTimeWritten(record.Permissions.SendTime) ? std::optional(Show(record)) : std::nullopt;
    }
    static std::string Show(const UserRecord& record) {
        std::string text;
        if (record.Permissions.SendTime != kAnyTime) FormatSendTime(text, kMaxLine, record.Permissions);
        return text;
    }
    static bool Enter(UserRecord& record, std::string_view value) {
        SendTimeRange range = value.empty() ? kAnyTime : SendTimeRange();
        if (!IsValidSendTime(value) || !ParseSendTime(value, range) || !IsSendTimeKept(range)) return false;
        record.Permissions.SendTime = range;
        return true;
    }
};

// --- The table ---

template <class Form>
constexpr RecordKey Row(std::string_view key, RecordSet readIn, RecordSet writtenIn, std::string_view meaning) {
    return {{key, Form::kRule, Form::Show, Form::Enter}, meaning, readIn, writtenIn, Form::Read, Form::Write};
}

template <PermissionFlag kFlag>
constexpr RecordKey PermissionRow(std::string_view meaning) {
    return Row<Permission<kFlag>>(Permission<kFlag>::kKey.Key, kNoRecords, kUsers, meaning);
}

template <auto kPrinter, auto kField>
constexpr RecordKey PrinterRow(std::string_view key, RecordSet records, std::string_view meaning) {
    return Row<Text<kPrinter, kField>>(key, records, records, meaning);
}

constexpr std::string_view kBin = "The paper bin of that printer.";
constexpr std::string_view kPaper = "The paper of that printer.";
constexpr std::string_view kSquashed = "Whether a fax is made smaller to fit that paper, in height only or both ways.";

using R = UserRecord;
using P = PrinterChoice;

constexpr RecordKey kRecordKeys[] = {
    Row<PlainText<&R::Fullname>>("Fullname:", kNamedRecords, kAllRecords, "What others see beside the name."),
    Row<GroupName>("Group:", kNamedUsers, kUsers, "The group that the user belongs to."),
    Row<PlainText<&R::Username>>("Username:", kNamedUsers, kUsers,
                                 "The name with which the user logs in to the network."),
    Row<PlainText<&R::Netware>>("Netware:", kNamedUsers, kUsers,
                                "The name on a NetWare network; without one, the user name."),
    Row<PlainText<&R::LanManager>>("LanManager:", kNamedUsers, kUsers,
                                   "The name on a LAN Manager network; without one, the user name."),
    PrinterRow<&R::PrintSent, &P::Device>("PrintSentDevice:", kUsers,
                                          "The printer for sent faxes; without one, what the server's settings say."),
    PrinterRow<&R::PrintSent, &P::Bin>("PrintSentBin:", kUsers, kBin),
    PrinterRow<&R::PrintSent, &P::Paper>("PrintSentPaper:", kUsers, kPaper),
    Row<Squash<&R::PrintSent>>("PrintSentSquash:", kAllRecords, kUsers, kSquashed),
    PrinterRow<&R::PrintSent2, &P::Device>("PrintSentDevice2:", kUsers, "A second printer for sent faxes."),
    PrinterRow<&R::PrintSent2, &P::Bin>("PrintSentBin2:", kUsers, kBin),
    PrinterRow<&R::PrintSent2, &P::Paper>("PrintSentPaper2:", kUsers, kPaper),
    Row<Squash<&R::PrintSent2>>("PrintSentSquash2:", kAllRecords, kUsers, kSquashed),
    PrinterRow<&R::PrintRecd, &P::Device>(
        "PrintRecdDevice:", kAllRecords,
        "The printer for received faxes; without one, what the server's settings say."),
    PrinterRow<&R::PrintRecd, &P::Bin>("PrintRecdBin:", kAllRecords, kBin),
    PrinterRow<&R::PrintRecd, &P::Paper>("PrintRecdPaper:", kAllRecords, kPaper),
    Row<Squash<&R::PrintRecd>>("PrintRecdSquash:", kAllRecords, kUsers, kSquashed),
    Row<GroupSquash>("PrintRecdSquash:", kNoRecords, kGroups, kSquashed),
    PrinterRow<&R::PrintRecd2, &P::Device>("PrintRecdDevice2:", kAllRecords, "A second printer for received faxes."),
    PrinterRow<&R::PrintRecd2, &P::Bin>("PrintRecdBin2:", kAllRecords, kBin),
    PrinterRow<&R::PrintRecd2, &P::Paper>("PrintRecdPaper2:", kAllRecords, kPaper),
    Row<Squash<&R::PrintRecd2>>("PrintRecdSquash2:", kAllRecords, kAllRecords, kSquashed),
    Row<PrintOptions<SentOptions>>(
        "PrintSentOptions:", kUsers, kUsers,
        "What is printed of a sent fax: the report, the fax itself, or what the server's settings say."),
    Row<PrintOptions<RecdOptions>>("PrintRecdOptions:", kAllRecords, kAllRecords,
                                   "What is printed of a received fax, and whether it is then deleted."),
    Row<YesOrNo<&R::MailInbox>>("MailInbox:", kAllRecords, kUsers, "Received faxes go to the user's mail inbox."),
    Row<YesOrNo<&R::MailGateway>>("MailGateway:", kAllRecords, kUsers, "The user can send faxes by mail."),
    Row<MailName>("MailName:", kAllRecords, kUsers,
                  "The user's name in the mail system; kept only with inbox or gateway."),
    PermissionRow<kNetworkEdit>("May edit messages over the network."),
    PermissionRow<kUrgent>("May send urgent messages."),
    PermissionRow<kAdmin>("Is an administrator."),
    PermissionRow<kRushToTop>("May move messages to the top of the queue."),
    PermissionRow<kPrivateEdit>("May edit private messages."),
    PermissionRow<kSubmitAny>("May submit on behalf of any user."),
    Row<Dial>(kDialKey, kNoRecords, kUsers, "Which numbers the user may dial."),
    Row<SendTime>(kSendTimeKey, kNoRecords, kUsers, "When the user's faxes are sent."),
};

RecordSet SetOf(RecordKind kind, bool isDefault) {
    if (kind == RecordKind::User) return isDefault ? kDefaultUsers : kNamedUsers;
    return isDefault ? kDefaultGroups : kNamedGroups;
}

// Whether a line of a record has any key of the table.
bool IsKeyLine(std::string_view line) {
    const auto begins = [line](const RecordKey& key) { return BeginsWith(line, key.Field.Key); };
    return BeginsWith(line, kNameKey) || std::ranges::any_of(kRecordKeys, begins);
}

void ReadKeys(ControlStream& list, RecordSet records, UserRecord& record) {
    std::array<bool, std::size(kRecordKeys)> seen{}; // the first line with a key counts
    ControlLine line;
    while (ReadControlLine(list, line) && !IsParagraphLine(line)) {
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const RecordKey& key = kRecordKeys[i];
            if (seen[i] || (key.ReadIn & records) == 0 || !BeginsWith(line, key.Field.Key)) continue;
            key.Read(record, KeyValue(line).value_or(""));
            seen[i] = true;
        }
    }
}

// Each of the three network names that is empty takes the first of them that is not.
void FillNetworkNames(UserRecord& record) {
    const auto names = {&record.Username, &record.Netware, &record.LanManager};
    const auto isSet = [](const auto* name) { return !name->IsEmpty(); };
    const auto* const first = std::ranges::find_if(names, isSet);
    if (first == names.end()) return;
    for (auto* name : names) {
        if (name->IsEmpty()) *name = **first;
    }
}

} // namespace

std::span<const RecordKey> RecordKeys() { return kRecordKeys; }

bool HasKey(const RecordKey& key, RecordKind kind) { return (key.WrittenIn & SetOf(kind, false)) != 0; }

void ReadRecordBody(ControlStream& list, RecordKind kind, bool isDefault, UserRecord& record) {
    record = {};
    record.SentOptionsAreDefault = true;
    record.RecdOptionsAreDefault = true;
    if (kind == RecordKind::User) {
        const PermissionFault fault = ReadUserPermissions(&list, std::nullopt, record.Permissions);
        // What is wrong must not lock a user out.
        if (fault != PermissionFault::None) {
            record.Permissions.DialMask = kEveryDialClass;
            record.Permissions.SendTime.Days = kEveryDay;
        }
    }
    ReadKeys(list, SetOf(kind, isDefault), record);
    if (kind == RecordKind::User && !isDefault) FillNetworkNames(record);
}

std::string UserRecordLines(std::string_view name, const UserRecord& record, std::optional<std::string_view> oldBody,
                            RecordKind kind) {
    std::string lines;
    const auto add = [&lines](std::string_view key, std::string value) {
        std::ranges::transform(value, value.begin(), Cleaned); // so that no value can break its line
        lines.append(key).append(" ").append(value).append(kLineEnd);
    };
    add(kNameKey, std::string(name));
    for (const RecordKey& key : kRecordKeys) {
        if (!HasKey(key, kind)) continue;
        if (const std::optional<std::string> value = key.Write(record)) add(key.Field.Key, *value);
    }
    for (std::string_view rest = oldBody.value_or(""); !rest.empty();) {
        const std::string line = CleanLine(TakeLine(rest));
        if (!IsKeyLine(line)) lines.append(line).append(kLineEnd);
    }
    return lines;
}

} // namespace bv
