#include "whereused/where_used.h"

#include <algorithm>
#include <array>

#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "lcr/lcr_uses.h"
#include "mailgw/mail_list.h"
#include "platform/ascii.h"
#include "routing/routing_uses.h"
#include "shell/server_files.h"
#include "voice/format.h"

namespace bv {
namespace {

using Uses = std::vector<Use>;

bool Append(Uses& uses, std::optional<Uses> found) {
    if (found) uses.insert(uses.end(), found->begin(), found->end());
    return found.has_value();
}

// Mail users whose faxes go under the name.
bool AddMailUses(std::string_view name, Uses& uses) {
    return VisitMailUsers([&](const MailUser& user) {
        if (EqualFolded(EffectiveUser(user), name))
            uses.push_back({NameOf(ServerFile::MailList), FormatText("mail user %s", user.Emailname.View())});
        return true;
    });
}

// Devices and options that name a user: any paragraph of the settings may.
bool AddSettingUses(std::string_view name, Uses& uses) {
    static constexpr std::array<std::string_view, 2> kUserKeys = {"RecdUser:", "User:"};
    ControlStream file = OpenForReading(PathOf(ServerFile::Setup));
    if (!file) return false;
    ControlLine header;
    ControlLine line;
    while (FindParagraph(file, std::nullopt, header)) {
        while (FindKeyLine(file, std::nullopt, line)) {
            const bool names =
                std::ranges::any_of(kUserKeys, [&](std::string_view key) { return BeginsWith(line, key); });
            if (names && EqualFolded(KeyValue(line).value_or(""), name))
                uses.push_back({NameOf(ServerFile::Setup), FormatText("%s %s", header.View(), line.View())});
        }
    }
    return WasRead(file);
}

} // namespace

std::optional<Uses> FindUses(RecordKind kind, std::string_view name) {
    Uses uses;
    const bool isUser = kind == RecordKind::User;
    const bool isRead = (!isUser || Append(uses, FindLcrUses(LcrName::User, name))) &&
                        Append(uses, FindRoutingUses(name)) && (!isUser || AddMailUses(name, uses)) &&
                        AddSettingUses(name, uses);
    if (!isRead) return {};
    return uses;
}

bool AgreeToDeletion(RecordKind kind, std::string_view name) {
    const std::optional<Uses> uses = FindUses(kind, name);
    return uses && AskDespiteUses(*uses, name);
}

} // namespace bv
