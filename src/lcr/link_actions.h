// Links as a person adds, changes and deletes them: what may be entered, what is asked first, and what is said.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
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

// Reads, changes and writes them while nobody else can, for who has not looked at them before. False after a message,
// or when the change is.
bool ChangeLinks(const std::function<bool(LinkEdit& edit)>& change);

// The link of that identifier, in any case; null, after 9130, without one.
LinkRecord* FindLink(LinkTable& links, std::string_view identifier);

// The first rule that the link breaks at its place, behind the others without one (FaultOfLink).
std::optional<SettingFault> FindLinkFault(const LinkEdit& edit, std::optional<std::size_t> place,
                                          const LinkRecord& link);

// Asked before a link's identifier goes or becomes another one: whether it may, whatever names it. AskDespiteRules
// leaves the rules as they are (AskDespiteUses).
using AgreeToLose = std::function<bool(const std::string& identifier)>;
bool AskDespiteRules(const std::string& identifier);

// Puts a link that has no fault at its place among the links, behind the others without one. One that gets another
// identifier is a new link: it is asked about what names it, and whether its run-time information may go. An account
// that is new to it and no user is asked about (9343). False, with the links as they were, after the answer No, 9181
// for a changed value that the file would give back differently, or a message of the files. A link in which nothing
// changes is asked nothing, and nothing is said of it. Status "Added link %s" or "Modified link %s".
bool PutLink(LinkEdit& edit, std::optional<std::size_t> place, LinkRecord link,
             const AgreeToLose& agree = AskDespiteRules);

// The link as a new one without a name.
LinkRecord CloneOf(const LinkRecord& link);

// Each is false, with the links as they were, after a message or a question answered No. A new link begins as NewLink
// has it, without a name. Refused are a value that is not taken (EnterValues) and a fault (FindLinkFault); then as
// PutLink. Before a link goes it is asked about what names it.
//
// Status "Deleted link %s".
bool AddLink(LinkEdit& edit, const EnteredValues& values);
bool ChangeLink(LinkEdit& edit, std::string_view identifier, const EnteredValues& values);
bool RemoveLink(LinkEdit& edit, std::string_view identifier);
bool RemoveLink(LinkEdit& edit, std::size_t place, const AgreeToLose& agree = AskDespiteRules);

} // namespace bv
