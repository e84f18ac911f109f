// Accounts of the network on their way into the user list.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/network_users.h"
#include "shell/row_order.h"
#include "users/user_actions.h"

namespace bv {

// The names in the user list; the keys are in upper case.
struct ListedNames {
    std::unordered_set<std::string> Taken; // by users and groups
    // The users by each name that they have on a network.
    std::unordered_map<std::string, std::string> ByNetworkName;
};

// Reads them in a pass for users and one for groups. False after 413 or 9011.
bool ReadListedNames(ListedNames& names);

// Makes names for new users out of those that they have on the network, each another one that is free.
class UserNameOffers {
  public:
    explicit UserNameOffers(const ListedNames& listed) : taken_(listed.Taken) {}

    // In upper case, without what a directory's name cannot have, of 8 characters at most; of a name that is taken, or
    // that no directory can have, the last ones give way to a number.
    std::string OfferUserName(std::string_view networkName);

  private:
    [[nodiscard]] bool IsFree(const std::string& name) const;

    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, int> numbers_; // the last one of each beginning
};

// An account and the name that its user is to have.
struct NetworkChoice {
    std::string Name;
    platform::NetworkUser Account;
};

// The columns of the accounts: their name and full name on the network, the name on the fax server, and what there is
// to say of them.
enum NetworkColumn { kAccountName, kAccountFullname, kAccountUser, kAccountState, kAccountColumns };

// The accounts that were read, those to be added ticked.
class NetworkAccounts final : public RowModel {
  public:
    // Without accounts, beside a list with those names.
    void Begin(ListedNames listed, bool unlistedOnly);
    void Add(std::span<const platform::NetworkUser> page);

    // The list has other names now; users who are in it lose their ticks.
    void Relist(ListedNames listed);

    // Which accounts are rows: all, or those without a user.
    void ShowUnlistedOnly(bool unlistedOnly);

    // False for an account that cannot be added: its user is listed, or its name cannot be written.
    bool Tick(std::size_t row, bool ticked);
    void TickAll();

    void SetName(std::size_t row, std::string_view name) { At(row).User = name; }

    // The ticked ones; a place among them is that of their row, if it is one.
    [[nodiscard]] std::vector<NetworkChoice> Ticked() const;
    [[nodiscard]] std::optional<std::size_t> RowOfTicked(std::size_t place) const;
    [[nodiscard]] std::size_t CountTicked() const;

    [[nodiscard]] std::size_t Count() const override { return rows_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return kAccountColumns; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override;
    [[nodiscard]] bool IsTicked(std::size_t row) const override { return accounts_[rows_[row]].IsTicked; }

  private:
    struct Account {
        platform::NetworkUser From;
        std::string User;
        std::string State;
        bool IsListed = false;
        bool IsTicked = false;
    };
    Account& At(std::size_t row) { return accounts_[rows_[row]]; }
    void Judge(Account& account) const;
    [[nodiscard]] bool IsRow(const Account& account) const { return !unlistedOnly_ || !account.IsListed; }
    void MakeRows();

    ListedNames listed_;
    std::optional<UserNameOffers> offers_;
    bool unlistedOnly_ = false;
    std::vector<Account> accounts_;
    std::vector<std::size_t> rows_; // those that are shown
};

// Whose fault it is that the users cannot be added.
struct NetworkFault {
    enum class Field { List, Name, Group, Like } Where = Field::List;
    std::size_t Choice = 0; // with a name
};

// The new users: of the group (none for an empty name), with what the user of that name has, or the default one; with
// full name and network names of their accounts, and without a mail name. A fault after a message: 9267 without
// choices, 9020 to 9023, 9268 or a sentence for one of them, 9024, "Brivane user %s not found", 413 or 9011.
std::optional<NetworkFault> PlanNetworkUsers(std::span<const NetworkChoice> choices, const std::string& group,
                                             const std::string& like, std::vector<NamedRecord>& added);

// Adds users that were planned, as SaveUsers. Status 9236 or, of those that were stopped, 9237. How many were added.
std::size_t AddNetworkUsers(std::span<const NamedRecord> added, const SaveProgress& goOn);

// Reads the accounts of a computer ("NAME" or "\\NAME"; empty: this one) into the table; status 9260. Asks after each
// page, with how many were read, whether to go on. False after 9262.
bool ReadNetworkAccounts(const std::string& name, NetworkAccounts& accounts,
                         const std::function<bool(std::size_t read)>& goOn);

} // namespace bv
