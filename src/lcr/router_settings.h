// The general settings of least-cost routing: paragraph "[ROUTER]" of SETUP.INI.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ctlfile/key_fields.h"

namespace bv {

// Hours and minutes, as "hh:mm".
struct HourMinute {
    static constexpr std::uint16_t kNotSet = 65535;
    std::uint16_t Minutes = 0;
    std::uint16_t Hours = kNotSet;

    [[nodiscard]] bool IsSet() const { return Hours != kNotSet; }
    [[nodiscard]] bool IsTimeOfDay() const { return Hours <= 23 && Minutes <= 59; }
    [[nodiscard]] bool IsInterval() const { return IsTimeOfDay() && Hours + Minutes > 0; } // 00:01 to 23:59

    friend bool operator==(const HourMinute&, const HourMinute&) = default;
};

// The two sides of the colon as numbers; not set for an empty text.
HourMinute ParseHourMinute(std::string_view text);

// "hh:mm", or nothing when not set.
std::string FormatHourMinute(const HourMinute& time);

// One or two digits, a colon and one or two digits, or nothing; whether they are a time is for the rules to say.
ValueRule HourMinuteRule();

enum class EmailType : std::uint8_t { Exchange, LotusNotes, LotusNotesByMapi, OtherMapi };
template <>
struct ChoiceWords<EmailType> {
    static constexpr std::string_view kWords[] = {"MAPI_EXCHANGE", "LOTUS_NOTES_API", "MAPI_LNOTES", "MAPI"};
};

// The limits hold for what is entered; a longer text in the file is kept whole.
struct RouterSettings {
    std::string LocalServerId; // at most 19 characters
    std::string LocalServerDescription;
    bool EmailEnabled = false; // read: there is a login name
    bool WanEnabled = false;   // read: there is an inbox directory
    EmailType Email = EmailType::Exchange;
    std::string EmailLoginName;   // at most 99 characters
    std::string NotesIdFile;      // path; of LotusNotes only
    std::string EmailLoginParams; // a scrambled password
    HourMinute EmailPollInterval = {0, 0};
    bool DeleteInvalidMessages = false; // only read; lost at the next save
    std::string WanInboxDirectory;      // at most 256 characters
    HourMinute WanPollInterval = {0, 0};

    friend bool operator==(const RouterSettings&, const RouterSettings&) = default;
};

// A rule that is broken: the key concerned, and the message.
struct SettingFault {
    std::string_view Key;
    std::string_view Message;
    friend bool operator==(const SettingFault&, const SettingFault&) = default;
};

// What a setting is of its line in the file: all of its value, the first token of it, bare or in quotes, or the second
// token, in quotes, on the line of the setting before it. None: it follows from others, and has no line.
enum class LinePart { None, Value, Token, QuotedToken, SecondToken };

// One setting, as it is read, written, shown and entered.
struct RouterKey {
    KeyField<RouterSettings> Field;
    LinePart Part = LinePart::None;
    bool (*IsWritten)(const RouterSettings& settings) = nullptr; // of those with a line
};

// Those that people see, in the order of the file.
std::span<const RouterKey> RouterKeys();

// Whether a text can stand as a name, as one token: of 1 to so many characters, without blanks, commas and quotes.
bool IsToken(std::string_view text, std::size_t limit);

// The name that a token is. Quotes that hold it together are part of it, since it is written without any of its own.
std::string TokenText(std::string_view token);

enum class RouterReading {
    Failed,        // a message has been shown
    NotConfigured, // there is no such paragraph
    Done,
};
RouterReading ReadRouterSettings(RouterSettings& settings);

// Changes the settings, which are read when nobody else can change the file any more; false, after a message, when they
// are not to be changed.
using RouterChange = std::function<bool(RouterSettings& settings)>;

// Rewrites the paragraph, or adds it at the end of the file, through Setup.new; all other lines stay as they are. Sets
// SettingsChanged. Settings that are as before are not written. False after a message of the change, "File error:
// couldn't open", 9011 or 5004.
bool ChangeRouterSettings(const RouterChange& change);
bool WriteRouterSettings(const RouterSettings& settings);

// The lines of the paragraph that are not written anew, whatever the settings: that of DeleteInvalidMessages. Parted by
// line feeds; none after a message.
std::optional<std::string> ReadLinesToDrop();

// The settings as they are read again after they were written.
RouterSettings AsRead(const RouterSettings& settings);

// The first rule that the settings break; none when they break none.
std::optional<SettingFault> FaultOfRouter(const RouterSettings& settings);

// Whether other servers can leave their faxes in the directory: it is there by its network name, and a file can be
// written in it and read. Says so as a status, or why not as an error.
bool TestWanInbox(std::string_view directory);

// The inbox directory that is offered.
std::string DefaultWanInbox();

} // namespace bv
