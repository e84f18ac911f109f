#include "lcr/router_actions.h"

#include <algorithm>
#include <utility>

#include "ctlfile/merge.h"
#include "lcr/lcr_messages.h"
#include "lcr/link_actions.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr MessageWith<0> kChanged = "Changed the general settings of routing";

void EnableKinds(const EnteredValues& values, RouterSettings& settings) {
    if (HasKey(values, "EmailLoginName") && !HasKey(values, "EmailEnabled"))
        settings.EmailEnabled = !settings.EmailLoginName.empty();
    if (HasKey(values, "WanInboxDirectory") && !HasKey(values, "WanEnabled"))
        settings.WanEnabled = !settings.WanInboxDirectory.empty();
}

// Whether the settings can be saved; false after a message.
bool CheckRouter(const RouterSettings& settings, const LinkTable& links) {
    const auto fault = FindRouterFault(settings, links);
    if (fault) ShowError(kFaultOf, fault->Key, fault->Message);
    return !fault;
}

bool DependsOn(const LinkRecord& link, bool isShared) { return (link.Type == LinkType::SharedDirectory) == isShared; }

// Without a name there is none that rules could have.
bool AgreeToRename(const RouterSettings& before, const RouterSettings& after) {
    return before.LocalServerId.empty() || EqualFolded(before.LocalServerId, after.LocalServerId) ||
           AskDespiteRules(before.LocalServerId);
}

// A kind that is disabled, and a Notes ID file of another mail system, has no lines, and so no values but those of the
// file.
RouterSettings WithoutDisabled(RouterSettings settings, const RouterSettings& before) {
    if (!settings.EmailEnabled) {
        settings.Email = before.Email;
        settings.EmailLoginName = before.EmailLoginName;
        settings.EmailLoginParams = before.EmailLoginParams;
        settings.EmailPollInterval = before.EmailPollInterval;
    }
    if (!settings.EmailEnabled || settings.Email != EmailType::LotusNotes) settings.NotesIdFile = before.NotesIdFile;
    if (!settings.WanEnabled) {
        settings.WanInboxDirectory = before.WanInboxDirectory;
        settings.WanPollInterval = before.WanPollInterval;
    }
    return settings;
}

// The changes from one to the other, on the settings that are in the file now.
RouterSettings Merged(const RouterSettings& before, const RouterSettings& mine, const RouterSettings& now) {
    RouterSettings merged = now;
    for (const auto& [field, part, isWritten] : RouterKeys()) {
        const std::string text = field.Text(mine);
        if (text == field.Text(before) || text == field.Text(now)) continue;
        const bool isTheirs = field.Text(before) != field.Text(now);
        const std::string shown = ShownText(field.Rule, field.Text(now)); // a password stays hidden in the question
        if (TakesMine(NameOf(ServerFile::Setup), {field.Name(), isTheirs ? std::string() : shown, text, shown}))
            field.Store(merged, text);
    }
    return merged;
}

} // namespace

std::optional<RouterFault> FindRouterFault(const RouterSettings& settings, const LinkTable& links) {
    const std::string& id = settings.LocalServerId;
    if (id.empty()) return RouterFault{"LocalServerID", FillMessage(kLocalIdMissing)};
    if (std::ranges::any_of(links, [&](const LinkRecord& link) { return EqualFolded(link.Identifier, id); }))
        return RouterFault{"LocalServerID", FillMessage(kLocalIdIsLink, id)};
    const auto fault = FaultOfRouter(settings);
    return fault ? std::optional(RouterFault{fault->Key, std::string(fault->Message)}) : std::nullopt;
}

bool AgreeToDisable(const RouterSettings& before, const RouterSettings& after, const LinkTable& links) {
    const std::pair<bool, bool> kinds[] = {{before.EmailEnabled && !after.EmailEnabled, false},
                                           {before.WanEnabled && !after.WanEnabled, true}};
    return std::ranges::all_of(kinds, [&](const auto& kind) {
        const auto count = std::ranges::count_if(links, [&](const auto& link) { return DependsOn(link, kind.second); });
        return !kind.first || count == 0 || AskWarning(kLinksOfKind, count);
    });
}

