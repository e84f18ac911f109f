// The published interface of Simple MAPI, as far as it is used: structures as the libraries lay them out, flags, and
// the types of the entries. (On 64-bit Windows, entries have the one calling convention of the system.)
#pragma once

#include <cstddef>
#include <cstdint>

namespace bv::mapi {

using Handle = std::uintptr_t; // of a session or a window; 0 is none
using Flags = std::uint32_t;
using Error = std::uint32_t; // 0 is success

struct FileDescription {
    std::uint32_t Reserved = 0;
    Flags FileFlags = 0;
    std::uint32_t Position = 0; // in the note's text, or kNoPosition
    char* PathName = nullptr;
    char* FileName = nullptr;
    void* FileType = nullptr;
};
inline constexpr std::uint32_t kNoPosition = 0xFFFFFFFF;

struct RecipientDescription {
    std::uint32_t Reserved = 0;
    std::uint32_t Class = 0;
    char* Name = nullptr;
    char* Address = nullptr;
    std::uint32_t EntryIdSize = 0; // bytes
    void* EntryId = nullptr;
};

struct Message {
    std::uint32_t Reserved = 0;
    char* Subject = nullptr;
    char* NoteText = nullptr;
    char* MessageType = nullptr;
    char* DateReceived = nullptr; // "YYYY/MM/DD HH:MM"
    char* ConversationId = nullptr;
    Flags MessageFlags = 0;
    RecipientDescription* Originator = nullptr;
    std::uint32_t RecipientCount = 0;
    RecipientDescription* Recipients = nullptr;
    std::uint32_t FileCount = 0;
    FileDescription* Files = nullptr;
};

static_assert(sizeof(void*) != 8 || (sizeof(FileDescription) == 40 && sizeof(RecipientDescription) == 40));
static_assert(sizeof(void*) != 8 || sizeof(Message) == 96);

inline constexpr Flags kLogonUi = 0x1;
inline constexpr Flags kNewSession = 0x2;
inline constexpr Flags kDialog = 0x8;
inline constexpr Flags kEnvelopeOnly = 0x40;
inline constexpr Flags kPeek = 0x80; // do not mark as read
inline constexpr Flags kGuaranteeFifo = 0x100;
inline constexpr Flags kLongMessageId = 0x4000;

inline constexpr Error kNoMessages = 16;
inline constexpr std::size_t kMessageIdSize = 512; // with its terminator

using InitializeEntry = std::int32_t (*)(void* options); // negative is failure
using UninitializeEntry = void (*)();
using LogonEntry = Error (*)(Handle window, char* profile, char* password, Flags, std::uint32_t reserved,
                             Handle* session);
using LogoffEntry = Error (*)(Handle session, Handle window, Flags, std::uint32_t reserved);
using SendMailEntry = Error (*)(Handle session, Handle window, Message*, Flags, std::uint32_t reserved);
using AddressEntry = Error (*)(Handle session, Handle window, char* caption, std::uint32_t editFields, char* labels,
                               std::uint32_t count, RecipientDescription*, Flags, std::uint32_t reserved,
                               std::uint32_t* newCount, RecipientDescription** chosen);
using ReadMailEntry = Error (*)(Handle session, Handle window, char* id, Flags, std::uint32_t reserved, Message**);
using DeleteMailEntry = Error (*)(Handle session, Handle window, char* id, Flags, std::uint32_t reserved);
using FindNextEntry = Error (*)(Handle session, Handle window, char* type, char* seedId, Flags, std::uint32_t reserved,
                                char* id);
using ResolveNameEntry = Error (*)(Handle session, Handle window, char* name, Flags, std::uint32_t reserved,
                                   RecipientDescription**);
using FreeBufferEntry = Error (*)(void* buffer);

// An object of extended MAPI, of which only its life is managed here.
struct ExtendedSession {
    struct Methods {
        std::int32_t (*QueryInterface)(ExtendedSession*, const void* id, void** object);
        std::uint32_t (*AddReference)(ExtendedSession*);
        std::uint32_t (*Release)(ExtendedSession*);
    };
    Methods* Table = nullptr;
};
using OpenExtendedEntry = std::int32_t (*)(Handle session, Flags, const void* interfaceId, ExtendedSession**);

} // namespace bv::mapi
