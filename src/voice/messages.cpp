#include "voice/messages.h"

#include <memory>

#include "platform/clock.h"
#include "voice/strings.h"

namespace bv {
namespace {

constexpr std::size_t kMaxStringLength = 1000;
constexpr std::size_t kMaxTextLength = 1001;
constexpr std::size_t kMaxStatusLength = 200;
constexpr std::int64_t kYieldInterval = 250; // milliseconds

// What speaks while no face is installed.
class SilentFront : public Front {
  public:
    void SetStatusLine(int, const std::string&) override {}
    void ShowBox(const Box&) override {}
    bool Ask(const Box&) override { return false; }
    void EnableInput(bool) override {}
    void ShowWaitCursor(bool) override {}
    bool WaitForEnd(platform::Process&) override { return false; }
    void PeekMessages() override {}
};

thread_local Front* installedFront = nullptr;
bool yieldNow = false;
std::int64_t lastYield = 0;

} // namespace

UseFront::UseFront(Front& front) : before_(installedFront) { installedFront = &front; }
UseFront::~UseFront() { installedFront = before_; }

Front& CurrentFront() {
    static SilentFront silent;
    return installedFront != nullptr ? *installedFront : silent;
}

std::string Message::Fill(std::span<const FormatValue> values) const {
    if (id_ != 0) {
        const std::string_view found = FindString(id_);
        if (found.empty()) return FormatText("ERROR - %d", id_);
        return FormatValues(found.substr(0, kMaxStringLength), values);
    }
    if (text_.empty() || text_.size() > kMaxTextLength) return "ERROR - message string too long";
    return FormatValues(text_, values);
}

void ReportFilled(int style, const std::string& text) {
    switch (static_cast<MessageStyle>(style)) {
    case MessageStyle::Status: SetStatusLine(text, 1); break;
    case MessageStyle::Warning: CurrentFront().ShowBox({FillMessage(kCaptionOfWarning), text, BoxIcon::Warning}); break;
    case MessageStyle::Error:
    case MessageStyle::GraveError: CurrentFront().ShowBox({FillMessage(kCaptionOfError), text, BoxIcon::Error}); break;
    }
}

bool AskFilled(MessageId<0> caption, BoxIcon icon, const std::string& text, BoxButtons buttons) {
    return CurrentFront().Ask({FillMessage(caption), text, icon, buttons});
}

bool AskFilledForItself(const std::string& text) {
    return CurrentFront().Ask({FillMessage(kCaptionOfQuestion), text, BoxIcon::Question, BoxButtons::YesNo, true});
}

bool AskDelete(std::string_view kind, std::string_view name, std::string_view description) {
    return AskFilled(kCaptionOfDelete, BoxIcon::Question,
                     FillMessage(kReallyDelete, kind, name, description.empty() ? "" : "-", description));
}

bool AskDeleteMany(std::size_t count, std::string_view kinds) {
    return AskFilled(kCaptionOfDelete, BoxIcon::Question, FillMessage(kDeletingMany, count, kinds));
}

void SetStatusLine(std::string_view text, int line) {
    CurrentFront().SetStatusLine(line, std::string(text.substr(0, kMaxStatusLength)));
}

bool RunProgram(const std::string& commandLine, WaitForProgram wait) {
    Front& front = CurrentFront();
    front.EnableInput(false);
    ShowStatus(kLoadingModule);
    front.ShowWaitCursor(true);
    platform::StartResult result = platform::TheProcesses().Start(commandLine);
    if (!result.Started) ShowError(kErrorRunningProgram, result.SystemError, commandLine);
    SetStatusLine("", 1);
    front.ShowWaitCursor(false);
    if (result.Started && wait == WaitForProgram::Yes && !front.WaitForEnd(*result.Started))
        ShowError(kUnableToCreateTimer);
    front.EnableInput(true);
    return result.Started != nullptr;
}

void SetYieldNow() { yieldNow = true; }

void YieldToSystem(bool force) {
    const std::int64_t now = platform::TheClock().Ticks();
    if (!force && !yieldNow && now - lastYield < kYieldInterval) return;
    yieldNow = false;
    lastYield = now;
    CurrentFront().PeekMessages();
}

} // namespace bv
