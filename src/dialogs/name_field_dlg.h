// A field for the name of a user or a group: typed, chosen from the drop-down list, or from the dialog behind its
// button.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialogs/dialog_dlg.h"
#include "users/user_rows.h"

namespace bv {

enum NameKinds : unsigned { kUserNames = 1, kGroupNames = 2, kUserAndGroupNames = 3 };

class NameField : public DialogPart {
  public:
    // Takes up a combo box that can be typed into, and a button (0: none), of a dialog that is being filled. A word for
    // no name, "(no group)", stands first, if there is one. A name that is chosen is told as one that is typed
    // (CBN_EDITCHANGE).
    void Begin(HWND dialog, int combo, int button, NameKinds kinds, const std::string& noName);

    // Words that stand for other than a user, first in the list.
    void Offer(std::vector<std::string> words) { words_ = std::move(words); }

    void Put(const std::string& name);

    // The name as it was typed or chosen, empty for no name. False after 9209.
    bool Take(std::string& name) const;

    bool Answer(const DialogMessage& message, INT_PTR& result) override;

  private:
    void FillList();
    void TellChange() const;

    HWND dialog_ = nullptr;
    int combo_ = 0;
    int button_ = 0;
    NameKinds kinds_ = kUserNames;
    std::string noName_;
    std::vector<std::string> words_;
    bool isFilled_ = false;
};

// Opens the dialog that has users, groups or both to choose from, one or several. The names; none when it is cancelled.
std::vector<std::string> ChooseNames(HWND owner, NameKinds kinds, bool several);

INT_PTR CALLBACK SelectUserDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
