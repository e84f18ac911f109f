// Editing the links from the opening of their dialog to its end, with the rules that name them. What is changed is kept
// until the end, where links and rules are saved.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "lcr/lcr_uses.h"
#include "lcr/link_rows.h"

namespace bv {

class LinkSession {
  public:
    // Needs the edit lock, as all of it. False after a message of BeginLinkEdit or ReadLinkFacts.
    bool Begin();

    [[nodiscard]] const LinkEdit& Edit() const { return edit_; }
    [[nodiscard]] const LinkFacts& Facts() const { return facts_; } // with the rules as they are changed
    [[nodiscard]] bool IsChanged() const { return areRulesChanged_ || edit_.Links != edit_.Before; }

    // The rules that name a link.
    [[nodiscard]] std::vector<Use> FindUses(const std::string& identifier) const;

    // PutLink and RemoveLink: the rules that name what goes or gets another identifier are asked about, and changed
    // with it. While changes of an earlier session wait for their save, the rules stay, after warning 9365.
    bool Put(std::optional<std::size_t> place, LinkRecord link, const AskAboutUses& ask);
    bool Remove(std::size_t place, const AskAboutUses& ask);

    // Saves: the changed rules wait in their file of unsaved changes until the links are in place, and stay there when
    // they cannot be saved then. Without a change nothing is written. False after a message: then it may be called
    // again.
    bool Commit();

  private:
    bool Settle(const std::string& identifier, const AskAboutUses& ask, UseChange& change);
    void ChangeRules(const std::string& identifier, const UseChange& change);
    void ReadLinksAgain();

    LinkEdit edit_;
    LinkFacts facts_;
    std::optional<TextStamp> rules_; // of the rules, once they are opened to be changed
    bool areRulesFree_ = true;       // no changes of an earlier session wait for their save
    bool areRulesChanged_ = false;
    bool isHalfDone_ = false; // the links are in place, the rules are not
};

} // namespace bv
