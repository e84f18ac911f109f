#include "routing/routing_uses.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/text_edits.h"
#include "ctlfile/whole_file.h"
#include "platform/ascii.h"
#include "routing/routing_file.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/format.h"

namespace bv {
namespace {

// What of a rule names one of those looked for: its key, and the value that does; empty for one that does not.
struct NamedIn {
    std::string Key;
    std::string Value;
};

// Visits the rules that name one of those looked for, each right after its line was read.
class RoutingWalk {
  public:
    using Visitor = std::function<void(const Use& use, const NamedIn& named)>;

    RoutingWalk(ControlStream& file, const NameSet& names) : file_(file), names_(names) {}

    // False after a message.
    bool Run(const Visitor& visit) {
        return Walk(nullptr) && Walk(visit); // the first time for the keys alone
    }

  private:
    bool Walk(const Visitor& visit) {
        const auto sender = [&](const SenderIdRule& rule) {
            Take(rule.Record, rule.Addressee, rule.User, visit,
                 FormatText("sender %s for %s", rule.Sender, rule.Addressee));
        };
        const auto subAddress = [&](const SubAddressRule& rule) {
            Take(kNoKeys, {}, rule.User, visit, FormatText("sub-address %s", rule.SubAddress));
        };
        const auto forward = [&](const ForwardRule& rule) {
            Take(kForwards, rule.User, rule.Target, visit,
                 FormatText("forwarding from %s to %s", rule.User, rule.Target));
        };
        return (!HasRoutingParagraph(file_, RoutingKind::Sender) || ReadSenderIdRules(file_, sender)) &&
               (!HasRoutingParagraph(file_, RoutingKind::SubAddress) || ReadSubAddressRules(file_, subAddress)) &&
               (!HasRoutingParagraph(file_, RoutingKind::Forward) || ReadForwardRules(file_, forward));
    }

    void Take(int group, const std::string& key, const std::string& value, const Visitor& visit,
              const std::string& where) {
        std::vector<std::string>& keys = keys_[group];
        if (visit == nullptr) return keys.push_back(key);
        const NamedIn named = {names_.Has(key) ? key : "", names_.Has(value) ? value : ""};
        if (named.Key.empty() && named.Value.empty()) return;
        Use use = {.File = NameOf(ServerFile::Routing), .Where = where, .Kind = UseKind::Entry};
        use.Name = named.Key.empty() ? value : key;
        if (!named.Key.empty()) {
            use.Barred = keys;
            use.KeyOf = std::to_string(group);
        }
        if (group == kForwards) use.Barred.push_back(named.Key.empty() ? key : value);
        use.IsBothEnds = group == kForwards && !named.Key.empty() && !named.Value.empty();
        visit(use, named);
    }

    static constexpr int kForwards = -1; // beside the records of senders, which are numbered from 0
    static constexpr int kNoKeys = -2;

    ControlStream& file_;
    const NameSet& names_;
    std::map<int, std::vector<std::string>> keys_; // of the rules that stand together
};

// The line with another name; the value of a forwarding is in quotes.
std::string Renamed(std::string line, const NamedIn& named, const std::string& name) {
    const std::size_t colon = line.find(':');
    if (!named.Value.empty()) {
        const std::string folded = UpperText(line);
        const std::string value = UpperText(named.Value);
        const std::size_t quoted = folded.rfind('"' + value + '"');
        const std::size_t place = quoted != std::string::npos ? quoted + 1 : folded.find(value, colon);
        line.replace(place, value.size(), name);
    }
    if (!named.Key.empty()) line.replace(0, colon + 1, RoutingKey(name));
    return line;
}

TextEdits PlanChange(ControlStream& held, const NameSet& names, const UseChange& change) {
    TextEdits edits;
    UseEffects effects(change);
    RoutingWalk(held, names).Run([&](const Use& use, const NamedIn& named) {
        TextEdit edit = EditLastLine(held, {});
        if (effects.Of(use) != UseEffect::Goes) {
            const std::string line = CleanLine(held.Seen(edit.From, static_cast<std::size_t>(edit.To - edit.From)));
            edit = EditLastLine(held, Renamed(line, named, change.By));
        }
        edits.push_back(std::move(edit));
    });
    std::ranges::sort(edits, {}, &TextEdit::From);
    return edits;
}

} // namespace

std::optional<std::vector<Use>> FindRoutingUses(const NameSet& names) {
    std::vector<Use> uses;
    if (IsMissing(PathOf(ServerFile::Routing))) return uses;
    ControlStream file = OpenRoutingFile();
    if (!file) return {};
    if (!RoutingWalk(file, names).Run([&](const Use& use, const NamedIn&) { uses.push_back(use); })) return {};
    return uses;
}

bool ChangeRoutingUses(const NameSet& names, const UseChange& change) {
    if (!OpenRoutingFile()) return false;
    const auto plan = [&](ControlStream& held) { return PlanChange(held, names, change); };
    if (!EditControlFile(PathOf(ServerFile::Routing), plan)) return false;
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
