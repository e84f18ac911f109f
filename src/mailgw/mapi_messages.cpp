#include "mailgw/mapi_messages.h"

#include <cstring>

namespace bv {
namespace {

// The interface is older than const; libraries do not write into what they are given.
char* Text(const std::string& text) { return const_cast<char*>(text.c_str()); }
char* TextOrNone(const std::string& text) { return text.empty() ? nullptr : Text(text); }

mapi::RecipientDescription LayOutOne(const MailRecipient& recipient) {
    mapi::RecipientDescription laidOut;
    laidOut.Class = static_cast<std::uint32_t>(recipient.Class);
    laidOut.Name = Text(recipient.Name);
    laidOut.Address = TextOrNone(recipient.Address);
    laidOut.EntryIdSize = static_cast<std::uint32_t>(recipient.EntryId.size());
    laidOut.EntryId = TextOrNone(recipient.EntryId);
    return laidOut;
}

bool TakeText(const char* from, std::string& text) {
    text.clear();
    if (from == nullptr) return true;
    const void* end = std::memchr(from, '\0', kMaxMailText);
    if (end == nullptr) return false;
    text.assign(from, static_cast<const char*>(end));
    return true;
}

bool Take(const mapi::FileDescription& from, MailAttachment& file) {
    if (from.Position != mapi::kNoPosition) file.Position = from.Position;
    return TakeText(from.PathName, file.PathName) && TakeText(from.FileName, file.FileName);
}

// An array of `count`, which an absent one has not.
template <class From, class To>
bool TakeAll(const From* from, std::size_t count, std::vector<To>& all) {
    all.clear();
    if (count > kMaxMailItems || (count != 0 && from == nullptr)) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (!Take(from[i], all.emplace_back())) return false;
    }
    return true;
}

} // namespace

std::vector<mapi::RecipientDescription> LayOut(const std::vector<MailRecipient>& recipients) {
    std::vector<mapi::RecipientDescription> laidOut;
    for (const MailRecipient& recipient : recipients) laidOut.push_back(LayOutOne(recipient));
    return laidOut;
}

LaidOutMessage::LaidOutMessage(const MailMessage& message) : recipients_(LayOut(message.Recipients)) {
    for (const MailAttachment& attachment : message.Files) {
        mapi::FileDescription& file = files_.emplace_back();
        file.Position = attachment.Position.value_or(mapi::kNoPosition);
        file.PathName = Text(attachment.PathName);
        file.FileName = TextOrNone(attachment.FileName);
    }
    message_.Subject = Text(message.Subject);
    message_.NoteText = Text(message.NoteText);
    message_.MessageType = TextOrNone(message.MessageType);
    if (message.Originator) {
        originator_ = LayOutOne(*message.Originator);
        message_.Originator = &originator_;
    }
    message_.RecipientCount = static_cast<std::uint32_t>(recipients_.size());
    message_.Recipients = recipients_.empty() ? nullptr : recipients_.data();
    message_.FileCount = static_cast<std::uint32_t>(files_.size());
    message_.Files = files_.empty() ? nullptr : files_.data();
}

bool Take(const mapi::RecipientDescription& from, MailRecipient& recipient) {
    if (from.Class > static_cast<std::uint32_t>(RecipientClass::BlindCopy)) return false;
    if (from.EntryIdSize > kMaxMailEntryId || (from.EntryIdSize != 0 && from.EntryId == nullptr)) return false;
    recipient.Class = static_cast<RecipientClass>(from.Class);
    recipient.EntryId.assign(static_cast<const char*>(from.EntryId), from.EntryIdSize);
    return TakeText(from.Name, recipient.Name) && TakeText(from.Address, recipient.Address);
}

bool Take(const mapi::RecipientDescription* from, std::size_t count, std::vector<MailRecipient>& recipients) {
    return TakeAll(from, count, recipients);
}

bool Take(const mapi::Message& from, MailMessage& message) {
    message = {};
    if (from.Originator != nullptr && !Take(*from.Originator, message.Originator.emplace())) return false;
    return TakeText(from.Subject, message.Subject) && TakeText(from.NoteText, message.NoteText) &&
           TakeText(from.MessageType, message.MessageType) && TakeText(from.DateReceived, message.DateReceived) &&
           TakeAll(from.Recipients, from.RecipientCount, message.Recipients) &&
           TakeAll(from.Files, from.FileCount, message.Files);
}

} // namespace bv
