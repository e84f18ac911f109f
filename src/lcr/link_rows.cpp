#include "lcr/link_rows.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "lcr/lcr_messages.h"
#include "lcr/rule_file.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kTypeNames[] = {"WAN", "E-mail", "Fast e-mail"};

std::string SwitchText(const Switch& value) { return !value ? "not set" : *value ? "on" : "off"; }

bool Names(const RoutingRule& rule, const std::string& server) {
    return std::ranges::any_of(rule.Servers, [&](const std::string& name) { return EqualFolded(name, server); });
}

std::string Remark(const LinkEdit& edit, std::size_t place) {
    const auto fault = FindLinkFault(edit, place, edit.Links[place]);
    return fault ? std::string(fault->Message) : std::string();
}

} // namespace

bool ReadLinkFacts(LinkFacts& facts) {
    std::optional<RuleList> rules = ReadRules();
    if (!rules || !ReadLinkNotes(facts.Noted)) return false;
    facts.Rules = std::move(*rules);
    return true;
}

const LinkNotes* NotesOf(const LinkFacts& facts, const LinkRecord& link) {
    const auto place = static_cast<std::size_t>(link.Place);
    return link.IsNew || link.Place < 0 || place >= facts.Noted.Notes.size() ? nullptr : &facts.Noted.Notes[place];
}

void FillLinkRows(const LinkEdit& edit, const LinkFacts& facts, RowTable& rows) {
    rows.Begin(kLinkColumns);
    for (std::size_t place = 0; place < edit.Links.size(); ++place) {
        const LinkRecord& link = edit.Links[place];
        const LinkNotes* notes = NotesOf(facts, link);
        const auto rules =
            std::ranges::count_if(facts.Rules, [&](const auto& rule) { return Names(rule, link.Identifier); });
        for (const std::string& text :
             {link.Identifier, link.Description, std::string(kTypeNames[static_cast<int>(link.Type)]), link.Address,
              SwitchText(link.SendEnabled), SwitchText(link.ReceiveEnabled), FormatHourMinute(link.Delay),
              notes == nullptr ? "-" : DescribeState(*notes), std::to_string(rules), Remark(edit, place)})
            rows.Add(text);
    }
}

std::string DescribeUnreadable(const LinkFacts& facts) {
    return facts.Noted.Unreadable == 0
               ? std::string()
               : FillMessage(kUnreadableLinks, NameOf(ServerFile::Links), facts.Noted.Unreadable);
}

} // namespace bv
