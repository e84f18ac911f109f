// A disk in memory, the file system in use while it lives.
#pragma once

#include <string>
#include <string_view>

#include "ctlfile/control_stream.h"
#include "platform/overlay_files.h"

namespace bv::test {

struct MemoryDisk {
    platform::OverlayFiles Files;
    platform::Substitute<platform::FileSystem> Use{Files};

    static void Put(const std::string& path, std::string_view text) {
        ControlStream stream = OpenShared(path, "wb");
        stream.Write(text);
        stream.Close();
    }

    // "(none)" without a file.
    static std::string Get(const std::string& path) {
        ControlStream stream = OpenShared(path, "rb");
        return stream ? std::string(stream.Rest()) : "(none)";
    }
};

} // namespace bv::test
