// Links as a person adds, changes and deletes them: what may be entered, what is asked first, and what is said.
#pragma once

#include <string_view>

#include "ctlfile/entered_values.h"
#include "lcr/links.h"

namespace bv {

// The links while they are edited, which one administrator does at a time (RunLcrEditor).
struct LinkEdit {
    LinkTable Links;
    RouterSettings Router; // by which links are judged
    LinkTable Before;      // the links as they were read
    TextStamp Stamp;
};

// Reads them. False after a message: also without general settings, which a link needs.
bool BeginLinkEdit(LinkEdit& edit);

// Writes them, unless they are as they were read. False after a message of SaveLinks.
bool SaveLinkEdit(const LinkEdit& edit);

// The link of that identifier, in any case; null, after 9130, without one.
LinkRecord* FindLink(LinkTable& links, std::string_view identifier);

// Each is false, with the links as they were, after a message or a question answered No. A new link begins as NewLink
// has it, without a name. Refused are a value that is not taken (EnterValues), one that the file would give back
// differently, and a link that breaks a rule (FaultOfLink). A link that gets another identifier is a new link and
// leaves the rules that name it: it is asked about the rules (AskDespiteUses), and whether its run-time information may
// go. A link in whose values nothing changes is asked nothing.
//
// Status "Added link %s", "Modified link %s" or "Deleted link %s".
bool AddLink(LinkEdit& edit, const EnteredValues& values);
bool ChangeLink(LinkEdit& edit, std::string_view identifier, const EnteredValues& values);
bool RemoveLink(LinkEdit& edit, std::string_view identifier);

} // namespace bv
