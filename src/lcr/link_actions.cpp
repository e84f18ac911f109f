#include "lcr/link_actions.h"

#include <algorithm>

#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool AgreeToUses(std::string_view identifier) {
    const auto uses = FindLcrUses(LcrName::Server, {identifier});
    return uses && AskDespiteUses(*uses, identifier);
}

bool AgreeToNewIdentifier(std::string_view identifier) {
    return AgreeToUses(identifier) &&
           AskWarning("Changing the ID of a link will mean it becomes a new link, losing any run-time information.  "
                      "\n\nChange ID?");
}

// Whether the link with these values can stand beside the others; false after a message.
bool CheckLink(const LinkRecord& link, const LinkTable& others, const RouterSettings& router,
               const EnteredValues& values) {
    if (const auto fault = FaultOfLink(link, others, router)) {
        ShowError(kFaultOf, fault->Key, fault->Message);
        return false;
    }
    LinkRecord asRead;
    ReadLink(LinkParagraph(link, {}), asRead);
    return AreKept(LinkSettings(), values, link, asRead);
}

} // namespace

bool BeginLinkEdit(LinkEdit& edit) {
    edit = {};
    const RouterReading reading = ReadRouterSettings(edit.Router);
    if (reading == RouterReading::NotConfigured)
        ShowError("Unable to load general settings.  Please configure LCR 'General Settings' before proceeding");
    if (reading != RouterReading::Done || !LoadLinks(edit.Links, edit.Stamp)) return false;
    edit.Before = edit.Links;
    return true;
}

bool SaveLinkEdit(const LinkEdit& edit) { return edit.Links == edit.Before || SaveLinks(edit.Links, edit.Stamp); }

LinkRecord* FindLink(LinkTable& links, std::string_view identifier) {
    const auto isIt = [&](const LinkRecord& link) { return EqualFolded(link.Identifier, identifier); };
    const auto found = std::ranges::find_if(links, isIt);
    if (found != links.end()) return &*found;
    ShowError(kThereIsNo, "link", identifier);
    return nullptr;
}

bool AddLink(LinkEdit& edit, const EnteredValues& values) {
    LinkRecord link = NewLink("");
    if (!EnterValues("links", LinkSettings(), values, link) || !CheckLink(link, edit.Links, edit.Router, values))
        return false;
    edit.Links.push_back(link);
    ShowStatus("Added link %s", link.Identifier);
    return true;
}

bool ChangeLink(LinkEdit& edit, std::string_view identifier, const EnteredValues& values) {
    LinkRecord* link = FindLink(edit.Links, identifier);
    if (link == nullptr) return false;
    LinkRecord changed = *link;
    if (!EnterValues("links", LinkSettings(), values, changed)) return false;
    if (changed == *link) return true;
    LinkTable others = edit.Links;
    others.erase(others.begin() + (link - edit.Links.data()));
    if (!CheckLink(changed, others, edit.Router, values)) return false;
    if (!EqualFolded(changed.Identifier, link->Identifier)) {
        changed.IsNew = changed.WriteStatus = true;
        if (!AgreeToNewIdentifier(link->Identifier)) return false;
    }
    *link = changed;
    ShowStatus("Modified link %s", link->Identifier);
    return true;
}

bool RemoveLink(LinkEdit& edit, std::string_view identifier) {
    const LinkRecord* link = FindLink(edit.Links, identifier);
    if (link == nullptr || !AgreeToUses(link->Identifier)) return false;
    ShowStatus("Deleted link %s", link->Identifier);
    edit.Links.erase(edit.Links.begin() + (link - edit.Links.data()));
    return true;
}

} // namespace bv
