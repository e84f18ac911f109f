#include "lcr/router_actions.h"

#include <algorithm>
#include <utility>

#include "ctlfile/merge.h"
#include "lcr/lcr_messages.h"
#include "lcr/rule_file.h"
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

// A kind that is disabled has no lines, and so no values but those of the file.
RouterSettings WithoutDisabled(RouterSettings settings, const RouterSettings& before) {
    if (!settings.EmailEnabled) {
        settings.Email = before.Email;
        settings.EmailLoginName = before.EmailLoginName;
        settings.NotesIdFile = before.NotesIdFile;
        settings.EmailLoginParams = before.EmailLoginParams;
        settings.EmailPollInterval = before.EmailPollInterval;
    }
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
               AreKept(RouterKeys(), values, settings, AsRead(settings));
    };
    if (!ChangeRouterSettings(enter)) return false;
    constexpr MessageWith<0> kUnchanged = "Nothing was to be changed";
    ShowStatus(isChanged ? kChanged : kUnchanged);
    return true;
}

bool BeginRouterEdit(RouterEdit& edit) {
    constexpr HourMinute kEmailPoll = {10, 0};
    constexpr HourMinute kWanPoll = {5, 0};
    edit = {};
    if (ReadRouterSettings(edit.Before) == RouterReading::Failed || !ReadLinks(edit.Links)) return false;
    const auto lines = ReadLinesToDrop();
    if (!lines) return false;
    edit.LinesToDrop = *lines;
    edit.Opened = edit.Before;
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

// What the rules that name this server by its name until now are to become. None: nothing is to be saved.
std::optional<UseChange> AskAboutRules(const RouterEdit& edit, const std::string& now, const AskAboutUses& ask) {
    const std::string& before = edit.Before.LocalServerId;
    if (before.empty() || EqualFolded(before, now)) return UseChange();
    const std::optional<std::vector<Use>> uses = FindLcrUses(LcrName::Server, {before});
    if (!uses || uses->empty()) return uses ? std::optional(UseChange()) : std::nullopt;
    const PendingRules pending = LookForPendingRules();
    if (pending == PendingRules::None || pending == PendingRules::CutOff) return ask(*uses);
    ShowWarning(kRulesWaitForSave, PendingRulesPath(), "general settings");
    return UseChange();
}

} // namespace

bool SaveRouterEdit(const RouterEdit& edit, const AskAboutUses& ask) {
    const RouterSettings mine = WithoutDisabled(edit.Entered, edit.Before);
    if (mine == WithoutDisabled(edit.Opened, edit.Before)) return true;
    if (!AgreeToDisable(edit.Before, mine, edit.Links)) return false;
    if (!edit.LinesToDrop.empty() && !AskWarning(kSavingDropsLines, NameOf(ServerFile::Setup), edit.LinesToDrop))
        return false;
    std::optional<UseChange> ofRules = AskAboutRules(edit, mine.LocalServerId, ask);
    if (!ofRules) return false;
    ofRules->By = mine.LocalServerId;
    const auto change = [&](RouterSettings& settings) {
        settings = Merged(edit.Before, mine, settings);
        return CheckRouter(settings, edit.Links);
    };
    if (!ChangeRouterSettings(change)) return false;
    ShowStatus(kChanged);
    return ofRules->What == UseChange::Kind::Leave || ChangeRuleServers({edit.Before.LocalServerId}, *ofRules);
}

} // namespace bv
