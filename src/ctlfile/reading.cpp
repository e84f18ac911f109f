#include "ctlfile/reading.h"

#include "shell/messages.h"

namespace bv {

ControlStream OpenForReading(const std::string& path, OpenTimeout timeout) {
    ControlStream stream = OpenShared(path, "rb", timeout);
    if (!stream) ShowError(413, path);
    return stream;
}

bool WasRead(const ControlStream& stream) {
    if (!stream.Failed()) return true;
    ShowError(9011, stream.Path());
    return false;
}

} // namespace bv
