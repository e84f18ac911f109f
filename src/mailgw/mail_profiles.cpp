#include "mailgw/mail_profiles.h"

#include <array>

#include "ctlfile/reading.h"
#include "ctlfile/records.h"
#include "ctlfile/whole_file.h"
#include "shell/server_files.h"
#include "users/user_file.h"

namespace bv {

bool ProfileUsers::Read() {
    static constexpr std::array<std::string_view, 2> kUserKeys = {kNameKey, "MailName:"};
    if (IsMissing(PathOf(ServerFile::UserList))) return true;
    ControlStream list = OpenForReading(PathOf(ServerFile::UserList));
    if (!list) return false;
    RecordWalker records(list, RecordHeader(RecordKind::User), kUserKeys);
    WholeValue name;
    WholeValue mailName;
    std::unordered_set<std::string> others;
    while (records.Next()) {
        records.Get(0, name);
        records.Get(1, mailName);
        const std::string key = UpperText(name);
        if (!mailName.View().starts_with('*')) {
            others.insert(key);
        } else if (!others.contains(key) && names_.insert(key).second) {
            listed_.push_back(name.String());
        }
    }
    return WasRead(list);
}

} // namespace bv
