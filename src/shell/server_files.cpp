#include "shell/server_files.h"

#include <cstddef>

#include "platform/files.h"
#include "voice/messages.h"

namespace bv {
namespace {

struct FileNames {
    std::string_view Name;
    std::string_view EditorsName = {};
    std::string_view NewName = {};
    std::string_view Type = {}; // as its header "[BRIVANE]" has it
};

constexpr FileNames kFiles[] = {
    // by ServerFile
    {"SETUP.INI", "Setup.ini", "Setup.new"},
    {"USERLIST.INI"},
    {"USER.INI"},
    {"MAILLIST.INI"},
    {"MAILUSER.DAT"},
    {"ROUTING.INI"},
    {"DIALLING.INI", "DIALLING.INI", "DIALLING.NEW", "DiallingProperties"},
    {"LINK.INI", "Link.ini", "Link.new", "LinkDatabase"},
    {"LCRRULES.INI", "LCRRules.ini", "LCRRules.new", "LCRRules"},
    {"COUNTRY.INI"}, // the editor names it and the next by their types (lcr/destination_files.h)
    {"REGION.INI"},
};

const FileNames& NamesOf(ServerFile file) { return kFiles[static_cast<std::size_t>(file)]; }

} // namespace

std::string_view NameOf(ServerFile file) { return NamesOf(file).Name; }

std::string PathOf(ServerFile file) { return DatabaseFile(NameOf(file)); }

std::string ReadOnlyText(const std::string& path) {
    return platform::Files().IsWritable(path) ? std::string() : FillMessage(kFileIsReadOnly, path);
}

ReplacedFile ReplacedFileOf(ServerFile file, const ServerPaths& paths) {
    const FileNames& names = NamesOf(file);
    return {DatabaseFile(names.EditorsName, paths), DatabaseFile(names.NewName, paths), names.Type};
}

} // namespace bv