bool EnterRouterSettings(const EnteredValues& values) {
    LinkTable links;
    if (!ReadLinks(links)) return false;
    bool isChanged = false;
    const auto enter = [&](RouterSettings& settings) {
        const RouterSettings before = settings;
        if (!EnterValues("router settings", RouterKeys(), values, settings)) return false;
        EnableKinds(values, settings);
        isChanged = settings != before;
        return CheckRouter(settings, links) && AgreeToDisable(before, settings, links) &&
               AgreeToRename(before, settings) && AreKept(RouterKeys(), values, settings, AsRead(settings));
    };
    if (!ChangeRouterSettings(enter)) return false;
    constexpr MessageWith<0> kUnchanged = "Nothing was to be changed";
    ShowStatus(isChanged ? kChanged : kUnchanged);
    return true;
}

bool BeginRouterEdit(RouterEdit& edit, const std::string& notesIdFile) {
    constexpr HourMinute kEmailPoll = {10, 0};
    constexpr HourMinute kWanPoll = {5, 0};
    edit = {};
    if (ReadRouterSettings(edit.Before) == RouterReading::Failed || !ReadLinks(edit.Links)) return false;
    const auto lines = ReadLinesToDrop();
    if (!lines) return false;
    edit.LinesToDrop = *lines;
    edit.Opened = edit.Before;
    if (edit.Before.NotesIdFile.empty()) edit.Opened.NotesIdFile = notesIdFile;
    if (!edit.Before.EmailEnabled && !edit.Before.EmailPollInterval.IsInterval())
        edit.Opened.EmailPollInterval = kEmailPoll;
    if (!edit.Before.WanEnabled) {
        edit.Opened.WanInboxDirectory = DefaultWanInbox();
        if (!edit.Before.WanPollInterval.IsInterval()) edit.Opened.WanPollInterval = kWanPoll;
    }
    edit.Entered = edit.Opened;
    return true;
}

std::string DescribeLinesToDrop(const RouterEdit& edit) {
    return edit.LinesToDrop.empty() ? std::string() : FillMessage(kSavingWillDrop, edit.LinesToDrop);
}

namespace {

// Changes the rules that name this server by its name until now, as the person wants them, in memory. False: nothing
// is to be saved at all.
bool RenameInRules(const RouterEdit& edit, const std::string& now, const AskAboutUses& ask,
                   std::optional<OpenedRules>& rules) {
    const std::string& before = edit.Before.LocalServerId;
    if (before.empty() || EqualFolded(before, now)) return true;
    const auto uses =
        rules ? FindRuleUses(rules->Rules, LcrName::Server, {before}) : FindLcrUses(LcrName::Server, {before});
    if (!uses || uses->empty()) return uses.has_value();
    if (!rules && !AreRulesFree()) {
        ShowWarning(kRulesWaitForSave, PendingRulesPath(), "general settings");
        return true;
    }
    std::optional<UseChange> change = ask(*uses);
    if (!change || change->What == UseChange::Kind::Leave) return change.has_value();
    change->By = now;
    if (!rules) rules = OpenRules();
    if (rules) rules->Rules = ChangeRuleNames(rules->Rules, LcrName::Server, {before}, *change);
    return rules.has_value();
}

bool AgreeToSave(const RouterEdit& edit, const RouterSettings& mine) {
    return AgreeToDisable(edit.Before, mine, edit.Links) &&
           (edit.LinesToDrop.empty() || AskWarning(kSavingDropsLines, NameOf(ServerFile::Setup), edit.LinesToDrop));
}

} // namespace

bool SaveRouterEdit(RouterEdit& edit, const AskAboutUses& ask) {
    const RouterSettings mine = WithoutDisabled(edit.Entered, edit.Before);
    const bool isChanged = mine != WithoutDisabled(edit.Opened, edit.Before);
    if (!isChanged && !edit.UnsavedRules) return true;
    std::optional<OpenedRules> rules = edit.UnsavedRules;
    if (isChanged && (!AgreeToSave(edit, mine) || !RenameInRules(edit, mine.LocalServerId, ask, rules))) return false;
    const auto change = [&](RouterSettings& settings) {
        settings = Merged(edit.Before, mine, settings);
        return CheckRouter(settings, edit.Links);
    };
    bool isInPlace = false;
    const auto save = [&] {
        isInPlace = ChangeRouterSettings(change);
        if (isInPlace) return FileBefore::InPlace;
        return edit.UnsavedRules ? FileBefore::HalfDone : FileBefore::AsItWas;
    };
    const bool isDone = rules ? SaveRulesBehind(rules->Rules, rules->Stamp, save) : save() == FileBefore::InPlace;
    if (isInPlace) ShowStatus(kChanged);
    if (isInPlace && !isDone) edit = {mine, edit.Entered, edit.Entered, edit.Links, {}, std::move(rules)};
    return isDone;
}

} // namespace bv
