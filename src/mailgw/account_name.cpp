#include "mailgw/account_name.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ctlfile/key_fields.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

// The words of a display name by position, and what expressions call them.
constexpr std::array<std::string_view, 3> kWordNames = {"Last", "First", "Second"};
using Words = std::array<std::string_view, kWordNames.size()>;

struct Item {
    std::size_t Word = 0;  // its position
    std::size_t Count = 0; // of characters; 0 for the whole word
};

// The items of an expression, in their order.
std::vector<Item> ItemsOf(std::string_view expression) {
    std::vector<Item> items;
    for (std::size_t at = expression.find('%'); at != std::string_view::npos; at = expression.find('%', at)) {
        ++at;
        const bool hasCount = at < expression.size() && expression[at] >= '1' && expression[at] <= '9';
        const std::size_t count = hasCount ? static_cast<std::size_t>(expression[at] - '0') : 0;
        if (hasCount) ++at;
        const std::string_view rest = expression.substr(at);
        for (std::size_t word = 0; word < kWordNames.size(); ++word) {
            if (StartsWithFolded(rest, kWordNames[word])) items.push_back({word, count});
        }
    }
    return items;
}

Words SplitWords(std::string_view name) {
    Words words;
    for (std::string_view& word : words) {
        name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
        const std::size_t end = std::min(name.find(' '), name.size());
        word = name.substr(0, std::min(end, AccountName::kLimit));
        name.remove_prefix(end);
    }
    return words;
}

std::string Apply(const std::vector<Item>& items, const Words& words, bool isOneWord) {
    std::string name;
    for (const Item& item : items) {
        if (isOneWord && item.Count == 0) return std::string(words[0]);
        const std::size_t count = item.Count != 0 ? item.Count : AccountName::kLimit;
        name.append(words[item.Word].substr(0, std::min(count, AccountName::kLimit - name.size())));
    }
    return name;
}

} // namespace

bool IsAccountExpression(std::string_view text) {
    return text.size() <= AccountExpression::kLimit && !ItemsOf(text).empty();
}

std::optional<AccountExpression> ReadAccountExpression() {
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup));
    if (!setup) return {};
    AccountExpression expression;
    ControlLine line;
    if (FindParagraph(setup, "[OPTIONS]", line)) GetKeyString(setup, "MailUserAlias:", expression);
    if (!WasRead(setup)) return {};
    return expression.IsEmpty() ? AccountExpression(kDefaultAccountExpression) : expression;
}

bool WriteAccountExpression(std::string_view expression) {
    if (!IsAccountExpression(expression)) {
        ShowError(kSelectExpression);
        return false;
    }
    Rewrite rewrite(PathOf(ServerFile::Setup));
    if (!CheckOpened(rewrite)) return false;
    return SaveRewrite(rewrite, [&] { return RewriteKey(rewrite, {"[OPTIONS]", "MailUserAlias:", expression}); });
}

bool MakeMailAccountName(std::string_view displayName, std::string_view expression, AccountName& name) {
    const std::vector<Item> items = ItemsOf(expression.substr(0, AccountExpression::kLimit));
    const Words words = SplitWords(displayName.substr(0, displayName.find('\t')));
    name.Clear();
    if (words[0].empty()) return false;
    name = Apply(items, words, words[1].empty());
    // What asks for given names alone gets the surname in their place, when there are none.
    if (name.IsEmpty()) name = Apply(items, {"", words[0], words[2]}, false);
    return !name.IsEmpty();
}

bool MakeMailAccountName(std::string_view displayName, AccountName& name) {
    name.Clear();
    const std::optional<AccountExpression> expression = ReadAccountExpression();
    return expression && MakeMailAccountName(displayName, *expression, name);
}

std::optional<NameSet> ReadTakenAccounts(NameSet leaving) {
    NameSet taken;
    const bool isListRead = VisitMailUsers([&](const MailUser& user) {
        const bool isLeaving = leaving.Remove(user.Emailname);
        if (!isLeaving && !user.EmailBrivname.IsEmpty()) taken.Add(user.EmailBrivname);
        return true;
    });
    UserListView everybody;
    everybody.IncludeGroups = true;
    const bool isRead = isListRead && VisitUserRows(everybody, [&](const UserRow& row) { taken.Add(row.Name); });
    return isRead ? std::optional(std::move(taken)) : std::nullopt;
}

std::vector<bool> ClashingAccountNames(std::span<const std::string> accounts, const NameSet& taken) {
    std::unordered_map<std::string, std::size_t> first;
    std::vector<bool> clashes(accounts.size());
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        if (accounts[i].empty()) continue;
        const auto [place, isFirst] = first.try_emplace(UpperText(accounts[i]), i);
        clashes[i] = !isFirst || taken.Has(accounts[i]);
        if (!isFirst) clashes[place->second] = true;
    }
    return clashes;
}

} // namespace bv
