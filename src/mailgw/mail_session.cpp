#include "mailgw/mail_session.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "mailgw/mail_access.h"
#include "mailgw/mail_messages.h"
#include "voice/front.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::chrono::milliseconds kPause{5};

// Keeps what is said on a thread that has no face.
class KeptMessages final : public Front {
  public:
    void SetStatusLine(int line, const std::string& text) override {
        said_.emplace_back([=] { CurrentFront().SetStatusLine(line, text); });
    }
    void ShowBox(const Box& box) override {
        said_.emplace_back([=] { CurrentFront().ShowBox(box); });
    }
    bool Ask(const Box&) override { return false; }
    void EnableInput(bool) override {}
    void ShowWaitCursor(bool) override {}
    bool WaitForEnd(platform::Process&) override { return false; }
    void PeekMessages() override {}

    void SayAll() const {
        for (const auto& say : said_) say();
    }

  private:
    std::vector<std::function<void()>> said_;
};

// Shared by the two threads. The caller's looks at nothing but the outcome until that is there, and ends the thread
// then: it is never detached, as one that is at its very beginning may stand still under Wine.
struct Session {
    explicit Session(MailSessionPlan plan) : Plan(std::move(plan)) {}

    const MailSessionPlan Plan;
    std::uintptr_t Window = 0;
    MailSession Mail = NewMailSession();
    KeptMessages Said = {};
    std::atomic<bool> IsGivenUp = false;
    StatusCode Outcome = kDone;
    std::atomic<bool> IsOver = false; // the outcome is there
    std::thread Thread = {};
};

StatusCode Do(const Session& session) {
    const MailSessionPlan& plan = session.Plan;
    StatusCode status = MailLogOn(session.Window, plan.Password, plan.IsInteractive);
    if (status != kDone) return status;
    if (!session.IsGivenUp) status = plan.Work();
    const StatusCode ended = MailTerm();
    return status == kDone ? ended : status;
}

void Run(Session& session) {
    const UseFront said(session.Said);
    const UseMailSession own(session.Mail);
    session.Outcome = Do(session);
    session.IsOver = true;
}

// Without a thread to be had the session is done here, and nobody can give it up.
void Start(Session& session) {
    try {
        session.Thread = std::thread(Run, std::ref(session));
    } catch (const std::system_error&) {
        Run(session);
    }
}

void End(Session& session) {
    if (session.Thread.joinable()) session.Thread.join();
}

// The session that was given up last, until its library has come back. One that never does outlives the program's end.
std::unique_ptr<Session>& GivenUp() {
    static auto& session = *new std::unique_ptr<Session>;
    return session;
}

bool IsLastOneBack() {
    if (GivenUp() && !GivenUp()->IsOver) return false;
    if (GivenUp()) End(*GivenUp());
    GivenUp().reset();
    return true;
}

StatusCode Load(const Session& session) {
    const UseMailSession own(session.Mail);
    const int before = std::exchange(ConfiguredMailType(), static_cast<int>(session.Plan.Type));
    const StatusCode status = MailLoad(session.Plan.Profile);
    ConfiguredMailType() = before;
    return status;
}

} // namespace

bool RunMailSession(const MailSessionPlan& plan, MailWait& wait) {
    if (!IsLastOneBack()) {
        ShowError(kMailNotBack);
        return false;
    }
    auto session = std::make_unique<Session>(plan);
    if (Load(*session) != kDone) return false;
    ShowStatus(kLoggingIntoMail);
    session->Window = wait.Begin(plan.Profile);
    Start(*session);
    while (!session->IsOver && !session->IsGivenUp) {
        std::this_thread::sleep_for(kPause);
        session->IsGivenUp = !session->IsOver && !wait.GoesOn();
    }
    wait.End();
    if (session->IsGivenUp) {
        GivenUp() = std::move(session);
        ShowStatus(kMailGivenUp);
        return false;
    }
    End(*session);
    session->Said.SayAll();
    return session->Outcome == kDone;
}

} // namespace bv
