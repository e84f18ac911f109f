#include "mailgw/mail_library.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ctlfile/paths.h"
#include "mailgw/notes_settings.h"
#include "mailgw/profile_file.h"
#include "platform/environment.h"
#include "shell/server_paths.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kNotesLibrary = "nNOTES.DLL";
constexpr int kError = static_cast<int>(MailSeverity::Error);

// One entry of a table: the name it is spoken of, the name it is exported by, and where it goes.
template <class Table>
struct EntryRow {
    std::string_view Name;
    std::string_view Export;
    bool IsRequired;
    bool (*Put)(Table& table, PlainEntry entry); // whether there is an entry
};

template <auto member, class Table>
bool PutEntry(Table& table, PlainEntry entry) {
    table.*member = reinterpret_cast<std::remove_reference_t<decltype(table.*member)>>(entry);
    return entry != nullptr;
}

template <auto member>
constexpr EntryRow<MapiTable> Required(std::string_view name) {
    return {name, name, true, PutEntry<member, MapiTable>};
}
template <auto member>
constexpr EntryRow<MapiTable> Optional(std::string_view name, std::string_view exported = {}) {
    return {name, exported.empty() ? name : exported, false, PutEntry<member, MapiTable>};
}
template <auto member>
constexpr EntryRow<NotesTable> Notes(std::string_view exported, bool isRequired = true) {
    return {exported.substr(0, exported.size() - 3), exported, isRequired, PutEntry<member, NotesTable>};
}

constexpr EntryRow<MapiTable> kMapiRows[] = {
    Optional<&MapiTable::Initialize>("MAPIInitialize"),
    Optional<&MapiTable::Uninitialize>("MAPIUninitialize"),
    Required<&MapiTable::Logon>("MAPILogon"),
    Required<&MapiTable::Logoff>("MAPILogoff"),
    Required<&MapiTable::SendMail>("MAPISendMail"),
    Required<&MapiTable::Address>("MAPIAddress"),
    Required<&MapiTable::ReadMail>("MAPIReadMail"),
    Required<&MapiTable::DeleteMail>("MAPIDeleteMail"),
    Optional<&MapiTable::AllocateBuffer>("MAPIAllocateBuffer"),
    Optional<&MapiTable::QueryAllRows>("HrQueryAllRows", "HrQueryAllRows@24"),
    Optional<&MapiTable::FreeAddressList>("FreePadrlist", "FreePadrlist@4"),
    Required<&MapiTable::FreeBuffer>("MAPIFreeBuffer"),
    Required<&MapiTable::ResolveName>("MAPIResolveName"),
    Required<&MapiTable::FindNext>("MAPIFindNext"),
    Optional<&MapiTable::OpenExtended>("ScMAPIXFromSMAPI"),
    Optional<&MapiTable::AllocateMore>("MAPIAllocateMore"),
    Optional<&MapiTable::FreeRows>("FreeProws", "FreeProws@4"),
    Optional<&MapiTable::OpenStreamOnFile>("OpenStreamOnFile"),
};

constexpr EntryRow<NotesTable> kNotesRows[] = {
    Notes<&NotesTable::Init>("MailInitLNotesDLL"),
    Notes<&NotesTable::Term>("MailTerminateLNotesDLL"),
    Notes<&NotesTable::ReadMessage>("MailReadMessageLNotesDLL"),
    Notes<&NotesTable::SendMessage>("MailSendMessageLNotesDLL"),
    Notes<&NotesTable::DeleteMessage>("MailDeleteMessageLNotesDLL"),
    Notes<&NotesTable::ClearFolderBySubject>("MailClearFolderBySubjectLNotesDLL"),
    Notes<&NotesTable::DatabaseReopen>("MailLNotesDatabaseReopenDLL", false),
    Notes<&NotesTable::PreInit>("MailLNotesPreInitDLL"),
    Notes<&NotesTable::PostTerm>("MailLNotesPostTermDLL"),
};

template <class Table, std::size_t N>
StatusCode Resolve(platform::Library& library, Table& table, const EntryRow<Table> (&rows)[N]) {
    for (const auto& [name, exported, isRequired, put] : rows) {
        if (put(table, library.Entry(std::string(exported)))) continue;
        const MailSeverity severity = isRequired ? MailSeverity::Status : MailSeverity::Trace;
        ReportMessage(static_cast<int>(severity), "Function %s missing from mail DLL", name);
        if (isRequired) return kMailLibraryFailed;
    }
    return kDone;
}

// A value of section [Mail] of the user's WIN.INI: the system's answer or, where it has none, the file's.
std::string MailText(const std::string& key) {
    const std::string section = "Mail";
    const std::optional<std::string> known = platform::TheEnvironment().ProfileText(section, key);
    return known ? *known : ReadProfileText("WIN.INI", section, key);
}

// The library that the first of the keys with a value names, or the usual one.
MailLibraryName NamedLibrary(std::initializer_list<const char*> keys, const char* usual) {
    for (const std::string key : keys)
        if (std::string name = MailText(key); !name.empty()) return {std::move(name), key, false};
    return {usual, *(keys.end() - 1), true};
}

// Whether the file stands in the current directory or one of the search path.
bool IsOnSearchPath(std::string_view name) {
    platform::Environment& environment = platform::TheEnvironment();
    const std::string list = environment.CurrentDirectory() + ';' + environment.Variable("PATH").value_or("");
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(';', start), list.size());
        const std::string directory = WithBackslash(std::string_view(list).substr(start, end - start));
        if (!directory.empty() && FileExists(directory + std::string(name))) return true;
        start = end + 1;
    }
    return false;
}

bool FindNotes() {
    if (IsOnSearchPath(kNotesLibrary)) return true;
    AddNotesDirectoryToPath();
    if (IsOnSearchPath(kNotesLibrary)) return true;
    ReportMessage(kError, "Could not find file '%s'. Try modifying your path environment variable manually",
                  kNotesLibrary);
    return false;
}

} // namespace

MailLibraryName LibraryOf(MailType type) {
    switch (type) {
    case MailType::Vim: return NamedLibrary({"VIMDLLName32"}, "VIM32.DLL");
    case MailType::Mapi: return NamedLibrary({"MAPIDLLName32", "MAPIDLL32"}, "MAPI32.DLL");
    case MailType::Cmc: return NamedLibrary({"CMCDLLName32"}, "CMC32.DLL");
    case MailType::Notes: break;
    }
    return {"BVLNAPI.DLL", "", true};
}

StatusCode LoadMailLibrary(MailType type, std::unique_ptr<platform::Library>& library) {
    if (type == MailType::Notes && !FindNotes()) return kNotesNotFound;
    const std::string name = LibraryOf(type).Name;
    library = platform::TheLibraries().Load(name);
    if (library) return kDone;
    ReportMessage(kError, "Unable to load mail DLL %s (error #%d)", name, platform::TheLibraries().LastError());
    return kMailLibraryFailed;
}

StatusCode ResolveMapi(platform::Library& library, MapiTable& table) {
    table = {};
    const StatusCode status = Resolve(library, table, kMapiRows);
    if (table.Initialize == nullptr || table.Uninitialize == nullptr) {
        table.Initialize = nullptr;
        table.Uninitialize = nullptr;
    }
    return status;
}

StatusCode ResolveNotes(platform::Library& library, NotesTable& table) {
    table = {};
    return Resolve(library, table, kNotesRows);
}

} // namespace bv
