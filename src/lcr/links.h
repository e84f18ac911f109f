// Links to remote fax servers: the database LINK.INI. A paragraph also holds what the server notes about the link at
// run time; that, and what the program does not know, outlives every save.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/key_fields.h"
#include "ctlfile/replaced_file.h"
#include "lcr/priority.h"
#include "lcr/router_settings.h"

namespace bv {

enum class LinkType : std::uint16_t { SharedDirectory, Email, FastEmail };
template <>
struct ChoiceWords<LinkType> {
    static constexpr std::string_view kWords[] = {"WAN", "EMAIL", "EMAIL_FAST"};
};

// On, off or not set, which is not written.
using Switch = std::optional<bool>;

// One link. The limits hold for what is entered; a longer text in the file is kept whole.
struct LinkRecord {
    std::string Description;     // at most 29 characters; the identifier in place of an empty one
    std::string Identifier;      // at most 33 characters, unique among the links
    int Place = -1;              // among the links of the file when it was read, from 0
    bool IsNew = false;          // has no paragraph in the file yet
    bool WriteStatus = false;    // a new link: with the first run-time status
    bool ConnectionIsOn = false; // an existing link: with "ConnectionStatus: ON"
    bool ResetStatus = false;    // an existing link: without its run-time status
    LinkType Type = LinkType::SharedDirectory;
    std::string Address;     // at most 255 characters: a directory "\\server\share\..." or an e-mail address
    std::string AccountName; // at most 29 characters: the user who sends on what is received
    std::string Password;    // at most 99 characters, stored as it is
    Switch ReceiveEnabled;
    Switch SendEnabled;
    HourMinute Delay;
    HourMinute WatchdogFrequency;
    std::uint16_t MaxOutboundPriority = kUrgentPriority; // bits, of which the lowest is written; 0: not set
    std::uint16_t MaxInboundPriority = kUrgentPriority;
    Switch RejectsHigherPriority;

    friend bool operator==(const LinkRecord&, const LinkRecord&) = default;
};
using LinkTable = std::vector<LinkRecord>; // in file order

// LINK.INI in the database directory.
ReplacedFile LinkFile();

// The keys of a link's paragraph, in the order in which they are written.
struct LinkKey {
    KeyField<LinkRecord> Field;
    bool IsAlwaysWritten = false; // also without a value
};
std::span<const LinkKey> LinkKeys();

// What is shown and entered: the identifier and the description apart, and the other keys.
struct LinkSetting {
    KeyField<LinkRecord> Field;
};
std::span<const LinkSetting> LinkSettings();

// A link that is to be made: it receives and sends.
LinkRecord NewLink(std::string_view identifier);

// What the server notes of a link at run time: the values of these keys, in their order; empty for one that is not
// there.
inline constexpr std::size_t kLinkNotes = 5;
using LinkNotes = std::array<std::string, kLinkNotes>;
std::span<const std::string_view> LinkNoteKeys();

// "LINKUP", with "connection OFF" behind it when that is noted as not on; "-" when the server has noted nothing.
std::string DescribeState(const LinkNotes& notes);

// The notes of the links that can be read, by their places in the file, and how many paragraphs are no such link. False
// as ReadLinks.
struct NotedLinks {
    std::vector<LinkNotes> Notes;
    std::size_t Unreadable = 0;
};
bool ReadLinkNotes(NotedLinks& links);

// Reads the lines of a "[LINK]" paragraph. False when it has no identifier, no address or no known type.
bool ReadLink(std::string_view paragraph, LinkRecord& link);

// All links that can be read. ReadLinks finds none without the file. LoadLinks, for who is going to save them, makes a
// file with only the header, or offers to put in place what a save that was cut off has left. False after "File error:
// couldn't open", message 9011 or 5004, or when that is not wanted. The stamp is that of the links, whatever the server
// notes beside them.
bool ReadLinks(LinkTable& links);
bool LoadLinks(LinkTable& links, TextStamp& stamp);

// The lines of a link and the empty line behind them. The old paragraph's lines, up to an empty one, that the program
// does not write itself are kept.
std::string LinkParagraph(const LinkRecord& link, std::string_view oldParagraph);

// Writes all links to Link.new and puts it in the place of Link.ini. Paragraphs of Link.ini that are no link that can
// be read are kept at the end. When its links are not those that LoadLinks has read, 9353 asks whether they are to be
// overwritten. Sets SettingsChanged. False after "File error: couldn't open", message 5004 or the answer No.
bool SaveLinks(const LinkTable& links, const TextStamp& stamp);

// The first rule that a link breaks, in the order of the rules; none when it breaks none. The other links are those
// without it.
std::optional<SettingFault> FaultOfLink(const LinkRecord& link, const LinkTable& others, const RouterSettings& router);

} // namespace bv
