#include "gui/disk_server.h"

#include <filesystem>

#include "gui/gui.h"
#include "platform/environment.h"
#include "support/samples.h"
#include "voice/format.h"

namespace bv::gui {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWholeIni = "[SERVER]\r\n"
                                       "AllUserArea: %s\\USERS\r\n"
                                       "RequestArea: %s\\B-REQ\r\n"
                                       "ServerArea: %s\\SERVER\r\n"
                                       "SystemArea: %s\r\n";

std::string With(std::string_view name, std::string_view extension) { return std::string(name).append(extension); }

} // namespace

std::string BesideTest(std::string_view name) {
    return platform::TheEnvironment().ProgramDirectory().append("\\").append(name);
}

DiskServer::DiskServer() {
    const fs::path sample = fs::path(test::SamplesDirectory()) / "server" / "BRIVANE";
    for (const char* directory : {"B-COVER", "B-LETTER", "B-DB", "USERS"})
        fs::copy(sample / directory, files_.HostPath(directory), fs::copy_options::recursive);
    for (const char* directory : {"SERVER", "i386", "B-REQ"}) fs::create_directories(files_.HostPath(directory));
    InstallProgram("BRIVANE");
    InstallProgram("i386\\covedit");
    const std::string& path = files_.Path();
    files_.Write("BRIVANE.INI", FormatText(kWholeIni, path, path, path, path));
    platform::TheEnvironment().SetVariable("BVAXINIT", files_.Path());
}

void DiskServer::InstallProgram(std::string_view name) const {
    fs::copy_file(BesideTest("recorder.exe"), files_.HostPath(With(name, ".exe")));
}

std::string DiskServer::Calls(std::string_view program) const {
    const std::string file = With(program, ".calls");
    Until([&] { return files_.Has(file) && files_.Read(file).ends_with('\n'); });
    return files_.Read(file);
}

void DiskServer::Hold(std::string_view program) const { files_.Write(With(program, ".hold"), ""); }

void DiskServer::Release(std::string_view program) const { fs::remove(files_.HostPath(With(program, ".hold"))); }

} // namespace bv::gui
