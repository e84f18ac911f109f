#include "users/network_accounts.h"

#include <algorithm>
#include <array>

#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "platform/ascii.h"
#include "platform/file_names.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/user_entry.h"
#include "users/user_file.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::array<std::string_view, 4> kNameKeys = {kNameKey, "Username:", "Netware:", "LanManager:"};
constexpr std::array<const char*, 3> kNetworkKeys = {"Username", "Netware", "LanManager"};
constexpr const char* kNamelessStem = "NEWUSER";

// Takes the names of all records of a kind; the first user of a network name is the one that has it.
void TakeNames(ControlStream& list, RecordKind kind, ListedNames& names) {
    RecordWalker records(list, RecordHeader(kind), kNameKeys);
    WholeValue name;
    WholeValue network;
    while (records.Next()) {
        records.Get(0, name);
        if (IsDefaultName(name)) continue;
        names.Taken.insert(UpperText(name));
        if (kind == RecordKind::Group) continue;
        for (std::size_t key = 1; key < kNameKeys.size(); ++key)
            if (records.Get(key, network) && !network.IsEmpty())
                names.ByNetworkName.try_emplace(UpperText(network), name.View());
    }
}

bool IsUnfit(char c) { return std::string_view("\\/:*?\"<>|.,;()@ ").find(c) != std::string_view::npos; }

// What is left of a name when everything is out that a directory's name, or the list, has another meaning for.
std::string FitStem(std::string_view networkName) {
    std::string stem = UpperText(networkName);
    std::erase_if(stem, [](char c) { return IsControl(c) || IsUnfit(c); });
    const std::size_t unmarked = stem.find_first_not_of(Switches().UserGroupIdentifier);
    stem = unmarked == std::string::npos ? kNamelessStem : stem.substr(unmarked);
    return stem.substr(0, RecordName::kLimit);
}

// A full name as the list can keep it.
std::string FitFullname(const std::string& name) {
    const std::string clean = CleanLine(name);
    return std::string(TrimBlanks(std::string_view(clean).substr(0, decltype(UserRecord::Fullname)::kLimit)));
}

// The record of one user; none after a sentence.
std::optional<UserRecord> RecordOf(const NetworkChoice& choice, const std::string& group, const StoredRecord& like) {
    RecordEntry entry = RecordEntry::OfNew(RecordKind::User, choice.Name, like);
    auto fault = entry.Enter("Fullname", FitFullname(choice.Account.Fullname));
    if (!fault) fault = entry.Enter("Group", group);
    for (const char* key : kNetworkKeys)
        if (!fault) fault = entry.Enter(key, choice.Account.Name);
    if (!fault)
        if (const auto whole = entry.FaultOfWhole()) fault = whole->Text;
    if (!fault) return entry.After();
    ShowError("%s", choice.Account.Name + ": " + *fault);
    return std::nullopt;
}

// Whether all names can be those of new users; else the place of the first that cannot, after its message.
std::optional<std::size_t> FindFaultyName(std::span<const NetworkChoice> choices, const ListedNames& listed) {
    std::unordered_set<std::string> given;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const std::string& name = choices[i].Name;
        const std::string upper = UpperText(name);
        auto fault = FaultOfNewName(name, RecordKind::User);
        if (!fault && listed.Taken.contains(upper)) fault = FillMessage(kNameTaken, name);
        if (!fault && !given.insert(upper).second) fault = FillMessage(kNameGivenTwice, name);
        if (!fault) continue;
        ShowError("%s", *fault);
        return i;
    }
    return std::nullopt;
}

} // namespace

bool ReadListedNames(ListedNames& names) {
    names = {};
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return false;
    TakeNames(list, RecordKind::User, names);
    list.Rewind();
    TakeNames(list, RecordKind::Group, names);
    return WasRead(list);
}

bool UserNameOffers::IsFree(const std::string& name) const {
    return !taken_.contains(name) && !FaultOfNewName(name, RecordKind::User);
}

std::string UserNameOffers::OfferUserName(std::string_view networkName) {
    const std::string stem = FitStem(networkName);
    std::string name = stem;
    for (int& number = numbers_.try_emplace(stem, 1).first->second; !IsFree(name);) {
        const std::string digits = std::to_string(++number);
        name = stem.substr(0, RecordName::kLimit - std::min(digits.size(), RecordName::kLimit)) + digits;
    }
    taken_.insert(name);
    return name;
}

void NetworkAccounts::Begin(ListedNames listed, bool unlistedOnly) {
    accounts_.clear();
    unlistedOnly_ = unlistedOnly;
    offers_.emplace(listed);
    Relist(std::move(listed));
}

void NetworkAccounts::Add(std::span<const platform::NetworkUser> page) {
    for (const platform::NetworkUser& user : page) {
        Account& account = accounts_.emplace_back();
        account.From = user;
        Judge(account);
        if (!account.IsListed && user.IsWhole) account.User = offers_->OfferUserName(user.Name);
        if (IsRow(account)) rows_.push_back(accounts_.size() - 1);
    }
}

