// Who gets a received fax, as the rules of inward routing have it.
#pragma once

#include <string>
#include <vector>

#include "routing/inward_rules.h"

namespace bv {

// What a received fax brings along; each part may be empty.
struct ReceivedFax {
    std::string Sender; // identifier, however it is spelled
    std::string SubAddress;
    std::string Addressee; // user, group or special word; a fax without one is "(unaddressed)"
};

struct InwardStep {
    enum class Kind { BySubAddress, BySender, Addressed, Forwards, Copies, ComesBack };
    Kind What;
    std::string From; // sub-address, sender, addressee or user
    std::string To;   // the user who gets the fax; of ComesBack the way
};

// The rule of the sub-address and that of the sender, if there are such, and each user's forwarding from there on; with
// neither, the addressee's. Which of the two comes first is the server's affair. A way that comes back ends there. Of
// several rules for the same the first counts.
std::vector<InwardStep> TraceInward(const InwardRules& rules, const ReceivedFax& fax);

// A step in a sentence, and all of them; without any that no rule takes the fax.
std::string StepText(const InwardStep& step);
std::string TraceText(const std::vector<InwardStep>& steps);

// The word for a kind of step: "subaddr", "sender", "addressee", "move", "copy", "back".
std::string_view StepWord(InwardStep::Kind kind);

} // namespace bv
