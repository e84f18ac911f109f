#include "mailgw/mail_uses.h"

#include <array>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/text_edits.h"
#include "ctlfile/whole_file.h"
#include "mailgw/mail_messages.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/user_file.h"
#include "voice/messages.h"

namespace bv {
namespace {

enum Key : std::size_t { kBrivname, kEmailname, kEmailBrivname };
constexpr std::array<std::string_view, 3> kKeys = {"Brivname:", "Emailname:", "EmailBrivname:"};
constexpr std::array kNameKeys = {kKeys[kBrivname], kKeys[kEmailBrivname]};

using MailNames = std::unordered_map<std::string, std::string>; // of users, by their names in upper case

// Those of the users that are looked for. None after 413 or 9011.
std::optional<MailNames> ReadMailNames(const NameSet& names) {
    static constexpr std::array<std::string_view, 2> kUserKeys = {kNameKey, "MailName:"};
    MailNames found;
    if (IsMissing(PathOf(ServerFile::UserList))) return found;
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return {};
    RecordWalker records(list, RecordHeader(RecordKind::User), kUserKeys);
    WholeValue name;
    WholeValue mailName;
    while (records.Next()) {
        records.Get(0, name);
        if (names.Has(name) && records.Get(1, mailName)) found.try_emplace(UpperText(name), mailName.String());
    }
    if (!WasRead(list)) return {};
    return found;
}

// Visits the records that name one of them, until the list's end.
using Visitor = std::function<void(const RecordWalker& record, const Use& use)>;
void VisitUses(ControlStream& list, const NameSet& names, const MailNames& mailNames, const Visitor& visit) {
    RecordWalker records(list, RecordHeader(RecordKind::User), kKeys);
    WholeValue name;
    WholeValue other;
    WholeValue email;
    while (records.Next()) {
        records.Get(kBrivname, name);
        records.Get(kEmailBrivname, other);
        records.Get(kEmailname, email);
        const bool isSender = names.Has(name);
        if (!isSender && !names.Has(other)) continue;
        const auto own = mailNames.find(UpperText(name));
        visit(records, {.File = NameOf(ServerFile::MailList),
                        .Where = FormatText("mail user %s", email.View()),
                        .Kind = UseKind::Entry,
                        .Name = isSender ? name.String() : other.String(),
                        .GoesWithIt = own != mailNames.end() && EqualFolded(own->second, email)});
    }
}

// The record's lines with the new name.
std::string Renamed(std::string_view body, const NameSet& names, const std::string& by) {
    std::string text;
    while (!body.empty()) {
        const std::string_view line = TakeLine(body);
        std::string newLine(line);
        for (const std::string_view key : kNameKeys) {
            if (BeginsWith(line, key) && names.Has(KeyValue(CleanLine(line)).value_or("")))
                newLine = KeyedLine(key, by).append(kLineEnd);
        }
        text += newLine;
    }
    return text;
}

} // namespace

std::optional<std::vector<Use>> FindMailUses(const NameSet& names) {
    const std::optional<MailNames> mailNames = ReadMailNames(names);
    std::vector<Use> uses;
    if (!mailNames || IsMissing(PathOf(ServerFile::MailList))) return mailNames ? std::optional(uses) : std::nullopt;
    ControlStream list = OpenForReading(PathOf(ServerFile::MailList));
    if (!list) return {};
    VisitUses(list, names, *mailNames, [&uses](const RecordWalker&, const Use& use) { uses.push_back(use); });
    if (!WasRead(list)) return {};
    return uses;
}

bool ChangeMailUses(const NameSet& names, const UseChange& change) {
    const std::optional<MailNames> mailNames = ReadMailNames(names);
    if (!mailNames) return false;
    std::vector<std::string> left;
    const bool isDone = EditControlFile(PathOf(ServerFile::MailList), [&](ControlStream& held) {
        TextEdits edits;
        UseEffects effects(change);
        VisitUses(held, names, *mailNames, [&](const RecordWalker& record, const Use& use) {
            const auto body =
                held.Seen(record.BodyStart(), static_cast<std::size_t>(record.End() - record.BodyStart()));
            if (effects.Of(use) == UseEffect::Becomes) {
                edits.push_back({record.BodyStart(), record.End(), Renamed(body, names, change.By)});
            } else if (!use.GoesWithIt) {
                edits.push_back({record.Start(), record.End(), {}});
                left.push_back(use.Name);
            }
        });
        return edits;
    });
    if (!isDone) return false;
    for (const std::string& name : left) ShowStatus(kUserKeptFromGateway, name);
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
