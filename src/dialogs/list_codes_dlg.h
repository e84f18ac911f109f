// Notifications of lists to their dialogs' commands.
#pragma once

namespace bv {

enum ListCode : int {
    kListSelected = 0x7E00, // other rows are selected, or ticked
    kListOpen,              // double click
    kListRename,            // F2
    kListAdd,               // Ins
    kListDelete,            // Del
    kListReload,            // F5
    kListMoveUp,            // Alt+Up
    kListMoveDown,          // Alt+Down
};

} // namespace bv
