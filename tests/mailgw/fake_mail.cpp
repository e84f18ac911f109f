#include "mailgw/fake_mail.h"

#include <cstring>
#include <iterator>
#include <sstream>
#include <string>

namespace {

using namespace bv::mapi;
using bv::test::MailEntry;

// The messages' subjects; the id of a message is "m" and its index.
constexpr const char* kMailBox[] = {"Old", "new", "OLD"};

bv::test::MailPartner* partner = nullptr;

RecipientDescription aRecipient;
FileDescription aFile;
Message aMessage;
char aName[] = "Ann A";
char anAddress[] = "SMTP:ann";
char anId[] = "id\0x";
char aText[] = "Hello";
char aPath[] = "C:\\T\\A.TIF";
std::string aSubject;

std::string OrNone(const char* text) { return text == nullptr ? "(none)" : text; }

// The values, numbers in hexadecimal, with blanks between them.
template <class... Values>
std::string Details(const Values&... values) {
    std::ostringstream text;
    text << std::hex << std::uppercase;
    std::size_t count = 0;
    ((text << (count++ == 0 ? "" : " ") << values), ...);
    return text.str();
}

Error Tell(const char* entry, const std::string& details = {}) { return partner->Call(entry, details.c_str()); }
int TellNotes(const char* entry, const std::string& details = {}) { return static_cast<int>(Tell(entry, details)); }

RecipientDescription* Handed() {
    aRecipient = {0, 1, aName, anAddress, sizeof anId - 1, anId};
    ++partner->Buffers;
    return &aRecipient;
}

Message* HandedMessage(const char* id) {
    aSubject = kMailBox[id[1] - '0'];
    aFile = {0, 0, 3, aPath, nullptr, nullptr};
    aMessage = {};
    aMessage.Subject = aSubject.data();
    aMessage.NoteText = aText;
    aMessage.Originator = Handed();
    aMessage.RecipientCount = partner->Recipients;
    aMessage.Recipients = &aRecipient;
    aMessage.FileCount = 1;
    aMessage.Files = &aFile;
    return &aMessage;
}

std::uint32_t ReleaseExtended(ExtendedSession*) { return Tell("Release"); }
ExtendedSession::Methods extendedMethods = {nullptr, nullptr, ReleaseExtended};
ExtendedSession extendedSession = {&extendedMethods};

template <class Entry>
MailEntry Row(const char* name, Entry* entry) {
    return {name, reinterpret_cast<void (*)()>(entry)};
}

} // namespace

