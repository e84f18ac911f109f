// A face for tests: it writes down what the engine says, in order, and answers as told.
#pragma once

#include <string>
#include <vector>

#include "voice/front.h"
#include "voice/list_target.h"

namespace bv::test {

// Installed as the front while it lives.
class RecordingFront final : public Front {
  public:
    // One line for each call: "status 1: TEXT", "warning: TEXT", "error: TEXT", "ask error: TEXT", "ask question:
    // TEXT", "confirm warning: TEXT" (with OK and Cancel), "input off", "wait cursor on", "wait for program" and so on.
    // Peeks are only counted.
    std::vector<std::string> Said;
    std::vector<std::string> Captions; // of the boxes and questions
    int Peeks = 0;
    std::vector<std::string> Waits; // for files: "begins: ", "lasts: TEXT", "ends: TEXT"

    bool Answer = false; // true is Yes
    bool CanWait = true;

    // What was said since the last call.
    std::vector<std::string> TakeSaid();

    void SetStatusLine(int line, const std::string& text) override;
    void ShowBox(const Box& box) override;
    bool Ask(const Box& box) override;
    void EnableInput(bool enabled) override;
    void ShowWaitCursor(bool wait) override;
    void ShowWait(WaitState state, const std::string& text) override;
    bool WaitForEnd(platform::Process& program) override;
    void PeekMessages() override;

  private:
    void WriteDown(const std::string& how, const Box& box);
    UseFront use_{*this};
};

// A list for tests.
class VectorList final : public ListTarget {
  public:
    std::vector<std::string> Entries;
    bool Combo = false;

    void Clear() override { Entries.clear(); }
    void Add(const std::string& entry) override { Entries.push_back(entry); }
    [[nodiscard]] bool Contains(const std::string& entry) const override;
    [[nodiscard]] bool IsComboBox() const override { return Combo; }
};

} // namespace bv::test
