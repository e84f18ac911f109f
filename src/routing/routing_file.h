// The inward routing file, ROUTING.INI: to whom the server gives a fax that it receives. Three paragraphs hold the
// three kinds of rule:
//
//   [SENDERID]                                 by the sender's fax machine: records, one a sender
//   @44171123: "+44 171 123" "Smith & Co"
//   ANNA: BOB                                  messages for ANNA go to BOB
//   \(unaddressed): CARL
//   [SUBADDR]                                  by the sub-address that was sent
//   22: ANNA
//   [FORWARD]                                  from one user on to another
//   BOB: "" LAN-ANY "ANNA" DELETE
//
// A key that does not begin with a letter or a digit has a "\" before it. Lines that do not parse are skipped and stay.
#pragma once

#include <functional>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "routing/routing_lines.h"

namespace bv {

// Opens the routing file for reading, and first creates one without rules when there is none (status "Created new
// routing rules file (ROUTING.INI)"). Without a stream, a message has said why: the file cannot be created, opened or
// read (9011), or its header is not that of a routing file.
ControlStream OpenRoutingFile();

// Each hands the rules of its paragraph to the visitor, in file order. A sender's record without entries comes once,
// without an addressee. False when the paragraph is missing, after its message, or after 9011, when what was handed
// over is not all.
bool ReadSenderIdRules(ControlStream& file, const std::function<void(const SenderIdRule&)>& visit);
bool ReadSubAddressRules(ControlStream& file, const std::function<void(const SubAddressRule&)>& visit);
bool ReadForwardRules(ControlStream& file, const std::function<void(const ForwardRule&)>& visit);

// Whether the file has the paragraph of a kind; also when that cannot be read, which the kind's reader then says.
bool HasRoutingParagraph(ControlStream& file, RoutingKind kind);

// Each sets one rule, in the place of one with the same key, by one rewrite of the file, which is made when there is
// none. A sender's record line is always written anew. A line that has the key, but with a "\" that it does not need or
// without one, gives way to the new one. Status 470 and 471; sets SettingsChanged. False after a
// message: one of OpenRoutingFile, or 5000.
bool WriteSenderIdRule(const SenderIdRule& rule);
bool WriteSubAddressRule(const SubAddressRule& rule);
bool WriteForwardRule(const ForwardRule& rule);

// Each takes one rule away, however its key is escaped, with the messages above; nothing else of the file goes. Of a
// sender's record only the addressee's line goes; DeleteSenderRecord takes all its entries and then the record itself,
// in two rewrites, so that a failure between them leaves a record without entries and never entries without a record.
// Of several records with one key the first that is well formed is changed. Where there is nothing to take away, false
// after 9137.
bool DeleteSenderIdRule(const SenderIdRule& rule);
bool DeleteSenderRecord(const SenderIdRule& rule);
bool DeleteSubAddressRule(std::string_view subAddress);
bool DeleteForwardRule(std::string_view user);

} // namespace bv
