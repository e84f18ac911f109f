#include "mailgw/mail_record.h"

#include <algorithm>

#include "ctlfile/key_fields.h"
#include "ctlfile/lines.h"

namespace bv {

std::string_view EffectiveUser(const MailUser& user) {
    const std::string_view mapped = user.EmailBrivname;
    return user.Profile && !mapped.empty() && !IsDefaultName(mapped) ? mapped : user.Brivname.View();
}

void ReadMailUser(const RecordWalker& records, MailUser& user) {
    WholeValue profile;
    const bool hasProfile = records.Get(MailKey::Profile, profile);
    user.Profile = hasProfile && ParseBool(profile).value_or(false);
    records.Get(MailKey::Brivname, user.Brivname);
    records.Get(MailKey::Emailname, user.Emailname);
    records.Get(MailKey::EmailBrivname, user.EmailBrivname);
    records.Get(MailKey::SubAddr, user.SubAddr);
    records.Get(MailKey::PrintRecd, user.PrintRecd);
    records.Get(MailKey::PrintSent, user.PrintSent);
}

std::string MailValue(const MailUser& user, MailKey::Index key) {
    switch (key) {
    case MailKey::Brivname: return user.Brivname.String();
    case MailKey::Emailname: return user.Emailname.String();
    case MailKey::EmailBrivname: return user.EmailBrivname.String();
    case MailKey::Profile: return ValueCodec<bool>::Text(user.Profile);
    case MailKey::SubAddr: return user.SubAddr.String();
    case MailKey::PrintRecd: return user.PrintRecd.String();
    case MailKey::PrintSent: break;
    }
    return user.PrintSent.String();
}

bool IsWritten(const MailUser& user, MailKey::Index key) {
    return key == MailKey::Brivname || key == MailKey::Emailname || !MailValue(user, key).empty();
}

std::string KeyLines(const MailUser& user) {
    std::string text;
    for (std::size_t i = 0; i < kMailUserKeys.size(); ++i) {
        const auto key = static_cast<MailKey::Index>(i);
        if (IsWritten(user, key))
            text.append(kMailUserKeys[i]).append(" ").append(MailValue(user, key)).append(kLineEnd);
    }
    return text;
}

std::string OtherLines(std::string_view body) {
    std::string text;
    std::string_view last;
    while (!body.empty()) {
        const std::string_view line = TakeLine(body);
        if (std::ranges::any_of(kMailUserKeys, [line](std::string_view key) { return BeginsWith(line, key); }))
            continue;
        text.append(line);
        last = line;
    }
    if (!text.empty() && !text.ends_with('\n')) text.append(kLineEnd);
    if (CountingPart(last).empty() && !text.empty()) return text;
    return text.append(kLineEnd);
}

} // namespace bv
