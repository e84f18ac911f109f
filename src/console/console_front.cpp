#include "console/console_front.h"

#include <cstdint>

#include "platform/ascii.h"
#include "platform/clock.h"

namespace bv::console {
namespace {

constexpr std::int64_t kWaitInterval = 50; // milliseconds between two looks at an awaited program

bool IsYes(std::string_view answer) {
    const std::string_view word = TrimBlanks(answer);
    return EqualFolded(word, "y") || EqualFolded(word, "yes");
}

} // namespace

void ConsoleFront::Rehearse() {
    SetStatusShown(false);
    answering_ = Answering::Yes;
}

void ConsoleFront::SetStatusLine(int line, const std::string& text) {
    if (line == 1) lastStatus_ = text;
    const bool isShown = showsStatus_ || line != 1;
    if (isShown && !text.empty()) console_.PrintNotice(text + '\n');
}

// For a person to see; a script's output does not depend on how long files were held.
void ConsoleFront::ShowWait(WaitState state, const std::string& text) {
    if (state == WaitState::Lasts && console_.IsTerminal()) console_.PrintNotice(text + '\n');
}

void ConsoleFront::ShowBox(const Box& box) { console_.PrintNotice(box.Text + '\n'); }

bool ConsoleFront::Ask(const Box& box) {
    if (box.NeedsOwnYes) {
        console_.PrintNotice(box.Text + " No (bvctl recover does it)\n");
        return false;
    }
    if (answering_ == Answering::Yes) return true;
    console_.PrintNotice(box.Text + " [y/N] ");
    if (answering_ == Answering::No) {
        console_.PrintNotice("No (--dry-run)\n");
        return false;
    }
    if (console_.IsTerminal()) return IsYes(console_.ReadLine().value_or(""));
    console_.PrintNotice("No (nobody to ask; --yes answers Yes)\n");
    return false;
}

bool ConsoleFront::WaitForEnd(platform::Process& program) {
    while (program.IsRunning()) platform::TheClock().Sleep(kWaitInterval);
    return true;
}

} // namespace bv::console
