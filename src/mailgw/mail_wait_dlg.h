// What a person sees while a mail system works.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "dialogs/progress_dlg.h"
#include "mailgw/mail_session.h"

namespace bv {

// A box over the owner with a Cancel button, as long as a session lasts; the library's own windows come over it.
class MailWaitBox final : public MailWait {
  public:
    explicit MailWaitBox(HWND owner) : owner_(owner) {}

    std::uintptr_t Begin(const std::string& profile) override;
    bool GoesOn() override { return box_->GoOn(); }
    void End() override { box_.reset(); }

  private:
    HWND owner_;
    std::optional<ProgressBox> box_;
};

// Has the person choose from the mail system's address book, logged in as the mail gateway. None when nothing was
// chosen.
std::vector<std::string> PickFromBook(HWND owner);

} // namespace bv
