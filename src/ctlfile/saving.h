// What is said while a control file is saved.
#pragma once

#include <functional>
#include <string>

#include "ctlfile/copy_back.h"

namespace bv {

enum class AfterFailure { SayNothingMore, SayUpdated };

// Runs the save of the file between statuses 470 and 471. When it fails 5000 is shown, and as told 471 all the same.
bool SayingSave(const std::string& path, const std::function<bool()>& save, AfterFailure after = {});

// True when both files of the rewrite are open; else false, after 413 with the one that is not.
bool CheckOpened(const Rewrite& rewrite);

// The same for an opened rewrite, of which `write` does what is to be done before its end.
bool SaveRewrite(Rewrite& rewrite, const std::function<bool()>& write, AfterFailure after = {});

// The change that gives the file a whole new text.
bool ReplaceText(Rewrite& rewrite, std::string_view newText);

} // namespace bv
