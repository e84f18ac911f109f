// The protocol that keeps control files whole while they are rewritten.
//
// A rewrite holds the control file against every other reader and writer, writes the new text to a temporary beside
// it, and only then copies the temporary over the file, in place: the file is never deleted or moved, so its
// identity, its attributes and the server's handles stay valid. Pieces that did not change are not written again. Then
// the temporary goes.
//
// What can be left:
//   - an error before the copy-back: the file as it was, no temporary;
//   - an error in the copy-back: the old text is put back, no temporary;
//   - when the old text cannot be put back either: the file is cut to what was copied, and the temporary stays, for
//     it is then the only complete text;
//   - the file does not close well after the copy-back: what the system has kept of it, and the temporary stays, too;
//   - the program killed before the copy-back: the file as it was, and the temporary, complete or not;
//   - the program killed in the copy-back: the temporary complete, the file torn or not.
// In the last three cases the next rewrite of the file puts the temporary aside before it makes its own (leftover.h).
#pragma once

#include <string>

#include "ctlfile/control_stream.h"
#include "ctlfile/status.h"

namespace bv {

inline constexpr std::size_t kCopyPiece = 64 * 1024; // bytes copied by one call of the system

// Copies the whole temporary over the control file, which then has its length. 0, or -4084 on failure (above).
StatusCode CopyFileBack(ControlStream& temporary, ControlStream& control);

// One rewrite, or several in a row, of one control file.
//
//   Rewrite rewrite(path);
//   if (!rewrite) ...                       // rewrite.UnopenedPath() is the one
//   for each change:
//       rewrite.Begin()                     // both at the start, the temporary empty
//       ... read rewrite.Control, write rewrite.Temporary ...
//       rewrite.CopyBack()
//   rewrite.Finish()                        // closes both; the temporary goes
class Rewrite {
  public:
    enum class Problem { None, BadPath, Control, Temporary };

    // Opens the control file ("r+b") and creates the temporary ("w+b"). BadPath: the path is over 268 characters
    // or the temporary's would be. Nothing is left open, and no temporary, after a problem.
    explicit Rewrite(std::string path, OpenTimeout timeout = kDefaultTimeout);
    ~Rewrite() { Finish(); }
    Rewrite(const Rewrite&) = delete;
    Rewrite& operator=(const Rewrite&) = delete;

    [[nodiscard]] Problem Fault() const { return fault_; }
    explicit operator bool() const { return fault_ == Problem::None; }
    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] const std::string& TemporaryName() const { return temporaryPath_; }
    [[nodiscard]] const std::string& UnopenedPath() const {
        return fault_ == Problem::Temporary ? temporaryPath_ : path_;
    }

    bool Begin();
    bool CopyBack();

    // False when a stream has failed or does not close well; true again when called again.
    bool Finish();

    ControlStream Control;
    ControlStream Temporary;

  private:
    std::string path_;
    std::string temporaryPath_;
    Problem fault_ = Problem::None;
    bool temporaryIsNeeded_ = false;
    bool wasCopied_ = false;
};

} // namespace bv
