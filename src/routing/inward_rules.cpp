#include "routing/inward_rules.h"

#include <algorithm>
#include <unordered_map>

#include "ctlfile/control_stream.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "routing/forwardings.h"
#include "routing/routing_file.h"
#include "routing/routing_messages.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::string_view kNoRules = "(no rules)";

template <class Rule, auto Read>
bool ReadKind(ControlStream& file, RoutingKind kind, std::vector<Rule>& rules) {
    rules.clear();
    return !HasRoutingParagraph(file, kind) || Read(file, [&rules](const Rule& rule) { rules.push_back(rule); });
}

// How often each key stands there, in any case.
class KeyCounts {
  public:
    void Add(std::string_view key) { ++counts_[UpperText(key)]; }
    [[nodiscard]] int Of(std::string_view key) const {
        const auto found = counts_.find(UpperText(key));
        return found == counts_.end() ? 0 : found->second;
    }

  private:
    std::unordered_map<std::string, int> counts_;
};

// Remarks on one rule, parted by semicolons.
class Remark {
  public:
    explicit Remark(const NameSet* names) : names_(names) {}

    void Add(const std::string& text) { text_.append(text_.empty() ? "" : "; ").append(text); }
    void CheckUser(std::string_view name) {
        if (name.empty()) return Add(FillMessage(kRoutesToNobody));
        if (names_ != nullptr && !names_->Has(name)) Add(FillMessage(kNoSuchUser, name));
    }
    void CheckAddressee(std::string_view name) {
        if (!IsSpecialWord(name)) CheckUser(name);
    }
    [[nodiscard]] const std::string& Text() const { return text_; }

  private:
    const NameSet* names_;
    std::string text_;
};

std::string SenderRemark(const SenderIdRule& rule, const NameSet* names, const KeyCounts& records,
                         const KeyCounts& entries, const std::string& entryKey) {
    Remark remark(names);
    const int sameKey = records.Of(SenderRecordKey(rule.RecordKey));
    if (sameKey > 1) remark.Add(FillMessage(kOneOfManyRecords, sameKey));
    if (rule.Addressee.empty()) return remark.Text();
    if (entries.Of(entryKey) > 1) remark.Add(FillMessage(kHasAnotherRule, rule.Addressee));
    remark.CheckAddressee(rule.Addressee);
    remark.CheckUser(rule.User);
    return remark.Text();
}

std::string_view AddresseeText(const SenderIdRule& rule) {
    return rule.Addressee.empty() ? kNoRules : std::string_view(rule.Addressee);
}

std::string NameOf(std::string_view sender, std::string_view addressee) {
    return std::string(sender).append("\t").append(addressee);
}

std::string EntryKey(const SenderIdRule& rule) { return std::to_string(rule.Record) + ':' + rule.Addressee; }

void FillSenders(RowTable& rows, const std::vector<SenderIdRule>& senders, const NameSet* names) {
    KeyCounts records;
    KeyCounts entries;
    int last = -1;
    for (const SenderIdRule& rule : senders) {
        if (rule.Record != last) records.Add(SenderRecordKey(rule.RecordKey));
        last = rule.Record;
        entries.Add(EntryKey(rule));
    }
    rows.Begin(kSenderColumns);
    for (const SenderIdRule& rule : senders) {
        rows.Add(rule.Sender);
        rows.Add(rule.Organisation);
        rows.Add(AddresseeText(rule));
        rows.Add(rule.User);
        rows.Add(SenderRemark(rule, names, records, entries, EntryKey(rule)));
    }
}

void FillSubAddresses(RowTable& rows, const std::vector<SubAddressRule>& subAddresses, const NameSet* names) {
    KeyCounts keys;
    for (const SubAddressRule& rule : subAddresses) keys.Add(rule.SubAddress);
    rows.Begin(kSubAddressColumns);
    for (const SubAddressRule& rule : subAddresses) {
        Remark remark(names);
        if (keys.Of(rule.SubAddress) > 1) remark.Add(FillMessage(kHasAnotherRule, rule.SubAddress));
        remark.CheckUser(rule.User);
        rows.Add(rule.SubAddress);
        rows.Add(rule.User);
        rows.Add(remark.Text());
    }
}

void FillForwards(RowTable& rows, const std::vector<ForwardRule>& forwards, const NameSet* names) {
    KeyCounts keys;
    for (const ForwardRule& rule : forwards) keys.Add(rule.User);
    const Forwardings ways(forwards);
    const auto circles = ways.InCircles();
    rows.Begin(kForwardColumns);
    for (const ForwardRule& rule : forwards) {
        Remark remark(names);
        if (keys.Of(rule.User) > 1) remark.Add(FillMessage(kHasAnotherRule, rule.User));
        remark.CheckAddressee(rule.User);
        remark.CheckUser(rule.Target);
        if (circles.contains(UpperText(rule.User))) remark.Add(FillMessage(kComesBack, ways.CircleText(rule.User)));
        rows.Add(rule.User);
        rows.Add(rule.Target);
        rows.Add(rule.Deletes ? "Move" : "Copy");
        rows.Add(remark.Text());
    }
}

} // namespace

