#include "mailgw/mail_user_rows.h"

#include <algorithm>

#include "mailgw/mail_list.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

std::string_view BeforeTab(std::string_view name) { return name.substr(0, name.find('\t')); }

// "John Smith" as "Smith John".
std::string Reversed(std::string_view name) {
    const std::size_t blank = name.find(' ');
    if (blank == std::string_view::npos) return std::string(name);
    return std::string(name.substr(blank + 1)).append(" ").append(name.substr(0, blank));
}

// What the remarks on records need.
struct Surroundings {
    MailDirectory Directory;
    NameSet Users;
    std::unordered_map<std::string, std::size_t> Times; // that a name in upper case is listed
};

bool ReadUserNames(NameSet& names) {
    UserListView everybody;
    everybody.IncludeDefault = true;
    return VisitUserRows(everybody, [&](const UserRow& row) { names.Add(row.Name); });
}

std::string RemarkOf(const MailUser& user, const MailPerson* person, const Surroundings& around) {
    std::string remark;
    const auto add = [&remark](const std::string& text) { remark.append(remark.empty() ? "" : ", ").append(text); };
    if (IsDefaultName(user.Brivname)) add(FillMessage(kIsDefaultUser));
    if (!around.Users.Has(user.Brivname)) add(FillMessage(kNoSuchUser, user.Brivname.View()));
    if (user.Profile && (user.EmailBrivname.IsEmpty() || IsDefaultName(user.EmailBrivname)))
        add(FillMessage(kProfileWithoutAccount));
    const auto times = around.Times.find(UpperText(user.Emailname));
    if (times != around.Times.end() && times->second > 1) add(FillMessage(kListedTimes, times->second));
    if (person == nullptr && !around.Directory.People().empty()) add(FillMessage(kNotInMailSystem));
    return remark;
}

} // namespace

bool MailDirectory::Read() {
    byName_.clear();
    const bool isRead = ReadMailDirectory(people_);
    byName_.reserve(people_.size());
    for (std::size_t i = 0; i < people_.size(); ++i) byName_.try_emplace(UpperText(people_[i].Name), i);
    return isRead;
}

const MailPerson* MailDirectory::Find(std::string_view name) const {
    auto found = byName_.find(UpperText(BeforeTab(name)));
    if (found == byName_.end()) found = byName_.find(UpperText(Reversed(BeforeTab(name))));
    return found == byName_.end() ? nullptr : &people_[found->second];
}

bool MailUserRows::Read() {
    profiles_ = 0;
    shown_.clear();
    all_.Begin(kMailUserColumns);
    Surroundings around;
    if (!ReadUserNames(around.Users)) return false;
    around.Directory.Read();
    const auto count = [&](const MailUser& user) { return ++around.Times[UpperText(user.Emailname)] != 0; };
    if (!VisitMailUsers(count)) return false;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        const MailPerson* person = around.Directory.Find(user.Emailname);
        all_.Add(user.Emailname);
        all_.Add(EffectiveUser(user));
        all_.Add(user.Brivname);
        all_.Add(user.Profile ? "yes" : "");
        all_.Add(person == nullptr ? std::string_view() : person->Address);
        all_.Add(RemarkOf(user, person, around));
        profiles_ += user.Profile ? 1 : 0;
        return true;
    });
    Show(what_, std::string(serverUser_));
    return isRead;
}

bool MailUserRows::IsShown(std::size_t record) const {
    switch (what_) {
    case MailUserShow::All: return true;
    case MailUserShow::OfServerUser: return EqualFolded(all_.Text(record, kMailUserSendsAs), serverUser_);
    case MailUserShow::Profiles: return !all_.Text(record, kMailUserProfile).empty();
    case MailUserShow::Remarks: break;
    }
    return !all_.Text(record, kMailUserRemark).empty();
}

void MailUserRows::Show(MailUserShow what, std::string_view serverUser) {
    what_ = what;
    serverUser_ = serverUser;
    shown_.clear();
    for (std::size_t record = 0; record < all_.Count(); ++record)
        if (IsShown(record)) shown_.push_back(static_cast<std::uint32_t>(record));
}

std::string MailUserRows::Name(std::size_t row) const {
    return std::string(Text(row, kMailUserName)).append("\n").append(Text(row, kMailUserServer));
}

ListedMailUser MailUserRows::User(std::size_t row) const {
    return {std::string(Text(row, kMailUserServer)), std::string(Text(row, kMailUserName))};
}

std::string MailUserRows::CountText() const { return FillMessage(kMailUsersCounted, all_.Count(), profiles_); }

