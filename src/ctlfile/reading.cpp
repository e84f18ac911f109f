#include "ctlfile/reading.h"

#include "ctlfile/file_gate.h"
#include "ctlfile/leftover.h"
#include "ctlfile/whole_file.h"
#include "voice/messages.h"

namespace bv {

ControlStream OpenForReading(const std::string& path, OpenTimeout timeout) {
    std::optional<ControlStream> stream = OpenIfThere(path, timeout);
    if (stream && !*stream) ShowError(kUnableToOpenFile, path);
    return stream ? *std::move(stream) : ControlStream();
}

std::optional<ControlStream> OpenIfThere(const std::string& path, OpenTimeout timeout) {
    ControlStream stream = OpenToRead(path, timeout);
    if (stream) {
        SayLeftover(stream);
    } else if (!IsMissing(path)) {
        ShowError(kUnableToOpenFile, path);
        return {};
    }
    return stream;
}

bool WasRead(const ControlStream& stream) {
    if (!stream.Failed()) return true;
    ShowError(kNotReadToEnd, stream.Path());
    return false;
}

} // namespace bv