void NetworkAccounts::Judge(Account& account) const {
    const auto listed = listed_.ByNetworkName.find(UpperText(account.From.Name));
    account.IsListed = listed != listed_.ByNetworkName.end();
    if (account.IsListed)
        account.State = FillMessage(kIsListedAs, listed->second);
    else if (!account.From.IsWhole)
        account.State = FillMessage(kNotInThisCodePage);
    else
        account.State = account.From.IsDisabled ? FillMessage(kAccountDisabled) : std::string();
    if (account.IsListed) account.IsTicked = false;
}

void NetworkAccounts::Relist(ListedNames listed) {
    listed_ = std::move(listed);
    for (Account& account : accounts_) Judge(account);
    MakeRows();
}

void NetworkAccounts::ShowUnlistedOnly(bool unlistedOnly) {
    unlistedOnly_ = unlistedOnly;
    MakeRows();
}

void NetworkAccounts::MakeRows() {
    rows_.clear();
    for (std::size_t i = 0; i < accounts_.size(); ++i)
        if (IsRow(accounts_[i])) rows_.push_back(i);
}

bool NetworkAccounts::Tick(std::size_t row, bool ticked) {
    Account& account = At(row);
    if (account.IsListed || !account.From.IsWhole) return false;
    account.IsTicked = ticked;
    return true;
}

void NetworkAccounts::TickAll() {
    for (std::size_t row = 0; row < rows_.size(); ++row) Tick(row, true);
}

std::vector<NetworkChoice> NetworkAccounts::Ticked() const {
    std::vector<NetworkChoice> choices;
    for (const Account& account : accounts_)
        if (account.IsTicked) choices.push_back({account.User, account.From});
    return choices;
}

std::optional<std::size_t> NetworkAccounts::RowOfTicked(std::size_t place) const {
    for (std::size_t i = 0; i < accounts_.size(); ++i) {
        if (!accounts_[i].IsTicked || place-- > 0) continue;
        const auto row = std::ranges::find(rows_, i);
        return row == rows_.end() ? std::nullopt : std::optional<std::size_t>(row - rows_.begin());
    }
    return std::nullopt;
}

std::size_t NetworkAccounts::CountTicked() const {
    return static_cast<std::size_t>(std::ranges::count_if(accounts_, &Account::IsTicked));
}

std::string_view NetworkAccounts::Text(std::size_t row, std::size_t column) const {
    const Account& account = accounts_[rows_[row]];
    switch (column) {
    case kAccountName: return account.From.Name;
    case kAccountFullname: return account.From.Fullname;
    case kAccountUser: return account.User;
    default: return account.State;
    }
}

std::optional<NetworkFault> PlanNetworkUsers(std::span<const NetworkChoice> choices, const std::string& group,
                                             const std::string& like, std::vector<NamedRecord>& added) {
    using Field = NetworkFault::Field;
    added.clear();
    if (choices.empty()) {
        ShowError(kTickUsers);
        return NetworkFault{Field::List};
    }
    ListedNames listed;
    if (!ReadListedNames(listed)) return NetworkFault{Field::List};
    if (const auto faulty = FindFaultyName(choices, listed)) return NetworkFault{Field::Name, *faulty};
    const std::optional<StoredRecord> beginning = BeginningOf(RecordKind::User, like);
    if (!beginning) return NetworkFault{Field::Like};
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const auto record = RecordOf(choices[i], group, *beginning);
        if (!record) return NetworkFault{Field::Name, i};
        added.push_back({choices[i].Name, *record});
    }
    UserList list;
    if (list && CheckGroup(list, added.front().Record)) return std::nullopt;
    return NetworkFault{Field::Group};
}

std::size_t AddNetworkUsers(std::span<const NamedRecord> added, const SaveProgress& goOn) {
    const SavedUsers saved = SaveUsers(added, {}, RecordKind::User, goOn);
    if (saved.Added == added.size())
        ShowStatus(kImported, saved.Added, 0);
    else
        ShowStatus(kImportStopped, saved.Added, added.size(), 0, 0);
    return saved.Added;
}

bool ReadNetworkAccounts(const std::string& name, NetworkAccounts& accounts,
                         const std::function<bool(std::size_t read)>& goOn) {
    const std::string computer = platform::NetworkComputer(name);
    const std::string shown = computer.empty() ? "this computer" : computer;
    ShowStatus(kReadingNetworkUsers, shown);
    std::size_t read = 0;
    const auto take = [&](std::span<const platform::NetworkUser> page) {
        accounts.Add(page);
        read += page.size();
        return goOn(read);
    };
    const platform::NetworkReading reading = platform::TheNetworkUsers().Read(computer, take);
    SetStatusLine("", 1);
    if (reading.Error == 0) return true;
    ShowError(kNetworkUsersUnlisted, shown, reading.Fault, reading.Error);
    return false;
}

} // namespace bv
