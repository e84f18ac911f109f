// LCRRULES.INI in the database directory: a paragraph "[RULE]" for each routing rule, in the list's order. Changes are
// gathered in LCRRULES.NEW, which stays behind when the program ends before they are saved and is offered for recovery
// at the next opening.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "ctlfile/control_stream.h"
#include "ctlfile/replaced_file.h"
#include "lcr/rule.h"

namespace bv {

std::string RulesPath();
std::string PendingRulesPath();

// Reads every rule of an open file from its start. A paragraph ends at an empty line. The first block of lines of each
// key counts; comments, lines with other keys and further blocks are kept as other lines. Text between the paragraphs
// is passed over. Shows nothing.
RuleList LoadRules(ControlStream& file);

// The rule's paragraph, the empty line at its end included.
std::string RuleText(const RoutingRule& rule);

// Whether the rule, once written, reads back as the same.
bool IsKeptByFile(const RoutingRule& rule);

// Writes the list to LCRRULES.NEW, where it waits to be saved. False after "File error: couldn't open" and the path, or
// after 5000, which names the file.
bool KeepRulesPending(const RuleList& rules);

// Puts the list in the place of LCRRULES.INI, which must be as OpenRules has read it, and sets SettingsChanged. False
// as above, or after 9025.
bool SaveRules(const RuleList& rules, const TextStamp& stamp);

// By which the list is known again once it is saved.
TextStamp StampOfSaved(const RuleList& rules);

// Whether LCRRULES.INI is no longer as it was read. False when it cannot be read, too.
bool AreChangedSince(const TextStamp& stamp, TextStamp& now);

// How far the file has come that is saved before the rules.
enum class FileBefore { AsItWas, HalfDone, InPlace };

// Saves rules that go with another file: they wait in LCRRULES.NEW while that one is saved, so that a program that ends
// between the two loses neither, and go on waiting when they cannot be saved then. Where the other file stays as it
// was, they wait no longer. False after a message of either, or with nothing done after 9025 of KeepRulesPending.
bool SaveRulesBehind(const RuleList& rules, const TextStamp& stamp, const std::function<FileBefore()>& saveOther);

// What an earlier run has left of its changes. One that ended while it wrote them has not ended the last line, or not
// even written the file's header.
enum class PendingRules { None, Whole, CutOff, Unreadable };

// Shows nothing.
PendingRules LookForPendingRules();

// Whether the rules can be changed on the way: no changes of an earlier session wait for their save. Shows nothing.
bool AreRulesFree();

// Puts pending changes that are whole in the place of LCRRULES.INI, which is kept as LCRRULES.OLD, or deletes them.
// False after a message.
bool RecoverPendingRules();
bool DropPendingRules();

struct OpenedRules {
    RuleList Rules;
    TextStamp Stamp;          // of LCRRULES.INI
    bool IsRecovered = false; // they are the pending changes and not saved yet
};

// Loads the rules to be edited. Pending changes of an earlier run are asked about: Yes loads them, No deletes them;
// those that were cut off are passed over after warning 9167. Warning 9168 says that text outside the rules will go
// with the next save. Without any file there are no rules. None after 413 or
// 9011: there are rules, but they could not be read.
std::optional<OpenedRules> OpenRules();

// Loads the saved rules to be looked at, or the pending ones, after a warning, when a saving was interrupted and they
// are all there is. None as above.
std::optional<RuleList> ReadRules();

// Loads pending changes that are whole; none after a message, 9378 when there are none.
std::optional<RuleList> ReadPendingRules();

// Deletes the pending changes; of a changed list only when that is wanted: asks 5331, "This will mean all changes will
// be lost.  Lose changes?". False when it is not.
bool AbandonRules(bool isChanged);

} // namespace bv
