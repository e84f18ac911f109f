#include "lcr/link_actions.h"

#include "lcr/lcr_uses.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool AgreeToUses(std::string_view identifier) {
    const auto uses = FindLcrUses(LcrName::Server, identifier);
    return uses && AskDespiteUses(*uses, identifier);
}

} // namespace

bool AgreeToNewLink(const LinkRecord& link, LinkRecord& changed) {
    changed.IsNew = changed.WriteStatus = true;
    return AgreeToUses(link.Identifier) &&
           AskWarning("Changing the ID of a link will mean it becomes a new link, losing any run-time information.  "
                      "\n\nChange ID?");
}

bool RemoveLink(LinkTable& links, LinkTable::iterator link) {
    if (!AgreeToUses(link->Identifier)) return false;
    ShowStatus("Deleted link %s", link->Identifier);
    links.erase(link);
    return true;
}

} // namespace bv
