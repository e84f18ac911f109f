#include "users/receiver.h"

#include "ctlfile/whole_file.h"
#include "shell/server_files.h"
#include "users/user_list.h"
#include "voice/messages.h"

namespace bv {

bool CheckReceiver(std::string_view name) {
    if (name.empty() || IsMissing(PathOf(ServerFile::UserList))) return true;
    UserList list;
    if (!list) return false;
    if (list.Has(name, RecordKind::User) || list.Has(name, RecordKind::Group)) return true;
    if (list.IsRead()) ShowNotFound(name, RecordKind::User);
    return false;
}

} // namespace bv