extern "C" {

void UseMailPartner(bv::test::MailPartner* other) { partner = other; }

std::int32_t MAPIInitialize(void*) { return static_cast<std::int32_t>(Tell("Initialize")); }
void MAPIUninitialize() { Tell("Uninitialize"); }
Error MAPILogon(Handle window, char* profile, char* password, Flags flags, std::uint32_t, Handle* session) {
    *session = static_cast<Handle>(0x7777777777); // of more than 32 bits
    return Tell("Logon", Details(window, OrNone(profile), OrNone(password), flags));
}
Error MAPILogoff(Handle session, Handle, Flags, std::uint32_t) { return Tell("Logoff", Details(session)); }
Error MAPISendMail(Handle session, Handle, Message* message, Flags, std::uint32_t) {
    std::string details = Details(session, OrNone(message->Subject) + "|" + OrNone(message->NoteText) + "|" +
                                               OrNone(message->MessageType));
    for (std::uint32_t i = 0; i < message->RecipientCount; ++i) {
        const RecipientDescription& to = message->Recipients[i];
        details += Details(" to", to.Class, OrNone(to.Name), OrNone(to.Address), to.EntryIdSize);
    }
    for (std::uint32_t i = 0; i < message->FileCount; ++i) {
        const FileDescription& file = message->Files[i];
        details += Details(" file", OrNone(file.PathName), OrNone(file.FileName), file.Position);
    }
    return Tell("SendMail", details);
}
Error MAPIAddress(Handle, Handle, char* caption, std::uint32_t, char*, std::uint32_t count, RecipientDescription*,
                  Flags, std::uint32_t, std::uint32_t* chosenCount, RecipientDescription** chosen) {
    const Error error = Tell("Address", Details(caption, count));
    *chosenCount = partner->Recipients;
    *chosen = partner->GivesNothing || error != 0 ? nullptr : Handed();
    return error;
}
Error MAPIFindNext(Handle session, Handle, char*, char* seed, Flags, std::uint32_t, char* id) {
    if (const Error error = Tell("FindNext", Details(session, OrNone(seed)))) return error;
    const std::size_t next = seed == nullptr ? 0 : static_cast<std::size_t>(seed[1] - '0') + 1;
    if (next >= std::size(kMailBox) && !partner->WalksInCircles) return kNoMessages;
    id[0] = 'm';
    id[1] = static_cast<char>('0' + next % std::size(kMailBox));
    return 0;
}
Error MAPIReadMail(Handle, Handle, char* id, Flags flags, std::uint32_t, Message** message) {
    const Error error = Tell("ReadMail", Details(id, flags));
    if (error == 0 && !partner->GivesNothing) *message = HandedMessage(id);
    return error;
}
Error MAPIDeleteMail(Handle session, Handle, char* id, Flags, std::uint32_t) {
    return Tell("DeleteMail", Details(session, id));
}
Error MAPIResolveName(Handle, Handle, char* name, Flags flags, std::uint32_t, RecipientDescription** resolved) {
    const Error error = Tell("ResolveName", Details(name, flags));
    if (error == 0 && !partner->GivesNothing) *resolved = Handed();
    return error;
}
Error MAPIFreeBuffer(void*) {
    --partner->Buffers;
    return 0;
}
std::int32_t ScMAPIXFromSMAPI(Handle session, Flags, const void*, ExtendedSession** opened) {
    *opened = partner->GivesNothing ? nullptr : &extendedSession;
    return static_cast<std::int32_t>(Tell("OpenExtended", Details(session)));
}

int MailInitLNotesDLL(const char* profile, const char* password) {
    return TellNotes("Init", Details(profile, password));
}
int MailTerminateLNotesDLL() { return TellNotes("Term"); }
int MailReadMessageLNotesDLL(char* id, Message** message) {
    const std::string after = id;
    const bool isLast = after == "m2";
    std::memcpy(id, isLast ? "\0\0" : "m2", 3);
    if (!isLast && !partner->GivesNothing) {
        *message = HandedMessage(id);
        --partner->Buffers; // what the bridge hands out stays its own
    }
    return TellNotes("Read", after);
}
int MailSendMessageLNotesDLL(Message* message) { return TellNotes("Send", message->Subject); }
int MailDeleteMessageLNotesDLL(const char* id) { return TellNotes("Delete", id); }
int MailClearFolderBySubjectLNotesDLL(const char* folder, const char* subject) {
    return TellNotes("Clear", Details(folder, subject));
}
int MailLNotesDatabaseReopenDLL() { return TellNotes("Reopen"); }
int MailLNotesPreInitDLL() { return TellNotes("PreInit"); }
int MailLNotesPostTermDLL() { return TellNotes("PostTerm"); }

} // extern "C"

namespace bv::test {

std::vector<MailEntry> MapiEntries() {
    return {
        Row("MAPIInitialize", MAPIInitialize), Row("MAPIUninitialize", MAPIUninitialize),
        Row("MAPILogon", MAPILogon),           Row("MAPILogoff", MAPILogoff),
        Row("MAPISendMail", MAPISendMail),     Row("MAPIAddress", MAPIAddress),
        Row("MAPIReadMail", MAPIReadMail),     Row("MAPIDeleteMail", MAPIDeleteMail),
        Row("MAPIFreeBuffer", MAPIFreeBuffer), Row("MAPIResolveName", MAPIResolveName),
        Row("MAPIFindNext", MAPIFindNext),     Row("ScMAPIXFromSMAPI", ScMAPIXFromSMAPI),
    };
}

std::vector<MailEntry> NotesEntries() {
    return {
        Row("MailInitLNotesDLL", MailInitLNotesDLL),
        Row("MailTerminateLNotesDLL", MailTerminateLNotesDLL),
        Row("MailReadMessageLNotesDLL", MailReadMessageLNotesDLL),
        Row("MailSendMessageLNotesDLL", MailSendMessageLNotesDLL),
        Row("MailDeleteMessageLNotesDLL", MailDeleteMessageLNotesDLL),
        Row("MailClearFolderBySubjectLNotesDLL", MailClearFolderBySubjectLNotesDLL),
        Row("MailLNotesDatabaseReopenDLL", MailLNotesDatabaseReopenDLL),
        Row("MailLNotesPreInitDLL", MailLNotesPreInitDLL),
        Row("MailLNotesPostTermDLL", MailLNotesPostTermDLL),
    };
}

} // namespace bv::test
