#include "mailgw/mail_user_edit.h"

#include <algorithm>
#include <vector>

#include "ctlfile/lines.h"
#include "ctlfile/text_edits.h"
#include "mailgw/mail_list.h"
#include "mailgw/mail_messages.h"
#include "mailgw/mail_profiles.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {
namespace {

WholeValue* PlaceOf(MailUser& user, MailKey::Index key) {
    switch (key) {
    case MailKey::Brivname: return &user.Brivname;
    case MailKey::EmailBrivname: return &user.EmailBrivname;
    case MailKey::SubAddr: return &user.SubAddr;
    case MailKey::PrintRecd: return &user.PrintRecd;
    case MailKey::PrintSent: return &user.PrintSent;
    case MailKey::Emailname:
    case MailKey::Profile: break;
    }
    return nullptr;
}

std::vector<std::string> LinesOf(std::string_view body) {
    std::vector<std::string> lines;
    while (!body.empty()) {
        lines.emplace_back(TakeLine(body));
        if (!lines.back().ends_with('\n')) lines.back().append(kLineEnd);
    }
    return lines;
}

bool HasKey(const std::string& line, std::size_t key) { return BeginsWith(line, kMailUserKeys.at(key)); }

// Gives a key another value: in its first line, or in one behind the keys that are written before it.
void SetLine(std::vector<std::string>& lines, std::size_t key, const MailUser& after) {
    const auto index = static_cast<MailKey::Index>(key);
    const auto hasKey = [key](const std::string& line) { return HasKey(line, key); };
    if (!IsWritten(after, index)) {
        std::erase_if(lines, hasKey);
        return;
    }
    const std::string line = KeyedLine(kMailUserKeys.at(key), MailValue(after, index)).append(kLineEnd);
    if (const auto found = std::ranges::find_if(lines, hasKey); found != lines.end()) {
        *found = line;
        return;
    }
    auto place = lines.begin();
    for (auto at = lines.begin(); at != lines.end(); ++at)
        for (std::size_t earlier = 0; earlier < key; ++earlier)
            if (HasKey(*at, earlier)) place = at + 1;
    lines.insert(place, line);
}

std::string ChangedBody(std::string_view body, const MailUser& before, const MailUser& after) {
    std::vector<std::string> lines = LinesOf(body);
    for (std::size_t key = 0; key < kMailUserKeys.size(); ++key) {
        const auto index = static_cast<MailKey::Index>(key);
        if (MailValue(before, index) != MailValue(after, index)) SetLine(lines, key, after);
    }
    std::string text;
    for (const std::string& line : lines) text += line;
    return text;
}

// Writes the first record that is as the one before. False after 9025 or a message of EditControlFile.
bool Write(const MailUser& before, const MailUser& after) {
    bool isFound = false;
    const bool isEdited = EditControlFile(PathOf(ServerFile::MailList), [&](ControlStream& held) {
        TextEdits edits;
        RecordWalker records(held, kMailUserHeader, kMailUserKeys);
        MailUser user;
        while (records.Next()) {
            ReadMailUser(records, user);
            if (isFound || user != before) continue;
            isFound = true;
            const auto size = static_cast<std::size_t>(records.End() - records.BodyStart());
            edits.push_back(
                {records.BodyStart(), records.End(), ChangedBody(held.Seen(records.BodyStart(), size), before, after)});
        }
        return edits;
    });
    if (isEdited && !isFound) ShowError(kChangedMeanwhile, before.Emailname.View());
    return isEdited && isFound;
}

std::string KeyName(MailKey::Index key) {
    const std::string_view name = kMailUserKeys.at(key);
    return std::string(name.substr(0, name.size() - 1));
}

// The server user as the user list has it; false after "Brivane user %s not found" or a message about the list.
bool TakeListedName(WholeValue& name) {
    UserList list;
    if (!list) return false;
    const std::optional<std::string> listed = list.NameOf(name, RecordKind::User);
    if (listed) name = *listed;
    if (!listed && list.IsRead()) ShowNotFound(name, RecordKind::User);
    return listed.has_value() && list.IsRead();
}

// Whether nobody else has the account name; false after 9425 or a message about the list.
bool CheckAccount(const WholeValue& account) {
    if (account.IsEmpty() || IsDefaultName(account)) return true;
    bool isTaken = false;
    const bool isRead = VisitMailUsers([&](const MailUser& user) {
        isTaken = EqualFolded(user.EmailBrivname, account);
        return !isTaken;
    });
    if (isTaken) ShowError(kAccountInUse, account.View());
    return isRead && !isTaken;
}

} // namespace

std::size_t LimitOfMailValue(MailKey::Index key) { return kMaxLine - kMailUserKeys.at(key).size() - 1; }

std::optional<std::string> SetMailValue(MailUser& user, MailKey::Index key, std::string_view text) {
    WholeValue* place = PlaceOf(user, key);
    if (place == nullptr) return FillMessage(kNotKeptInMailList, KeyName(key), text);
    if (text == place->View()) return {};
    const bool isKept = text.size() <= LimitOfMailValue(key) && TrimBlanks(text) == text &&
                        FindControl(text, 0) == text.size() && (!text.empty() || key != MailKey::Brivname);
    if (!isKept) return FillMessage(kNotKeptInMailList, KeyName(key), text);
    *place = text;
    return {};
}

bool ReadListedMailUser(std::size_t number, std::optional<MailUser>& user) {
    user.reset();
    std::size_t at = 0;
    return VisitMailUsers([&](const MailUser& listed) {
        if (at++ == number) user = listed;
        return !user;
    });
}

std::optional<MailUserFault> SaveMailUser(const MailUser& before, MailUser after) {
    if (after == before) return {};
    if (after.Brivname != before.Brivname && !TakeListedName(after.Brivname)) return {{MailKey::Brivname}};
    const bool hasNewAccount = !EqualFolded(after.EmailBrivname, before.EmailBrivname);
    if (hasNewAccount && !CheckAccount(after.EmailBrivname)) return {{MailKey::EmailBrivname}};
    ProfileUsers profiles;
    if (!profiles.Read()) return {{MailKey::Emailname}};
    after.Profile = profiles.Has(after.Brivname);
    if (!Write(before, after)) return {{MailKey::Emailname}};
    Startup().SettingsChanged = true;
    ShowStatus(kModified, "mail user", after.Emailname.View());
    return {};
}

} // namespace bv
