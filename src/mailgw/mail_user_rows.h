// Mail users, and the users of the mail system, as rows of lists.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mailgw/account_name.h"
#include "mailgw/mail_actions.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_profiles.h"
#include "shell/row_table.h"

namespace bv {

// The users of the mail system by their names, in any case and with the first word in front or at the end.
class MailDirectory {
  public:
    // False after 413 or 9011.
    bool Read();

    [[nodiscard]] const std::vector<MailPerson>& People() const { return people_; }

    // None for a name that is not there; of an e-mail name what is behind a tab does not count.
    [[nodiscard]] const MailPerson* Find(std::string_view name) const;

  private:
    std::vector<MailPerson> people_;
    std::unordered_map<std::string, std::size_t> byName_; // in upper case
};

enum MailUserColumn {
    kMailUserName,
    kMailUserSendsAs,
    kMailUserServer,
    kMailUserProfile,
    kMailUserAddress,
    kMailUserRemark,
    kMailUserColumns
};

enum class MailUserShow { All, OfServerUser, Profiles, Remarks };

// The records of the mail list, with what is odd about them.
class MailUserRows : public RowModel {
  public:
    // Reads the list, in its order, and beside it the users of the server and of the mail system, each in one pass.
    // False after 413 or 9011. When the users of the mail system cannot be read, which is said, there are no addresses.
    bool Read();

    // Which rows there are from now on; of a server user those whose faxes go under the name.
    void Show(MailUserShow what, std::string_view serverUser);

    [[nodiscard]] std::size_t Count() const override { return shown_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return kMailUserColumns; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override {
        return all_.Text(shown_[row], column);
    }
    [[nodiscard]] std::string Name(std::size_t row) const override;

    [[nodiscard]] ListedMailUser User(std::size_t row) const;
    [[nodiscard]] std::size_t Number(std::size_t row) const { return shown_[row]; } // in the list

    // How many records there are, and how many by a profile (9430).
    [[nodiscard]] std::string CountText() const;

  private:
    [[nodiscard]] bool IsShown(std::size_t record) const;

    RowTable all_;
    std::vector<std::uint32_t> shown_;
    MailUserShow what_ = MailUserShow::All;
    std::string serverUser_;
    std::size_t profiles_ = 0;
};

enum MailPersonColumn { kPersonName, kPersonAddress, kPersonAccount, kPersonState, kPersonColumns };

// The users of the mail system, to be ticked; those who are in the mail list cannot be. Names that a person adds come
// behind them.
class MailPeople : public RowModel {
  public:
    // Reads them, the mail list and the account names that are taken; ticks stay by name. False after 413 or 9011.
    bool Read();

    // Whether they get account names, and by which expression.
    void GiveAccounts(bool given, std::string_view expression);

    // Adds a name, ticked, or ticks that which is there. False after 9190.
    bool Add(std::string_view name);

    void Tick(std::size_t row, bool ticked);
    void SetAccount(std::size_t row, std::string_view account);

    // Those with a tick, and the row of each.
    [[nodiscard]] std::vector<NewMailUser> Ticked() const;
    [[nodiscard]] std::size_t RowOfTicked(std::size_t index) const;

    [[nodiscard]] std::size_t Count() const override { return people_.size(); }
    [[nodiscard]] std::size_t Columns() const override { return kPersonColumns; }
    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override;
    [[nodiscard]] bool IsTicked(std::size_t row) const override { return people_[row].IsTicked; }
    [[nodiscard]] bool IsListed(std::size_t row) const {
        return !people_[row].Sender.empty() && !people_[row].IsByHand;
    }

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  private:
    struct Person {
        std::string Name;
        std::string Address;
        std::string Sender; // of one who is in the list: as whom
        std::string Account = {};
        std::string State = {};
        bool IsTicked = false;
        bool IsByHand = false;
    };
    void MakeAccounts();
    void ShowStates();

    std::vector<Person> people_;
    NameSet taken_;
    bool hasAccounts_ = false;
    std::string expression_;
};

} // namespace bv
