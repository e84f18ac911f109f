// The general settings of routing as a person enters them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ctlfile/entered_values.h"
#include "lcr/lcr_uses.h"
#include "lcr/links.h"
#include "lcr/router_settings.h"
#include "lcr/rule_file.h"

namespace bv {

// Changes the settings, while nobody else can, to those that are given; the others stay. A kind of link is enabled when
// its account or directory is given, and disabled when that is emptied, unless the values say otherwise. False, with
// the file as it was, after a message: of a value that is not taken (EnterValues), a rule that is broken
// (FindRouterFault), the answer No to 9342 (AgreeToDisable) or about rules with the name that this server had, a value
// that the file would not keep, or what ChangeRouterSettings says.
bool EnterRouterSettings(const EnteredValues& values);

// A rule that the settings break beside these links: the key concerned, and the message.
struct RouterFault {
    std::string_view Key;
    std::string Message;
};
// The first one: 9340 without a name of this server, 9341 when that is a link's, then those of FaultOfRouter.
std::optional<RouterFault> FindRouterFault(const RouterSettings& settings, const LinkTable& links);

// Whether a kind of link may be disabled that the links use: 9342 asks.
bool AgreeToDisable(const RouterSettings& before, const RouterSettings& after, const LinkTable& links);

// The settings while a person edits them (RunLcrEditor).
struct RouterEdit {
    RouterSettings Before; // as the file has them
    RouterSettings Opened; // with what is offered for a kind of link that is disabled
    RouterSettings Entered;
    LinkTable Links;
    std::string LinesToDrop;                      // ReadLinesToDrop
    std::optional<OpenedRules> UnsavedRules = {}; // those that follow settings which are saved already
};

// Reads them; there need not be any yet. A Notes ID file is offered until there is one. False after a message.
bool BeginRouterEdit(RouterEdit& edit, const std::string& notesIdFile = {});

// 9355 when there are such lines; else nothing.
std::string DescribeLinesToDrop(const RouterEdit& edit);

// Saves what was entered, keys that have changed, on top of what somebody else has written since (TakesMine), after
// the questions 9342 and 9354; the rules have been seen to (FindRouterFault). Unchanged settings are not written.
// Rules that name this server by another name than the new one are asked about before, and saved behind the settings
// (SaveRulesBehind); while changes of an earlier session wait for their save, they stay, after warning 9365. Status
// "Changed the general settings of routing". False, with the file as it was, after a message or the answer No; and when
// the rules could not be saved then, after their message. Then it may be called again.
bool SaveRouterEdit(RouterEdit& edit, const AskAboutUses& ask);

} // namespace bv
