// The site's mail system, through the library that this workstation has for it.
//
//   ConfiguredMailType() = 2;
//   if (MailInit(window, "gateway", "", true) == kDone) {
//       ... MailSend, MailReadNext, ...
//       MailTerm();
//   }
//
// Operations return 0 or one of the codes of mail_library.h, kMailNotInitialised before MailInit among them. With VIM
// and CMC they say "VIM support not fully implemented yet" or "CMC support ..." and return kMailNotSupported. All else
// that fails is said, too: what the administrator must know in a box, the rest in status line 1.
//
// A library is not trusted further than its interface goes: absent results, counts beyond kMaxMailItems and texts
// beyond kMaxMailText are failures of the operation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/status.h"
#include "mailgw/mail_library.h"

namespace bv {

inline constexpr std::size_t kMaxMailItems = 10'000; // recipients or files of a message
inline constexpr std::size_t kMaxMailText = 16 * 1024 * 1024;
inline constexpr std::size_t kMaxMailEntryId = 64 * 1024;

// The number of the mail system that MailInit is to use: a MailType.
int& ConfiguredMailType();

// Loads the mail system's library and logs on; 0 at once when that is done already. The profile may be empty. With VIM
// and CMC there is no logging on. A failure leaves nothing loaded.
StatusCode MailInit(std::uintptr_t ownerWindow, const std::string& profile, const std::string& password,
                    bool isInteractive);

// The two steps of MailInit: finding and loading the library, and logging on, which may last, or never end.
StatusCode MailLoad(const std::string& profile);
StatusCode MailLogOn(std::uintptr_t ownerWindow, const std::string& password, bool isInteractive);

// The operations are the process's one session, but for those of a thread while it uses another one. Such a session is
// used by one thread at a time.
struct MailState;
using MailSession = std::shared_ptr<MailState>;
MailSession NewMailSession();

class UseMailSession {
  public:
    explicit UseMailSession(const MailSession& session);
    ~UseMailSession();
    UseMailSession(const UseMailSession&) = delete;
    UseMailSession& operator=(const UseMailSession&) = delete;

  private:
    MailState* before_;
};

// Logs off and unloads the library, also when logging off fails: kMailFailed, after "Logoff from MAPI failed (%lu)".
StatusCode MailTerm();

enum class RecipientClass { Originator, To, Copy, BlindCopy };

struct MailRecipient {
    RecipientClass Class = RecipientClass::To;
    std::string Name;
    std::string Address; // may be empty
    std::string EntryId; // the mail system's own bytes
};

struct MailAttachment {
    std::string PathName;
    std::string FileName;                  // empty: that of the path
    std::optional<std::uint32_t> Position; // the character of the text that the file stands for
};

struct MailMessage {
    std::string Subject;
    std::string NoteText;
    std::string MessageType;  // empty: a message between people
    std::string DateReceived; // "YYYY/MM/DD HH:MM"; set by the mail system
    std::optional<MailRecipient> Originator;
    std::vector<MailRecipient> Recipients;
    std::vector<MailAttachment> Files;
};

StatusCode MailSend(const MailMessage& message);

// Reads the message after that of the id, the first for an empty id, and puts its own id in place; without a further
// message the id is emptied. Reading leaves a message unread. Attached files are the caller's to delete.
StatusCode MailReadNext(std::string& id, MailMessage& message);

StatusCode MailDelete(const std::string& id);

// Finds the recipient that a name means; an interactive one asks the person when it means several. Not with Notes.
StatusCode MailResolveName(const std::string& name, bool isInteractive, MailRecipient& recipient);

// Has the person choose from the mail system's address book, beginning with those given. Not with Notes.
StatusCode MailPickAddresses(const std::string& caption, std::vector<MailRecipient>& recipients);

// "Outbox", "Waste" and "Sent" for 0 to 2, "Unknown" for any other.
std::string_view MailFolderName(int folder);

// Deletes the gateway's old messages, those with that subject in any case, in a session of its own. Simple MAPI knows
// no folders: there it is the messages that the profile's inbox shows. Says when it cannot log on or off, or anything
// else fails.
StatusCode MailTidyFolder(int folder, const std::string& subject);

} // namespace bv
