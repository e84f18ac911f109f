// Keeps programs of ours from changing one file at the same time when one of them replaces it.
//
// Who replaces a file reads it, writes its new text beside it and swaps the two. Nobody else may change the file
// meanwhile, or that change would go with the old text; but the file itself cannot be held, since a system like Windows
// swaps no file that is open. So who replaces it first opens the gate, a file beside it with the extension ".LCK", and
// denies it to everybody until the swap is done. Who rewrites a file in place (copy_back.h) holds the file itself and
// then looks whether its gate is held; if so, it lets go, waits for the gate and tries again:
//
//   - in place first: the one who replaces has the gate, but reads and swaps only when the file is free;
//   - the gate first: the one in place sees it held and lets go before anything is read.
//
// The gate is held by its open file alone, so it ends with its process, on a share with the connection. The file is
// deleted when it is let go. One that a crash has left is as good as none: nobody asks whether it is there, and
// everybody may open it.
#pragma once

#include <string>

#include "ctlfile/control_stream.h"

namespace bv {

inline constexpr int kGatePatience = 10; // seconds

// The path of a file's gate.
std::string GatePath(const std::string& path);

// Holds a file's gate while it lives. A process that holds it already gets in at once.
class FileGate {
  public:
    // Tries for ten seconds, yielding to the system. Shows nothing.
    explicit FileGate(const std::string& path);
    ~FileGate();
    FileGate(const FileGate&) = delete;
    FileGate& operator=(const FileGate&) = delete;

    // Whether it is held: false when another program has it, or its file cannot be made.
    explicit operator bool() const { return isHeld_; }

  private:
    std::string path_;
    bool isHeld_ = false;
};

// Whether another program holds a file's gate.
bool GateIsHeldElsewhere(const std::string& path);

// Opens a file to rewrite it in place ("r+b"), as OpenShared does, while nobody replaces it.
ControlStream OpenToRewrite(const std::string& path, OpenTimeout timeout = kDefaultTimeout);

// Opens a file that may be replaced for reading ("rb"), as OpenShared does. Where the system replaces it in more than
// one step, it is waited for while it is missing. Not for what is written beside it, which has the same gate.
ControlStream OpenToRead(const std::string& path, OpenTimeout timeout = kDefaultTimeout);

} // namespace bv
