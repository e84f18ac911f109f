// What a save that was cut off has left beside a control file.
//
// A program that is killed while it copies its temporary back leaves the file torn, and its complete new text in the
// temporary (copy_back.h). So a temporary counts as left over when it differs from the file, begins with the same
// header, is no older than the file, and no living writer holds it. Readers speak of it; a writer puts it aside
// before it makes its own; recovery.h puts it in place. Any other temporary says nothing, and is written over.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctlfile/control_stream.h"

namespace bv {

struct Leftover {
    std::string Path;
    std::string Text;

    // A text that was still being written when its program ended, as a rule does not end with a line.
    [[nodiscard]] bool IsCutOff() const { return !Text.ends_with('\n'); }
};

// For a file that has just been opened: says 9013 in status line 2 when a temporary is left over, once for
// each file and process. One look at the disk when there is no temporary. The stream stays at its start.
void SayLeftover(ControlStream& control);

// Forgets what has been said, as a new process would.
void ForgetSaidLeftovers();

// For a writer that holds the control file and has not read it yet: gives a temporary that is left over a name of its
// own, with the extension SAV or, when that is taken, SA2 to SA9, of which the last gives way to it, and says 9014.
// False, with everything as it was, when the temporary cannot be looked at or renamed. The stream stays at its start.
bool PutLeftoverAside(ControlStream& control, OpenTimeout timeout = kDefaultTimeout);

// What is left over beside a file of that text: the temporary, then what was put aside, the latest first.
std::vector<Leftover> FindLeftovers(const std::string& path, std::string_view text);

// The first of the names with the extension, or its first two letters and 2 to 9, that no file beside the path has.
std::optional<std::string> FreeNameBeside(const std::string& path, std::string_view extension);

} // namespace bv
