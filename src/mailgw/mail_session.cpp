#include "mailgw/mail_session.h"

#include <atomic>
#include <chrono>
#include <future>
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

constexpr std::chrono::milliseconds kPause{20};

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

// Shared by the two threads. The caller's looks at nothing but the outcome until that is there.
struct Session {
    explicit Session(MailSessionPlan plan) : Plan(std::move(plan)) {}

    const MailSessionPlan Plan;
    std::uintptr_t Window = 0;
    MailSession Mail = NewMailSession();
    KeptMessages Said = {};
    std::atomic<bool> IsGivenUp = false;
    std::promise<StatusCode> Outcome = {};
};

StatusCode Do(const Session& session) {
    const MailSessionPlan& plan = session.Plan;
    StatusCode status = MailLogOn(session.Window, plan.Password, plan.IsInteractive);
    if (status != kDone) return status;
    if (!session.IsGivenUp) status = plan.Work();
    const StatusCode ended = MailTerm();
    return status == kDone ? ended : status;
}

void Run(const std::shared_ptr<Session>& session) {
    const UseFront said(session->Said);
    const UseMailSession own(session->Mail);
    session->Outcome.set_value(Do(*session));
}

// Without a thread to be had the session is done here, and nobody can give it up.
void Start(const std::shared_ptr<Session>& session) {
    try {
        std::thread(Run, session).detach();
    } catch (const std::system_error&) {
        Run(session);
    }
}

// The session that was given up last; it is there until its library has come back.
std::weak_ptr<Session>& GivenUp() {
    static std::weak_ptr<Session> session;
    return session;
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
    if (!GivenUp().expired()) {
        ShowError(kMailNotBack);
        return false;
    }
    const auto session = std::make_shared<Session>(plan);
    if (Load(*session) != kDone) return false;
    ShowStatus(kLoggingIntoMail);
    std::future<StatusCode> outcome = session->Outcome.get_future();
    session->Window = wait.Begin(plan.Profile);
    Start(session);
    while (outcome.wait_for(kPause) != std::future_status::ready && !session->IsGivenUp)
        session->IsGivenUp = !wait.GoesOn();
    wait.End();
    if (session->IsGivenUp) {
        GivenUp() = session;
        ShowStatus(kMailGivenUp);
        return false;
    }
    session->Said.SayAll();
    return outcome.get() == kDone;
}

} // namespace bv
