// The details of a user, a user group or their default record.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "dialogs/services_dlg.h"
#include "users/user_file.h"

namespace bv {

// Asks for a new record, which begins with the default one or with another one's values (its names excepted), and adds
// it. Its name; none when it was cancelled or nothing could be read.
struct NewUser {
    RecordKind Kind = RecordKind::User;
    bool IsProfile = false; // a mail user profile
    std::string Like;       // the record that is cloned
    const DialogServices* Services = nullptr;
};
std::optional<std::string> AddUserByDialog(HWND owner, const NewUser& what);

// Shows a record and changes it; the default record without a name, which is made first when there is none and the
// person agrees.
void EditUserByDialog(HWND owner, RecordKind kind, const std::optional<std::string>& name,
                      const DialogServices* services = nullptr);

INT_PTR CALLBACK ConfigUsersDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
