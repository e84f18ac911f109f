#include "lcr/link_actions.h"

#include <algorithm>
#include <utility>

#include "ctlfile/file_gate.h"
#include "ctlfile/whole_file.h"
#include "lcr/lcr_messages.h"
#include "lcr/lcr_uses.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

bool AgreeToNewLink() {
    return AskWarning("Changing the ID of a link will mean it becomes a new link, losing any run-time information.  "
                      "\n\nChange ID?");
}

// Without a list that can be read, anybody may be a user.
bool IsUser(std::string_view name) {
    if (name.empty() || IsMissing(PathOf(ServerFile::UserList))) return true;
    UserList list;
    return !list || list.Has(name, RecordKind::User) || !list.IsRead();
}

// Whether the values that have changed come back from the file; false after 9181.
bool IsKept(const LinkRecord& before, const LinkRecord& link) {
    LinkRecord asRead;
    ReadLink(LinkParagraph(link, {}), asRead);
    return std::ranges::all_of(LinkSettings(), [&](const LinkSetting& setting) {
        const std::string text = setting.Field.Text(link);
        const bool isKept = text == setting.Field.Text(asRead) || text == setting.Field.Text(before);
        if (!isKept) ShowError(kNotKeptBeside, setting.Field.Name(), ShownText(setting.Field.Rule, text));
        return isKept;
    });
}

std::size_t PlaceOf(const LinkEdit& edit, const LinkRecord* link) {
    return static_cast<std::size_t>(link - edit.Links.data());
}

// As the console says it.
bool Accept(LinkEdit& edit, std::optional<std::size_t> place, const LinkRecord& link) {
    const auto fault = FindLinkFault(edit, place, link);
    if (fault) ShowError(kFaultOf, fault->Key, fault->Message);
    return !fault && PutLink(edit, place, link);
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

bool ChangeLinks(const std::function<bool(LinkEdit& edit)>& change) {
    const ReplacedFile file = LinkFile();
    const FileGate gate(file.Path);
    if (!gate) ShowError(file.NotOpened, file.Path);
    LinkEdit edit;
    return gate && BeginLinkEdit(edit) && change(edit) && SaveLinkEdit(edit);
}

LinkRecord* FindLink(LinkTable& links, std::string_view identifier) {
    const auto isIt = [&](const LinkRecord& link) { return EqualFolded(link.Identifier, identifier); };
    const auto found = std::ranges::find_if(links, isIt);
    if (found != links.end()) return &*found;
    ShowError(kThereIsNo, "link", identifier);
    return nullptr;
}

std::optional<SettingFault> FindLinkFault(const LinkEdit& edit, std::optional<std::size_t> place,
                                          const LinkRecord& link) {
    LinkTable others = edit.Links;
    if (place) others.erase(others.begin() + static_cast<std::ptrdiff_t>(*place));
    return FaultOfLink(link, others, edit.Router);
}

bool AskDespiteRules(const std::string& identifier) {
    auto uses = FindLcrUses(LcrName::Server, {identifier});
    if (!uses) return false;
    for (Use& use : *uses) use.Widens = false; // without a server a rule takes no more faxes
    return AskDespiteUses(*uses, identifier);
}

bool PutLink(LinkEdit& edit, std::optional<std::size_t> place, LinkRecord link, const AgreeToLose& agree) {
    const LinkRecord before = place ? edit.Links[*place] : LinkRecord();
    if (place && link == before) return true;
    if (!IsKept(before, link)) return false;
    if (place && !EqualFolded(link.Identifier, before.Identifier)) {
        if (!agree(before.Identifier) || (!before.IsNew && !AgreeToNewLink())) return false;
        link.IsNew = link.WriteStatus = true;
    }
    if (!EqualFolded(link.AccountName, before.AccountName) && !IsUser(link.AccountName) &&
        !AskWarning(kKeepUnknownAccount, link.AccountName))
        return false;
    ShowStatus(place ? kModified : kAdded, "link", link.Identifier);
    if (place)
        edit.Links[*place] = std::move(link);
    else
        edit.Links.push_back(std::move(link));
    return true;
}

LinkRecord CloneOf(const LinkRecord& link) {
    LinkRecord clone = link;
    clone.IsNew = clone.WriteStatus = true;
    clone.ConnectionIsOn = clone.ResetStatus = false;
    clone.Place = -1;
    clone.Identifier.clear();
    if (clone.Description == link.Identifier) clone.Description.clear();
    return clone;
}

bool AddLink(LinkEdit& edit, const EnteredValues& values) {
    LinkRecord link = NewLink("");
    return EnterValues("links", LinkSettings(), values, link) && Accept(edit, {}, link);
}

bool ChangeLink(LinkEdit& edit, std::string_view identifier, const EnteredValues& values) {
    const LinkRecord* link = FindLink(edit.Links, identifier);
    if (link == nullptr) return false;
    LinkRecord changed = *link;
    return EnterValues("links", LinkSettings(), values, changed) &&
           (changed == *link || Accept(edit, PlaceOf(edit, link), changed));
}

bool RemoveLink(LinkEdit& edit, std::size_t place, const AgreeToLose& agree) {
    const std::string identifier = edit.Links.at(place).Identifier;
    if (!agree(identifier)) return false;
    ShowStatus(kDeleted, "link", identifier);
    edit.Links.erase(edit.Links.begin() + static_cast<std::ptrdiff_t>(place));
    return true;
}

bool RemoveLink(LinkEdit& edit, std::string_view identifier) {
    const LinkRecord* link = FindLink(edit.Links, identifier);
    return link != nullptr && RemoveLink(edit, PlaceOf(edit, link));
}

} // namespace bv
