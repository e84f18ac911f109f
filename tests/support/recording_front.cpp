#include "support/recording_front.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"

namespace bv::test {
namespace {

std::string IconName(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::Warning: return "warning";
    case BoxIcon::Error: return "error";
    case BoxIcon::Question: return "question";
    }
    return "?";
}

} // namespace

std::vector<std::string> RecordingFront::TakeSaid() { return std::exchange(Said, {}); }

void RecordingFront::WriteDown(const std::string& how, const Box& box) {
    Said.push_back(how + IconName(box.Icon) + ": " + box.Text);
    Captions.push_back(box.Caption);
}

void RecordingFront::SetStatusLine(int line, const std::string& text) {
    Said.push_back("status " + std::to_string(line) + ": " + text);
}

void RecordingFront::ShowBox(const Box& box) { WriteDown("", box); }

bool RecordingFront::Ask(const Box& box) {
    WriteDown(box.Buttons == BoxButtons::OkCancel ? "confirm " : "ask ", box);
    return Answer;
}

void RecordingFront::EnableInput(bool enabled) { Said.emplace_back(enabled ? "input on" : "input off"); }

void RecordingFront::ShowWaitCursor(bool wait) { Said.emplace_back(wait ? "wait cursor on" : "wait cursor off"); }

void RecordingFront::ShowWait(WaitState state, const std::string& text) {
    constexpr const char* kStates[] = {"begins: ", "lasts: ", "ends: "};
    Waits.push_back(kStates[static_cast<std::size_t>(state)] + text);
}

bool RecordingFront::WaitForEnd(platform::Process&) {
    Said.emplace_back("wait for program");
    return CanWait;
}

void RecordingFront::PeekMessages() { ++Peeks; }

bool VectorList::Contains(const std::string& entry) const {
    return std::ranges::any_of(Entries, [&entry](const std::string& one) { return EqualFolded(one, entry); });
}

} // namespace bv::test
