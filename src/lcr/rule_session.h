// The rules while somebody edits them: read, changed step by step, and saved or abandoned. Every change is written to
// LCRRULES.NEW before it counts, so that none is lost when the program ends.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "lcr/rule_edit.h"
#include "lcr/rule_file.h"
#include "lcr/rule_references.h"
#include "lcr/time_range.h"

namespace bv {

class RuleSession {
  public:
    // Loads the names that rules may refer to, the off-peak period (warning 5328 without one) and the rules
    // (OpenRules), and takes out of these what is no longer defined (warning 5330). False after a message.
    bool Open();

    [[nodiscard]] const RuleList& Rules() const { return rules_; }
    [[nodiscard]] const RuleNames& Names() const { return names_; }
    [[nodiscard]] const std::optional<TimeRange>& Offpeak() const { return offpeak_; }

    // Whether there is anything to be saved: changes, recovered rules, or references that were taken out.
    [[nodiscard]] bool IsChanged() const { return isUnsaved_ || depth_ != 0; }

    // What a rule has lost that was its last destination, user or server, until it is edited; else empty.
    [[nodiscard]] const std::string& LossOf(std::size_t place) const { return losses_.at(place); }

    // Takes an edited rule into the list (CheckRule); without a place, a new one at the end. Refused also, after a
    // message, when the pending file cannot be written: then the list is as it was, here and in all that follow.
    RuleCheck Accept(std::optional<std::size_t> place, RoutingRule& edited, RuleLeaving leaving, RuleField& wrong);

    // Status 9386 says how a deleted rule comes back.
    bool Delete(std::size_t place);

    // Puts a copy of the rule, of another description, below it.
    bool Clone(std::size_t place);

    // To where another rule is. True when it is there already, and for a place behind the last one.
    bool Move(std::size_t place, std::size_t to);

    // Another list in place of this one.
    bool Replace(RuleList rules);

    // Takes back the last of up to 20 changes. The place to look at; none when nothing was taken back.
    [[nodiscard]] bool CanUndo() const { return !undo_.empty(); }
    std::optional<std::size_t> Undo();

    // Saves what is changed: names what is no longer defined now and asks 9135 whether to take it out; asks 9380 about
    // rules that have lost their last reference, and 9377 when the file is no longer as it was read. False after a
    // message or a No.
    bool Save();

    // Deletes the pending changes.
    static void Abandon() { AbandonRules(false); }

  private:
    // What takes a list to the next one.
    struct Step {
        enum class Kind { Insert, Erase, Replace, Move, ReplaceAll };
        Kind What;
        std::size_t Place = 0;
        std::size_t To = 0;
        RuleList Rules = {}; // one, or all
        std::vector<std::string> Losses = {};
    };
    Step Perform(Step step);
    bool Change(Step step);
    [[nodiscard]] bool Keep() const;
    [[nodiscard]] bool AgreesToLosses() const;
    bool AgreesToOverwrite();

    RuleNames names_;
    std::optional<TimeRange> offpeak_;
    RuleList rules_;
    std::vector<std::string> losses_; // of each rule
    TextStamp stamp_;                 // of the file
    bool isUnsaved_ = false;          // apart from the changes
    int depth_ = 0;                   // changes since the last save, less those taken back
    std::deque<Step> undo_;
};

} // namespace bv
