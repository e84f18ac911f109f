#include "mailgw/mail_access.h"

#include <array>
#include <set>
#include <utility>

#include "mailgw/mapi_messages.h"
#include "platform/ascii.h"
#include "platform/environment.h"
#include "voice/messages.h"

namespace bv {

using mapi::Error;

struct MailState {
    bool IsInitialised = false;
    MailType Type = MailType::Mapi;
    std::unique_ptr<platform::Library> Loaded;
    std::uintptr_t Window = 0;
    std::string Profile;
    MapiTable Mapi;
    mapi::Handle Session = 0;
    bool ExtendedIsInitialised = false;
    mapi::ExtendedSession* Extended = nullptr;
    NotesTable Notes;
};

namespace {

thread_local MailState* ownState = nullptr; // of a thread that uses a session of its own

MailState& State() {
    static MailState ofProcess;
    return ownState != nullptr ? *ownState : ofProcess;
}

template <class... Values>
void Report(MailSeverity severity, const MessageWith<sizeof...(Values)>& text, const Values&... values) {
    ReportMessage(static_cast<int>(severity), text, values...);
}

char* Writable(const std::string& text) { return const_cast<char*>(text.c_str()); }

// Frees what an operation of the library has handed out; one that failed has not.
class LibraryBuffer {
  public:
    LibraryBuffer(void* buffer, Error error) : buffer_(error == 0 ? buffer : nullptr) {}
    ~LibraryBuffer() {
        if (buffer_ != nullptr) State().Mapi.FreeBuffer(buffer_);
    }
    LibraryBuffer(const LibraryBuffer&) = delete;
    LibraryBuffer& operator=(const LibraryBuffer&) = delete;

