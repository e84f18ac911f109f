// The links as a list shows them.
#pragma once

#include <string>

#include "lcr/link_actions.h"
#include "lcr/rule.h"
#include "shell/row_table.h"

namespace bv {

// What other places say of the links while they are edited.
struct LinkFacts {
    NotedLinks Noted;
    RuleList Rules;
};

// False after a message.
bool ReadLinkFacts(LinkFacts& facts);

enum LinkColumn : int {
    kLinkId,
    kLinkDescription,
    kLinkType,
    kLinkAddress,
    kLinkSend,
    kLinkReceive,
    kLinkDelay,
    kLinkState,  // at run time, as the server has noted it
    kLinkRules,  // how many name it
    kLinkRemark, // the first rule that it breaks
    kLinkColumns
};
void FillLinkRows(const LinkEdit& edit, const LinkFacts& facts, RowTable& rows);

// Where the server's notes of a link are; null for a new one.
const LinkNotes* NotesOf(const LinkFacts& facts, const LinkRecord& link);

// 9345, when there are paragraphs that are no link; else nothing.
std::string DescribeUnreadable(const LinkFacts& facts);

} // namespace bv
