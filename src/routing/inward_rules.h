// All rules of inward routing at one look, and what of them will not work.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "routing/routing_lines.h"
#include "shell/name_set.h"
#include "shell/row_table.h"

namespace bv {

struct InwardRules {
    std::vector<SenderIdRule> Senders;
    std::vector<SubAddressRule> SubAddresses;
    std::vector<ForwardRule> Forwards;
};

// Reads the rules of all kinds, each in file order, from the routing file, which is made when there is none. A
// paragraph that is missing has no rules. False after a message of OpenRoutingFile or 9011.
bool ReadInwardRules(InwardRules& rules);

// Says that the paragraph of a kind is missing, if it is (ReadSenderIdRules and so on).
bool SayMissingParagraph(RoutingKind kind);

// The lines of the forwarding paragraph that have a user's key, in upper case, and are no rule to a reader.
std::map<std::string, std::string> UnreadForwards();

// The names of all users and groups; false after 413 or 9011.
bool ReadRoutingNames(NameSet& names);

// The first rule of each of a sender's records: of those with its key or, without one, of those with its identifier,
// which somebody has filed under another key.
std::vector<SenderIdRule> SenderRecordsOf(const std::vector<SenderIdRule>& rules, std::string_view sender);

// Whether the sender has no more than one record, of which a single rule can be changed; false after 9139.
bool CheckOneSenderRecord(const std::vector<SenderIdRule>& records, std::string_view sender);

// A word such as this one stands for faxes that name nobody.
inline constexpr std::string_view kUnaddressed = "(unaddressed)";
bool IsSpecialWord(std::string_view name);

// The special words that the rules have, "(unaddressed)" first, which is always among them.
std::vector<std::string> SpecialWords(const InwardRules& rules);

// The key of the server's settings that says whether rules of a kind are used, when it is NO, in a sentence (9330);
// empty when they are used, or that cannot be read.
std::string WhyUnused(RoutingKind kind);

// The name by which a list finds a sender's rule again: several have one text in the first column.
std::string SenderRowName(const SenderIdRule& rule);

// Rules of a kind as rows of a list, in file order; the last column has what will not work: users who are not there
// (9332), other rules for the same (9333), faxes that come back (9334), one of several records of a sender (9335).
enum SenderColumn {
    kSenderIdentifier,
    kSenderOrganisation,
    kSenderAddressee,
    kSenderUser,
    kSenderRemark,
    kSenderColumns
};
enum SubAddressColumn { kSubAddressNumber, kSubAddressUser, kSubAddressRemark, kSubAddressColumns };
enum ForwardColumn { kForwardUser, kForwardTarget, kForwardDeletes, kForwardRemark, kForwardColumns };

class InwardRows : public RowTable {
  public:
    // Names are not looked at without their list.
    void Fill(RoutingKind kind, const InwardRules& rules, const NameSet* names);

    // Of a sender's rule, SenderRowName.
    [[nodiscard]] std::string Name(std::size_t row) const override;

  private:
    RoutingKind kind_ = RoutingKind::Sender;
};

} // namespace bv
