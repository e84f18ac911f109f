#include "support/memory_server.h"

#include <stdexcept>

#include "shell/server_paths.h"
#include "shell/startup.h"

namespace bv::test {

void MemoryServer::Load() {
    Put("C:\\WINDOWS\\BRIVANE.INI", "[SERVER]\r\n"
                                    "AllUserArea: F:\\BRIVANE\\USERS\r\n"
                                    "RequestArea: F:\\BRIVANE\\B-REQ\r\n"
                                    "ServerArea: F:\\BRIVANE\\SERVER\r\n"
                                    "SystemArea: F:\\BRIVANE\r\n"
                                    "MailArea: F:\\BRIVANE\\B-MAIL\r\n");
    Put("F:\\BRIVANE\\B-DB\\SETUP.INI", "[OPTIONS]\r\n");
    ControlStream setup;
    if (LoadServerPaths(&setup) != kDone) throw std::runtime_error("the server in memory does not load");
    ReadServerSwitches(setup);
}

void MemoryServer::Put(const std::string& path, std::string_view bytes) {
    const platform::OpenRequest create{platform::Access::ReadWrite, platform::Deny::Nothing,
                                       platform::Creation::CreateOrTruncate};
    const platform::OpenResult result = Files.Open(path, create);
    if (!result.Opened || result.Opened->Write(0, bytes).Count != bytes.size()) throw std::runtime_error(path);
}

std::string MemoryServer::Get(const std::string& path) {
    const platform::OpenResult result = Files.Open(path, {});
    if (!result.Opened) return "(none)";
    std::string bytes(static_cast<std::size_t>(result.Opened->Length().value_or(0)), '\0');
    bytes.resize(result.Opened->Read(0, bytes.data(), bytes.size()).Count);
    return bytes;
}

} // namespace bv::test
