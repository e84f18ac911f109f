// Holds simple_mapi.h to the system's own header of Simple MAPI: sizes, places and values.
#include <windows.h>

#include <mapi.h>

#include <array>
#include <cstddef>

#include "mailgw/simple_mapi.h"

namespace bv::mapi {
namespace {

#define BV_SAME_FIELD(Theirs, theirField, Ours, ourField)                                                              \
    static_assert(offsetof(Theirs, theirField) == offsetof(Ours, ourField) &&                                          \
                  sizeof(Theirs::theirField) == sizeof(Ours::ourField))

BV_SAME_FIELD(MapiFileDesc, flFlags, FileDescription, FileFlags);
BV_SAME_FIELD(MapiFileDesc, nPosition, FileDescription, Position);
BV_SAME_FIELD(MapiFileDesc, lpszPathName, FileDescription, PathName);
BV_SAME_FIELD(MapiFileDesc, lpszFileName, FileDescription, FileName);
BV_SAME_FIELD(MapiFileDesc, lpFileType, FileDescription, FileType);
BV_SAME_FIELD(MapiRecipDesc, ulRecipClass, RecipientDescription, Class);
BV_SAME_FIELD(MapiRecipDesc, lpszName, RecipientDescription, Name);
BV_SAME_FIELD(MapiRecipDesc, lpszAddress, RecipientDescription, Address);
BV_SAME_FIELD(MapiRecipDesc, ulEIDSize, RecipientDescription, EntryIdSize);
BV_SAME_FIELD(MapiRecipDesc, lpEntryID, RecipientDescription, EntryId);
BV_SAME_FIELD(MapiMessage, lpszSubject, Message, Subject);
BV_SAME_FIELD(MapiMessage, lpszNoteText, Message, NoteText);
BV_SAME_FIELD(MapiMessage, lpszMessageType, Message, MessageType);
BV_SAME_FIELD(MapiMessage, lpszDateReceived, Message, DateReceived);
BV_SAME_FIELD(MapiMessage, lpszConversationID, Message, ConversationId);
BV_SAME_FIELD(MapiMessage, flFlags, Message, MessageFlags);
BV_SAME_FIELD(MapiMessage, lpOriginator, Message, Originator);
BV_SAME_FIELD(MapiMessage, nRecipCount, Message, RecipientCount);
BV_SAME_FIELD(MapiMessage, lpRecips, Message, Recipients);
BV_SAME_FIELD(MapiMessage, nFileCount, Message, FileCount);
BV_SAME_FIELD(MapiMessage, lpFiles, Message, Files);
static_assert(sizeof(MapiFileDesc) == sizeof(FileDescription));
static_assert(sizeof(MapiRecipDesc) == sizeof(RecipientDescription));
static_assert(sizeof(MapiMessage) == sizeof(Message));

static_assert(kLogonUi == MAPI_LOGON_UI && kNewSession == MAPI_NEW_SESSION && kDialog == MAPI_DIALOG);
static_assert(kEnvelopeOnly == MAPI_ENVELOPE_ONLY && kPeek == MAPI_PEEK && kGuaranteeFifo == MAPI_GUARANTEE_FIFO);
static_assert(kLongMessageId == MAPI_LONG_MSGID && kNoMessages == MAPI_E_NO_MESSAGES);

// The sizes of what an entry returns and takes.
template <class Result, class... Arguments>
constexpr auto Shape(Result (*)(Arguments...)) {
    return std::array<std::size_t, 1 + sizeof...(Arguments)>{sizeof(Result), sizeof(Arguments)...};
}
static_assert(Shape(LPMAPILOGON()) == Shape(LogonEntry()));
static_assert(Shape(LPMAPILOGOFF()) == Shape(LogoffEntry()));
static_assert(Shape(LPMAPISENDMAIL()) == Shape(SendMailEntry()));
static_assert(Shape(LPMAPIADDRESS()) == Shape(AddressEntry()));
static_assert(Shape(LPMAPIREADMAIL()) == Shape(ReadMailEntry()));
static_assert(Shape(LPMAPIDELETEMAIL()) == Shape(DeleteMailEntry()));
static_assert(Shape(LPMAPIFINDNEXT()) == Shape(FindNextEntry()));
static_assert(Shape(LPMAPIRESOLVENAME()) == Shape(ResolveNameEntry()));
static_assert(Shape(LPMAPIFREEBUFFER()) == Shape(FreeBufferEntry()));

} // namespace
} // namespace bv::mapi
