#include "mailgw/mail_wait_dlg.h"

#include "mailgw/mail_login.h"
#include "mailgw/mail_messages.h"
#include "voice/messages.h"

namespace bv {

std::uintptr_t MailWaitBox::Begin(const std::string& profile) {
    box_.emplace(owner_, 0);
    box_->Advance(0, FillMessage(kLoggingIntoMail), profile);
    return reinterpret_cast<std::uintptr_t>(box_->Window());
}

std::vector<std::string> PickFromBook(HWND owner) {
    const std::optional<MailLogin> login = ReadGatewayLogin();
    MailWaitBox box(owner);
    return login ? PickMailNames(*login, box) : std::vector<std::string>();
}

} // namespace bv
