// A session of the mail system on a thread of its own: a library that does not come back leaves the program alive.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ctlfile/status.h"
#include "mailgw/mail_library.h"

namespace bv {

// Who waits for a session, in this order; this one waits until it is over.
class MailWait {
  public:
    virtual ~MailWait() = default;

    // The session begins; returns the window over which the library shows its own, 0 for none.
    virtual std::uintptr_t Begin(const std::string& /*profile*/) { return 0; }

    // Asked many times a second; false when the person gives up.
    virtual bool GoesOn() { return true; }

    // The session is over or given up, and what became of it is said next.
    virtual void End() {}
};

// What a session takes. The work is done between logging in and logging out, and owns what it uses.
struct MailSessionPlan {
    MailType Type = MailType::Mapi;
    std::string Profile;
    std::string Password;
    bool IsInteractive = false;
    std::function<StatusCode()> Work;
};

// Logs in, does the work, and logs out, all of it on one other thread, as mail libraries and their windows want it.
// What is said there is said here when it is over. Status 5084, and what fails is said as mail_access.h has it. A
// session that the person gives up (status 9440) is left to itself: it logs out when its library comes back, without
// doing the work unless that had begun. Until then no other one begins (9453), as libraries do not reckon with two at
// once.
bool RunMailSession(const MailSessionPlan& plan, MailWait& wait);

} // namespace bv
