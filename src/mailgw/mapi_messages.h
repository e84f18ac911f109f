// Messages and recipients as Simple MAPI lays them out, made from ours and taken into ours.
#pragma once

#include <vector>

#include "mailgw/mail_access.h"
#include "mailgw/simple_mapi.h"

namespace bv {

// A message laid out over the texts of ours, which must outlive it.
class LaidOutMessage {
  public:
    explicit LaidOutMessage(const MailMessage& message);
    LaidOutMessage(const LaidOutMessage&) = delete;
    LaidOutMessage& operator=(const LaidOutMessage&) = delete;

    mapi::Message* Get() { return &message_; }

  private:
    mapi::Message message_;
    mapi::RecipientDescription originator_;
    std::vector<mapi::RecipientDescription> recipients_;
    std::vector<mapi::FileDescription> files_;
};

std::vector<mapi::RecipientDescription> LayOut(const std::vector<MailRecipient>& recipients);

// Copy what a library has handed out. False when it is beyond the limits of mail_access.h.
bool Take(const mapi::RecipientDescription& from, MailRecipient& recipient);
bool Take(const mapi::RecipientDescription* from, std::size_t count, std::vector<MailRecipient>& recipients);
bool Take(const mapi::Message& from, MailMessage& message);

} // namespace bv
