// How the engine speaks to the person at the program. A message is a numbered string (message_ids.h) or a text; either
// is a printf-style format that the values fill. One that the compiler sees is given as many values as it takes.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "voice/format.h"
#include "voice/front.h"
#include "voice/message_ids.h"

namespace bv {

// A message before it is filled: a string number from 1 to 65535 or a text of 1 to 1001 characters. A number
// without a string reads "ERROR - %d" with the number; another length "ERROR - message string too long".
class Message {
  public:
    explicit constexpr Message(int id) : id_(id) {}
    explicit constexpr Message(std::string_view text) : text_(text) {}

    [[nodiscard]] std::string Fill(std::span<const FormatValue> values) const;

  private:
    int id_ = 0;
    std::string_view text_;
};

void TheTextTakesAnotherNumberOfValues(); // there is none: a call shows as an error of the compiler

// A message that takes that many values. A string by its name and a text that is written out are held to it by the
// compiler; a number or a text that is only known at run time is taken at its word.
template <std::size_t kPlaces>
class MessageWith {
  public:
    constexpr MessageWith(MessageId<kPlaces> id) : message_(id) {}
    consteval MessageWith(const char* text) : message_(std::string_view(text)) {
        if (CountPlaces(text) != kPlaces) TheTextTakesAnotherNumberOfValues();
    }
    constexpr MessageWith(std::string_view text) : message_(text) {}
    MessageWith(const std::string& text) : message_(std::string_view(text)) {}
    constexpr MessageWith(const Message& message) : message_(message) {}

    [[nodiscard]] std::string Fill(std::span<const FormatValue> values) const { return message_.Fill(values); }

  private:
    Message message_; // and no base: clang 14 breaks down on the base of what it makes while it compiles
};

enum class MessageStyle { Status = 3, Warning = 4, Error = 5, GraveError = 6 };

void ReportFilled(int style, const std::string& text);
bool AskFilled(MessageId<0> caption, BoxIcon icon, const std::string& text, BoxButtons buttons = BoxButtons::YesNo);
bool AskFilledForItself(const std::string& text);

template <class... Values>
std::string FillMessage(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    if constexpr (sizeof...(values) == 0) {
        return message.Fill({});
    } else {
        const FormatValue all[] = {FormatValue(values)...};
        return message.Fill(all);
    }
}

// Shows the message in the style of that number (MessageStyle); any other number shows nothing. Returns the
// style less 3.
template <class... Values>
int ReportMessage(int style, const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    ReportFilled(style, FillMessage(message, values...));
    return style - static_cast<int>(MessageStyle::Status);
}

// Status line 1.
template <class... Values>
void ShowStatus(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    ReportFilled(static_cast<int>(MessageStyle::Status), FillMessage(message, values...));
}

// A box with OK, captioned "Brivane Setup - Warning!".
template <class... Values>
void ShowWarning(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    ReportFilled(static_cast<int>(MessageStyle::Warning), FillMessage(message, values...));
}

// A box with OK, captioned "Brivane Setup - Error!".
template <class... Values>
void ShowError(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    ReportFilled(static_cast<int>(MessageStyle::Error), FillMessage(message, values...));
}

// Ask with Yes and No, No the default, true for Yes: a question captioned "Brivane Configuration", one that warns,
// captioned "Brivane Setup - Warning!", and 5193, whether to delete a thing of that kind, name and description, or 9210
// for so many of them.
template <class... Values>
bool AskQuestion(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    return AskFilled(kCaptionOfQuestion, BoxIcon::Question, FillMessage(message, values...));
}
template <class... Values>
bool AskWarning(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    return AskFilled(kCaptionOfWarning, BoxIcon::Warning, FillMessage(message, values...));
}
// As AskQuestion, but a Yes that was given beforehand, to all questions, does not count.
template <class... Values>
bool AskForItself(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    return AskFilledForItself(FillMessage(message, values...));
}
bool AskDelete(std::string_view kind, std::string_view name, std::string_view description);
bool AskDeleteMany(std::size_t count, std::string_view kinds);

// Asks "<text> - Ignore error and continue?" as an error; true for Yes, No is the default.
template <class... Values>
bool AskIgnoreError(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    return AskFilled(kCaptionOfError, BoxIcon::Error,
                     FillMessage(message, values...) + FillMessage(kIgnoreErrorAndContinue));
}

// Asks "<text> - Would you like to continue?"; true for Yes, No is the default.
template <class... Values>
bool AskContinue(const MessageWith<sizeof...(Values)>& message, const Values&... values) {
    return AskFilled(kCaptionOfQuestion, BoxIcon::Question,
                     FillMessage(message, values...) + FillMessage(kLikeToContinue));
}

// Stores up to 200 characters in status line 1, 2 or 3 and repaints.
void SetStatusLine(std::string_view text, int line);

enum class WaitForProgram { No, Yes };

// Starts a program by its command line, with status "Loading module  - please wait" meanwhile, and on request
// waits for its end while the interface stays alive but takes no input. False, after error 5031 with the
// system's error number, when it could not be started. When no timer can be had for the wait, shows error 5032
// and returns true at once.
bool RunProgram(const std::string& commandLine, WaitForProgram wait);

// Lets the system see that the program is alive: at most once every 250 ms, unless forced or the yield-now flag
// is set, which is then cleared. For long file operations.
void YieldToSystem(bool force = false);
void SetYieldNow();

} // namespace bv