bool MailPeople::Read() {
    std::unordered_map<std::string, Person> kept; // what the person has entered
    for (Person& person : people_)
        if (person.IsTicked) kept.try_emplace(UpperText(person.Name), std::move(person));
    people_.clear();
    std::unordered_map<std::string, std::string> senders;
    const bool isListRead = VisitMailUsers([&](const MailUser& user) {
        senders.try_emplace(UpperText(BeforeTab(user.Emailname)), EffectiveUser(user));
        return true;
    });
    std::vector<MailPerson> people;
    const std::optional<NameSet> taken = ReadTakenAccounts();
    if (!isListRead || !taken || !ReadMailDirectory(people)) return false;
    taken_ = *taken;
    for (MailPerson& person : people) {
        const auto sender = senders.find(UpperText(person.Name));
        people_.push_back({std::move(person.Name), std::move(person.Address),
                           sender == senders.end() ? std::string() : sender->second});
        const auto before = kept.find(UpperText(people_.back().Name));
        if (before == kept.end()) continue;
        people_.back().IsTicked = people_.back().Sender.empty();
        people_.back().Account = std::move(before->second.Account);
        kept.erase(before);
    }
    for (auto& [name, person] : kept)
        if (person.IsByHand && !senders.contains(name)) people_.push_back(std::move(person));
    MakeAccounts();
    return true;
}

void MailPeople::GiveAccounts(bool given, std::string_view expression) {
    const bool isOther = expression_ != expression;
    hasAccounts_ = given;
    expression_ = expression;
    if (isOther)
        for (Person& person : people_) person.Account.clear();
    MakeAccounts();
}

void MailPeople::MakeAccounts() {
    AccountName account;
    for (Person& person : people_) {
        if (!hasAccounts_ || !person.Account.empty()) continue;
        if (MakeMailAccountName(person.Name, expression_, account)) person.Account = account.String();
    }
    ShowStates();
}

void MailPeople::ShowStates() {
    std::vector<std::string> accounts;
    for (const Person& person : people_)
        accounts.push_back(hasAccounts_ && !IsListed(accounts.size()) ? person.Account : std::string());
    const std::vector<bool> clashes = ClashingAccountNames(accounts, taken_);
    for (std::size_t row = 0; row < people_.size(); ++row) {
        Person& person = people_[row];
        person.State.clear();
        if (!person.Sender.empty())
            person.State = FillMessage(kSendsAlready, person.Sender);
        else if (hasAccounts_ && person.Account.empty())
            person.State = FillMessage(kNameComesToNothing);
        else if (clashes[row])
            person.State = FillMessage(kAccountIsInUse);
    }
}

bool MailPeople::Add(std::string_view name) {
    if (!CheckEmailName(name)) return false;
    const auto found =
        std::ranges::find_if(people_, [&](const Person& person) { return EqualFolded(person.Name, name); });
    if (found != people_.end()) {
        found->IsTicked = found->IsByHand = true; // also one who is in the list: that is asked about
        return true;
    }
    std::optional<MailUser> listed;
    if (!FindMailUser(name, listed)) return false;
    people_.push_back({.Name = std::string(name),
                       .Address = {},
                       .Sender = listed ? std::string(EffectiveUser(*listed)) : std::string(),
                       .IsTicked = true,
                       .IsByHand = true});
    MakeAccounts();
    return true;
}

void MailPeople::Tick(std::size_t row, bool ticked) { people_[row].IsTicked = ticked && !IsListed(row); }

void MailPeople::SetAccount(std::size_t row, std::string_view account) {
    people_[row].Account = account;
    ShowStates();
}

std::vector<NewMailUser> MailPeople::Ticked() const {
    std::vector<NewMailUser> ticked;
    for (const Person& person : people_)
        if (person.IsTicked) ticked.push_back({person.Name, hasAccounts_ ? person.Account : std::string()});
    return ticked;
}

std::size_t MailPeople::RowOfTicked(std::size_t index) const {
    for (std::size_t row = 0; row < people_.size(); ++row)
        if (people_[row].IsTicked && index-- == 0) return row;
    return kNone;
}

std::string_view MailPeople::Text(std::size_t row, std::size_t column) const {
    const Person& person = people_[row];
    switch (column) {
    case kPersonName: return person.Name;
    case kPersonAddress: return person.Address;
    case kPersonAccount: return hasAccounts_ && !IsListed(row) ? std::string_view(person.Account) : std::string_view();
    default: return person.State;
    }
}

} // namespace bv
