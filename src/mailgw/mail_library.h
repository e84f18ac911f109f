// Finding the library of a mail system, and its entries.
#pragma once

#include <memory>
#include <string>

#include "ctlfile/status.h"
#include "mailgw/simple_mapi.h"
#include "platform/libraries.h"

namespace bv {

inline constexpr StatusCode kMailTypeInvalid = -4095;
inline constexpr StatusCode kMailNotSupported = -4081;  // by VIM and CMC, nor all of it by Notes
inline constexpr StatusCode kMailLibraryFailed = -4033; // not loaded, or a required entry is missing
inline constexpr StatusCode kMailLogonFailed = -4032;
inline constexpr StatusCode kMailFailed = -4031; // any other fault of the mail system
inline constexpr StatusCode kMailNotInitialised = -4024;
inline constexpr StatusCode kNotesPasswordRefused = -3999;
inline constexpr StatusCode kNotesNotFound = -3998;

// How grave a mail system's fault is: a trace is for nobody, a status for status line 1, an error for a box.
enum class MailSeverity { Trace = 2, Status = 3, Error = 5 };

enum class MailType { Vim = 1, Mapi = 2, Cmc = 3, Notes = 4 };

using PlainEntry = void (*)();

// Empty entries are missing; those marked * are there after a resolving that succeeded.
struct MapiTable {
    mapi::InitializeEntry Initialize = nullptr; // with the next, or neither
    mapi::UninitializeEntry Uninitialize = nullptr;
    mapi::LogonEntry Logon = nullptr;           // *
    mapi::LogoffEntry Logoff = nullptr;         // *
    mapi::SendMailEntry SendMail = nullptr;     // *
    mapi::AddressEntry Address = nullptr;       // *
    mapi::ReadMailEntry ReadMail = nullptr;     // *
    mapi::DeleteMailEntry DeleteMail = nullptr; // *
    PlainEntry AllocateBuffer = nullptr;        // the plain ones are only looked up
    PlainEntry QueryAllRows = nullptr;
    PlainEntry FreeAddressList = nullptr;
    mapi::FreeBufferEntry FreeBuffer = nullptr;   // *
    mapi::ResolveNameEntry ResolveName = nullptr; // *
    mapi::FindNextEntry FindNext = nullptr;       // *
    mapi::OpenExtendedEntry OpenExtended = nullptr;
    PlainEntry AllocateMore = nullptr;
    PlainEntry FreeRows = nullptr;
    PlainEntry OpenStreamOnFile = nullptr;
};

// The bridge to Notes. Every entry returns 0 for success; what it hands out is its own until its next call.
struct NotesTable {
    int (*Init)(const char* profile, const char* password) = nullptr;
    int (*Term)() = nullptr;
    int (*ReadMessage)(char* id, mapi::Message** message) = nullptr; // the one after that id, which is replaced
    int (*SendMessage)(mapi::Message* message) = nullptr;
    int (*DeleteMessage)(const char* id) = nullptr;
    int (*ClearFolderBySubject)(const char* folder, const char* subject) = nullptr;
    int (*DatabaseReopen)() = nullptr; // may be missing
    int (*PreInit)() = nullptr;
    int (*PostTerm)() = nullptr;
};

// The library of a mail system, and the key of WIN.INI's section [MAIL] that names it or, for the usual one, could.
struct MailLibraryName {
    std::string Name;
    std::string Key; // empty: nothing names it
    bool IsUsual = true;
};
MailLibraryName LibraryOf(MailType type);

// Loads the library of a mail system: of VIM, MAPI and CMC the one that section [MAIL] of WIN.INI names, or the usual
// one; of Notes the bridge, once nNOTES.DLL has been found on the search path, to which the Notes directory is added if
// need be. 0, or after a message -3998 or -4033.
StatusCode LoadMailLibrary(MailType type, std::unique_ptr<platform::Library>& library);

// Fill the table. 0, or -4033 after "Function %s missing from mail DLL".
StatusCode ResolveMapi(platform::Library& library, MapiTable& table);
StatusCode ResolveNotes(platform::Library& library, NotesTable& table);

} // namespace bv