  private:
    void* buffer_;
};

StatusCode Refuse(const MessageWith<0>& text) {
    Report(MailSeverity::Status, text);
    return kMailNotSupported;
}

// Whether operations can be done; says which mail systems cannot do any.
StatusCode CheckReady() {
    if (!State().IsInitialised) return kMailNotInitialised;
    if (State().Type == MailType::Vim) return Refuse("VIM support not fully implemented yet");
    if (State().Type == MailType::Cmc) return Refuse("CMC support not fully implemented yet");
    return kDone;
}

StatusCode CheckReadyWithoutNotes() {
    const StatusCode status = CheckReady();
    if (status != kDone || State().Type != MailType::Notes) return status;
    return Refuse("Lotus Notes API support not fully implemented yet");
}

// The status of an operation, and its message when it has failed.
StatusCode Outcome(const MessageWith<1>& text, bool isDone, Error error) {
    if (isDone) return kDone;
    Report(MailSeverity::Status, text, error);
    return kMailFailed;
}

void InitialiseExtended() {
    MailState& state = State();
    if (state.Mapi.Initialize == nullptr || state.ExtendedIsInitialised) return;
    const std::int32_t error = state.Mapi.Initialize(nullptr);
    state.ExtendedIsInitialised = error >= 0;
    if (error < 0) Report(MailSeverity::Trace, "MAPI initialisation failed (MAPIX error %ld)", error);
}

void UninitialiseExtended() {
    MailState& state = State();
    if (state.ExtendedIsInitialised) state.Mapi.Uninitialize();
    state.ExtendedIsInitialised = false;
}

void OpenExtendedSession() {
    MailState& state = State();
    if (state.ExtendedIsInitialised && state.Mapi.OpenExtended != nullptr) {
        mapi::ExtendedSession* extended = nullptr;
        const std::int32_t error = state.Mapi.OpenExtended(state.Session, 0, nullptr, &extended);
        if (error >= 0 && extended != nullptr && extended->Table != nullptr) {
            state.Extended = extended;
            return;
        }
    }
    Report(MailSeverity::Trace, "Unable to access extended MAPI");
}

Error LogonSession(bool isInteractive, mapi::Handle& session) {
    MailState& state = State();
    const mapi::Flags flags = mapi::kNewSession | (isInteractive ? mapi::kLogonUi : 0);
    char* profile = state.Profile.empty() ? nullptr : Writable(state.Profile);
    return state.Mapi.Logon(state.Window, profile, nullptr, flags, 0, &session);
}

StatusCode LogonMapi(bool isInteractive) {
    MailState& state = State();
    const StatusCode resolved = ResolveMapi(*state.Loaded, state.Mapi);
    if (resolved != kDone) return resolved;
    InitialiseExtended();
    if (const Error error = LogonSession(isInteractive, state.Session); error != 0) {
        Report(MailSeverity::Status, "Logon to MAPI failed (%lu)", error);
        UninitialiseExtended();
        return kMailLogonFailed;
    }
    OpenExtendedSession();
    return kDone;
}

bool IsWindowsNt() { return platform::TheEnvironment().Variable("OS") == "Windows_NT"; }

StatusCode LogonNotes(const std::string& password) {
    MailState& state = State();
    if (!password.empty() && !IsWindowsNt()) {
        Report(MailSeverity::Status, "Unable to logon to Lotus Notes accounts with passwords on non-NT systems");
        return kNotesPasswordRefused;
    }
    const StatusCode resolved = ResolveNotes(*state.Loaded, state.Notes);
    if (resolved != kDone) return resolved;
    if (state.Notes.PreInit() == 0) {
        if (state.Notes.Init(state.Profile.c_str(), password.c_str()) == 0) return kDone;
        state.Notes.PostTerm();
    }
    Report(MailSeverity::Status, "Logon to Lotus Notes failed");
    return kMailLogonFailed;
}

StatusCode Logon(const std::string& password, bool isInteractive) {
    switch (State().Type) {
    case MailType::Mapi: return LogonMapi(isInteractive);
    case MailType::Notes: return LogonNotes(password);
    default: return kDone;
    }
}

StatusCode LogoffMapi() {
    MailState& state = State();
    if (state.Extended != nullptr) state.Extended->Table->Release(state.Extended);
    const Error error = state.Mapi.Logoff(state.Session, state.Window, 0, 0);
    UninitialiseExtended();
    return Outcome("Logoff from MAPI failed (%lu)", error == 0, error);
}

StatusCode LogoffNotes() {
    const NotesTable& notes = State().Notes;
    const int terminated = notes.Term();
    const int ended = notes.PostTerm();
    if (terminated == 0 && ended == 0) return kDone;
    Report(MailSeverity::Status, "Logoff from Lotus Notes failed");
    return kMailFailed;
}

Error NextMapiId(mapi::Handle session, const std::string& seed, std::string& id) {
    const MailState& state = State();
    std::array<char, mapi::kMessageIdSize> found{};
    const mapi::Flags flags = mapi::kGuaranteeFifo | mapi::kLongMessageId;
    char* after = seed.empty() ? nullptr : Writable(seed);
    const Error error = state.Mapi.FindNext(session, state.Window, nullptr, after, flags, 0, found.data());
    found.back() = '\0';
    id = found.data();
    return error;
}

// Reads a message of MAPI. False when it cannot be read or is beyond the limits.
bool ReadMapiMessage(mapi::Handle session, const std::string& id, mapi::Flags flags, MailMessage& message,
                     Error& error) {
    mapi::Message* read = nullptr;
    error = State().Mapi.ReadMail(session, State().Window, Writable(id), flags | mapi::kPeek, 0, &read);
    const LibraryBuffer buffer(read, error);
    return error == 0 && read != nullptr && Take(*read, message);
}

StatusCode ReadNextMapi(std::string& id, MailMessage& message) {
    constexpr MessageWith<1> kUnread = "Mail message could not be read (%lu)";
    std::string next;
    Error error = NextMapiId(State().Session, id, next);
    if (error == mapi::kNoMessages || (error == 0 && next.empty())) {
        id.clear();
        return kDone;
    }
    if (error != 0) return Outcome(kUnread, false, error);
    const bool isRead = ReadMapiMessage(State().Session, next, 0, message, error);
    if (isRead) id = next;
    return Outcome(kUnread, isRead, error);
}

StatusCode ReadNextNotes(std::string& id, MailMessage& message) {
    std::array<char, mapi::kMessageIdSize> place{};
    id.copy(place.data(), place.size() - 1);
    mapi::Message* read = nullptr;
    const int error = State().Notes.ReadMessage(place.data(), &read);
    place.back() = '\0';
    const bool isAtEnd = error == 0 && place.front() == '\0';
    const bool isRead = isAtEnd || (error == 0 && read != nullptr && Take(*read, message));
    if (isRead) id = place.data();
    return Outcome("Mail message could not be read (%lu)", isRead, static_cast<Error>(error));
}

// Collects the messages with the subject; false on an error, and when the library walks in a circle.
bool FindWithSubject(mapi::Handle session, const std::string& subject, std::vector<std::string>& found) {
    std::set<std::string> seen;
    MailMessage message;
    for (std::string id;;) {
        std::string next;
        Error error = NextMapiId(session, id, next);
        if (error == mapi::kNoMessages || (error == 0 && next.empty())) return true;
        if (error != 0 || !seen.insert(next).second) return false;
        if (!ReadMapiMessage(session, next, mapi::kEnvelopeOnly, message, error)) return false;
        if (EqualFolded(message.Subject, subject)) found.push_back(next);
        id = next;
    }
}

// Finds first and deletes then, because a deleted message leads to no further one.
bool ClearMapiSession(mapi::Handle session, const std::string& subject) {
    std::vector<std::string> found;
    bool isDone = FindWithSubject(session, subject, found);
    for (const std::string& id : found) {
        if (State().Mapi.DeleteMail(session, State().Window, Writable(id), 0, 0) != 0) isDone = false;
    }
    return isDone;
}

StatusCode ReportTidying(const MessageWith<0>& text, StatusCode status) {
    Report(MailSeverity::Status, text);
    return status;
}

StatusCode TidyMapi(const std::string& subject) {
    mapi::Handle session = 0;
    if (LogonSession(false, session) != 0)
        return ReportTidying("Mail logon failed while doing mail system maintenance", kMailLogonFailed);
    StatusCode status = kDone;
    if (!ClearMapiSession(session, subject)) status = ReportTidying("Error doing mail system maintenance", kMailFailed);
    if (State().Mapi.Logoff(session, State().Window, 0, 0) != 0)
        status = ReportTidying("Mail logoff failed while doing mail system maintenance", kMailFailed);
    return status;
}

StatusCode TidyNotes(int folder, const std::string& subject) {
    const NotesTable& notes = State().Notes;
    if (notes.DatabaseReopen != nullptr && notes.DatabaseReopen() != 0)
        return ReportTidying("Mail logon failed while doing mail system maintenance", kMailLogonFailed);
    const std::string name(MailFolderName(folder));
    if (notes.ClearFolderBySubject(name.c_str(), subject.c_str()) == 0) return kDone;
    return ReportTidying("Error doing mail system maintenance", kMailFailed);
}

} // namespace

int& ConfiguredMailType() {
    static int type = static_cast<int>(MailType::Mapi);
    return type;
}

MailSession NewMailSession() { return std::make_shared<MailState>(); }

UseMailSession::UseMailSession(const MailSession& session) : before_(std::exchange(ownState, session.get())) {}
UseMailSession::~UseMailSession() { ownState = before_; }

StatusCode MailInit(std::uintptr_t ownerWindow, const std::string& profile, const std::string& password,
                    bool isInteractive) {
    if (State().IsInitialised) return kDone;
    const StatusCode status = MailLoad(profile);
    return status == kDone ? MailLogOn(ownerWindow, password, isInteractive) : status;
}

StatusCode MailLoad(const std::string& profile) {
    MailState& state = State();
    const int type = ConfiguredMailType();
    if (type < static_cast<int>(MailType::Vim) || type > static_cast<int>(MailType::Notes)) {
        Report(MailSeverity::Error, "Invalid mail type %d", type);
        return kMailTypeInvalid;
    }
    state = {};
    state.Type = static_cast<MailType>(type);
    state.Profile = profile;
    return LoadMailLibrary(state.Type, state.Loaded);
}

StatusCode MailLogOn(std::uintptr_t ownerWindow, const std::string& password, bool isInteractive) {
    MailState& state = State();
    state.Window = ownerWindow;
    const StatusCode status = Logon(password, isInteractive);
    if (status != kDone) state = {};
    state.IsInitialised = status == kDone;
    return status;
}

StatusCode MailTerm() {
    MailState& state = State();
    if (!state.IsInitialised) return kMailNotInitialised;
    StatusCode status = kDone;
    if (state.Type == MailType::Mapi) status = LogoffMapi();
    if (state.Type == MailType::Notes) status = LogoffNotes();
    state = {};
    return status;
}

StatusCode MailSend(const MailMessage& message) {
    if (const StatusCode status = CheckReady(); status != kDone) return status;
    const MailState& state = State();
    LaidOutMessage laidOut(message);
    const Error error = state.Type == MailType::Notes
                            ? static_cast<Error>(state.Notes.SendMessage(laidOut.Get()))
                            : state.Mapi.SendMail(state.Session, state.Window, laidOut.Get(), 0, 0);
    return Outcome("Mail message could not be sent (%lu)", error == 0, error);
}

StatusCode MailReadNext(std::string& id, MailMessage& message) {
    if (const StatusCode status = CheckReady(); status != kDone) return status;
    return State().Type == MailType::Notes ? ReadNextNotes(id, message) : ReadNextMapi(id, message);
}

StatusCode MailDelete(const std::string& id) {
    if (const StatusCode status = CheckReady(); status != kDone) return status;
    const MailState& state = State();
    const Error error = state.Type == MailType::Notes
                            ? static_cast<Error>(state.Notes.DeleteMessage(id.c_str()))
                            : state.Mapi.DeleteMail(state.Session, state.Window, Writable(id), 0, 0);
    return Outcome("Mail message could not be deleted (%lu)", error == 0, error);
}

StatusCode MailResolveName(const std::string& name, bool isInteractive, MailRecipient& recipient) {
    if (const StatusCode status = CheckReadyWithoutNotes(); status != kDone) return status;
    const MailState& state = State();
    mapi::RecipientDescription* resolved = nullptr;
    const mapi::Flags flags = isInteractive ? mapi::kDialog : 0;
    const Error error = state.Mapi.ResolveName(state.Session, state.Window, Writable(name), flags, 0, &resolved);
    const LibraryBuffer buffer(resolved, error);
    MailRecipient taken;
    const bool isDone = error == 0 && resolved != nullptr && Take(*resolved, taken);
    if (isDone) recipient = std::move(taken);
    return Outcome("Mail name could not be resolved (%lu)", isDone, error);
}

StatusCode MailPickAddresses(const std::string& caption, std::vector<MailRecipient>& recipients) {
    if (const StatusCode status = CheckReadyWithoutNotes(); status != kDone) return status;
    const MailState& state = State();
    std::vector<mapi::RecipientDescription> given = LayOut(recipients);
    const auto count = static_cast<std::uint32_t>(given.size());
    std::uint32_t chosenCount = 0;
    mapi::RecipientDescription* chosen = nullptr;
    const Error error = state.Mapi.Address(state.Session, state.Window, Writable(caption), 1, nullptr, count,
                                           given.empty() ? nullptr : given.data(), 0, 0, &chosenCount, &chosen);
    const LibraryBuffer buffer(chosen, error);
    std::vector<MailRecipient> taken;
    const bool isDone = error == 0 && Take(chosen, chosenCount, taken);
    if (isDone) recipients = std::move(taken);
    return Outcome("Mail addresses could not be chosen (%lu)", isDone, error);
}

std::string_view MailFolderName(int folder) {
    switch (folder) {
    case 0: return "Outbox";
    case 1: return "Waste";
    case 2: return "Sent";
    default: return "Unknown";
    }
}

StatusCode MailTidyFolder(int folder, const std::string& subject) {
    Report(MailSeverity::Trace, "Deleting mail messages from '%s' folder", MailFolderName(folder));
    if (const StatusCode status = CheckReady(); status != kDone) return status;
    return State().Type == MailType::Notes ? TidyNotes(folder, subject) : TidyMapi(subject);
}

} // namespace bv
