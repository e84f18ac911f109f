#include "lcr/link_session.h"

#include <algorithm>
#include <utility>

#include "lcr/lcr_messages.h"
#include "lcr/rule_file.h"
#include "platform/ascii.h"
#include "voice/messages.h"

namespace bv {

bool LinkSession::Begin() {
    areRulesFree_ = AreRulesFree();
    return BeginLinkEdit(edit_) && ReadLinkFacts(facts_);
}

std::vector<Use> LinkSession::FindUses(const std::string& identifier) const {
    std::vector<Use> uses = FindRuleUses(facts_.Rules, LcrName::Server, {identifier});
    for (Use& use : uses) use.CanChange = areRulesFree_;
    return uses;
}

// What the rules are to become; they are opened before any link is changed. Another link of the name keeps them.
bool LinkSession::Settle(const std::string& identifier, const AskAboutUses& ask, UseChange& change) {
    const auto isIt = [&](const LinkRecord& link) { return EqualFolded(link.Identifier, identifier); };
    const std::vector<Use> uses = FindUses(identifier);
    if (uses.empty() || std::ranges::count_if(edit_.Links, isIt) > 1) return true;
    if (!areRulesFree_) ShowWarning(kRulesWaitForSave, PendingRulesPath(), "links");
    const std::optional<UseChange> answer = ask(uses);
    if (!answer || answer->What == UseChange::Kind::Leave || !areRulesFree_) return answer.has_value();
    if (!rules_) {
        std::optional<OpenedRules> opened = OpenRules();
        if (!opened) return false;
        rules_ = opened->Stamp;
        facts_.Rules = std::move(opened->Rules);
    }
    change.What = answer->What;
    change.DeleteEmptied = answer->DeleteEmptied;
    return true;
}

void LinkSession::ChangeRules(const std::string& identifier, const UseChange& change) {
    if (change.What == UseChange::Kind::Leave) return;
    facts_.Rules = ChangeRuleNames(facts_.Rules, LcrName::Server, {identifier}, change);
    areRulesChanged_ = true;
}

bool LinkSession::Put(std::optional<std::size_t> place, LinkRecord link, const AskAboutUses& ask) {
    const std::string before = place ? edit_.Links.at(*place).Identifier : std::string();
    UseChange change;
    const auto agree = [&](const std::string& identifier) { return Settle(identifier, ask, change); };
    change.By = link.Identifier;
    if (!PutLink(edit_, place, std::move(link), agree)) return false;
    ChangeRules(before, change);
    return true;
}

bool LinkSession::Remove(std::size_t place, const AskAboutUses& ask) {
    const std::string before = edit_.Links.at(place).Identifier;
    UseChange change;
    const auto agree = [&](const std::string& identifier) { return Settle(identifier, ask, change); };
    if (!RemoveLink(edit_, place, agree)) return false;
    ChangeRules(before, change);
    return true;
}

// The links as they are saved, on which further changes build.
void LinkSession::ReadLinksAgain() {
    LinkEdit saved;
    NotedLinks noted;
    if (!BeginLinkEdit(saved) || !ReadLinkNotes(noted)) return;
    edit_ = std::move(saved);
    facts_.Noted = std::move(noted);
}

bool LinkSession::Commit() {
    if (!areRulesChanged_) return SaveLinkEdit(edit_);
    bool areLinksSaved = false;
    const auto saveLinks = [&] {
        areLinksSaved = SaveLinkEdit(edit_);
        if (areLinksSaved) return FileBefore::InPlace;
        return isHalfDone_ ? FileBefore::HalfDone : FileBefore::AsItWas;
    };
    areRulesChanged_ = !SaveRulesBehind(facts_.Rules, *rules_, saveLinks);
    if (areLinksSaved && areRulesChanged_) {
        isHalfDone_ = true;
        ReadLinksAgain();
    }
    return !areRulesChanged_;
}

} // namespace bv
