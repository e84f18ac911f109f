#include "covlet/launch.h"

#include <algorithm>

#include "platform/ascii.h"
#include "platform/processes.h"
#include "shell/server_paths.h"
#include "voice/messages.h"

namespace bv {

bool ViewItem(ItemKind kind, std::string_view itemName) {
    if (!CheckItemName(kind, itemName)) return false;
    const std::string directory = ItemDirectory(kind);
    const std::string name = UpperText(itemName);
    std::string path = directory + name + ".G3F";
    if (!FileExists(path)) path = directory + name + ".G3N";
    if (!FileExists(path)) {
        ShowWarning(kind == ItemKind::Coversheet ? kCoversheetNotViewable : kLetterheadNotViewable, name, ".G3F", name,
                    ".G3N", directory);
        return false;
    }
    const std::string viewer = FormatText("\"%sBRIVANE.EXE\" \"%s\"", Paths().SystemArea, path);
    const bool started = platform::TheProcesses().StartRestored(viewer).Started != nullptr;
    if (!started) ShowError(kUnableToRunViewer);
    return started;
}

bool RunItemEditor(std::string_view name) {
    if (name != "*" && !CheckItemName(ItemKind::Coversheet, name)) return false;
    const std::string command = FormatText("%s%s\\covedit.exe", Paths().SystemArea, "i386");
    return RunProgram(EditorCommandLine(command, name), WaitForProgram::Yes);
}

std::string EditorCommandLine(std::string_view command, std::string_view name) {
    constexpr std::string_view kPlace = "%FILE%";
    std::string line(SkipBlanks(command));
    const std::size_t place = UpperText(line).find(kPlace);
    if (place == std::string::npos) return line.append(" ").append(name);
    return line.replace(place, kPlace.size(), name);
}

} // namespace bv
