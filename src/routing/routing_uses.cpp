#include "routing/routing_uses.h"

#include <string>

#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "routing/routing_file.h"
#include "shell/server_files.h"
#include "voice/format.h"

namespace bv {
namespace {

// Takes the rules of one kind, when the file has its paragraph.
template <class Rule, class Read, class Visit>
bool Walk(ControlStream& file, RoutingKind kind, Read read, Visit visit) {
    return !HasRoutingParagraph(file, kind) || read(file, std::function<void(const Rule&)>(visit));
}

} // namespace

std::optional<std::vector<Use>> FindRoutingUses(std::string_view name) {
    std::vector<Use> uses;
    if (IsMissing(PathOf(ServerFile::Routing))) return uses;
    ControlStream file = OpenRoutingFile();
    if (!file) return {};
    const auto add = [&uses](std::string where) { uses.push_back({NameOf(ServerFile::Routing), std::move(where)}); };
    const auto isIt = [name](std::string_view other) { return EqualFolded(other, name); };
    const bool isRead = Walk<SenderIdRule>(file, RoutingKind::Sender, ReadSenderIdRules,
                                           [&](const SenderIdRule& rule) {
                                               if (isIt(rule.Addressee) || isIt(rule.User))
                                                   add(FormatText("sender %s for %s", rule.Sender, rule.Addressee));
                                           }) &&
                        Walk<SubAddressRule>(file, RoutingKind::SubAddress, ReadSubAddressRules,
                                             [&](const SubAddressRule& rule) {
                                                 if (isIt(rule.User))
                                                     add(FormatText("sub-address %s", rule.SubAddress));
                                             }) &&
                        Walk<ForwardRule>(file, RoutingKind::Forward, ReadForwardRules, [&](const ForwardRule& rule) {
                            if (isIt(rule.User) || isIt(rule.Target))
                                add(FormatText("forwarding from %s to %s", rule.User, rule.Target));
                        });
    if (!isRead) return {};
    return uses;
}

} // namespace bv