bool ReadInwardRules(InwardRules& rules) {
    ControlStream file = OpenRoutingFile();
    return file && ReadKind<SenderIdRule, ReadSenderIdRules>(file, RoutingKind::Sender, rules.Senders) &&
           ReadKind<SubAddressRule, ReadSubAddressRules>(file, RoutingKind::SubAddress, rules.SubAddresses) &&
           ReadKind<ForwardRule, ReadForwardRules>(file, RoutingKind::Forward, rules.Forwards);
}

bool SayMissingParagraph(RoutingKind kind) {
    ControlStream file = OpenShared(PathOf(ServerFile::Routing), "rb");
    if (!file || HasRoutingParagraph(file, kind)) return false;
    if (kind == RoutingKind::Sender) ReadSenderIdRules(file, [](const SenderIdRule&) {});
    if (kind == RoutingKind::SubAddress) ReadSubAddressRules(file, [](const SubAddressRule&) {});
    if (kind == RoutingKind::Forward) ReadForwardRules(file, [](const ForwardRule&) {});
    return true;
}

std::map<std::string, std::string> UnreadForwards() {
    std::map<std::string, std::string> unread;
    ControlStream file = OpenShared(PathOf(ServerFile::Routing), "rb");
    ControlLine line;
    if (!file || !HasRoutingParagraph(file, RoutingKind::Forward)) return unread;
    while (FindKeyLine(file, std::nullopt, line)) {
        const auto key = KeyOfLine(line.View());
        if (key && !ParseForwardLine(line.View())) unread.emplace(UpperText(*key), line.View());
    }
    return unread;
}

bool ReadRoutingNames(NameSet& names) {
    UserListView view;
    view.IncludeGroups = true;
    return VisitUserRows(view, [&names](const UserRow& row) { names.Add(row.Name); });
}

std::vector<SenderIdRule> SenderRecordsOf(const std::vector<SenderIdRule>& rules, std::string_view sender) {
    const std::string key = SenderRecordKey(sender);
    std::vector<SenderIdRule> records;
    for (const auto name : {&SenderIdRule::RecordKey, &SenderIdRule::Sender}) {
        for (const SenderIdRule& rule : rules) {
            const bool isKnown = !records.empty() && records.back().Record == rule.Record;
            if (SenderRecordKey(rule.*name) == key && !isKnown) records.push_back(rule);
        }
        if (!records.empty()) break;
    }
    return records;
}

bool CheckOneSenderRecord(const std::vector<SenderIdRule>& records, std::string_view sender) {
    if (records.size() < 2) return true;
    ShowError(kSenderHasManyRecords, sender, records.size());
    return false;
}

bool IsSpecialWord(std::string_view name) { return name.size() > 2 && name.starts_with('(') && name.ends_with(')'); }

std::vector<std::string> SpecialWords(const InwardRules& rules) {
    std::vector<std::string> words = {std::string(kUnaddressed)};
    NameSet known = {kUnaddressed};
    const auto take = [&](const std::string& name) {
        if (!IsSpecialWord(name) || known.Has(name)) return;
        known.Add(name);
        words.push_back(name);
    };
    for (const SenderIdRule& rule : rules.Senders) take(rule.Addressee);
    for (const ForwardRule& rule : rules.Forwards) take(rule.User);
    return words;
}

std::string WhyUnused(RoutingKind kind) {
    if (kind == RoutingKind::Forward) return {};
    const std::string_view key = kind == RoutingKind::Sender ? "RouteSenderID" : "RouteSubAddr";
    ControlStream setup = OpenShared(PathOf(ServerFile::Setup), "rb");
    ControlLine line;
    bool isUsed = true;
    if (setup && FindParagraph(setup, "[QUEUEMAN]", line)) GetKeyBool(setup, std::string(key) + ':', isUsed);
    return isUsed ? std::string() : FillMessage(kRulesNotUsed, key);
}

std::string SenderRowName(const SenderIdRule& rule) { return NameOf(rule.Sender, AddresseeText(rule)); }

void InwardRows::Fill(RoutingKind kind, const InwardRules& rules, const NameSet* names) {
    kind_ = kind;
    if (kind == RoutingKind::Sender) FillSenders(*this, rules.Senders, names);
    if (kind == RoutingKind::SubAddress) FillSubAddresses(*this, rules.SubAddresses, names);
    if (kind == RoutingKind::Forward) FillForwards(*this, rules.Forwards, names);
}

std::string InwardRows::Name(std::size_t row) const {
    if (kind_ != RoutingKind::Sender) return RowTable::Name(row);
    return NameOf(Text(row, kSenderIdentifier), Text(row, kSenderAddressee));
}

} // namespace bv
