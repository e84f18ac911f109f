#include "whereused/setting_uses.h"

#include <functional>
#include <string_view>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/text_edits.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/format.h"

namespace bv {
namespace {

constexpr struct {
    SettingName Kind;
    std::string_view Paragraph; // empty: of any device
    std::string_view Key;
} kNameKeys[] = {
    {SettingName::User, "", "RecdUser:"},
    {SettingName::User, "[BSUBMIT]", "User:"},
    {SettingName::User, "[HPSCAN]", "User:"},
    {SettingName::Printer, "[PRINTING]", "PrintSentDevice:"},
    {SettingName::Printer, "[PRINTING]", "PrintSentDevice2:"},
    {SettingName::Printer, "[PRINTING]", "PrintRecdDevice:"},
    {SettingName::Printer, "[PRINTING]", "PrintRecdDevice2:"},
    {SettingName::Printer, "[QUEUEMAN]", "PrintSentDevice:"}, // as older versions have it
    {SettingName::Printer, "[QUEUEMAN]", "PrintRecdDevice:"},
};

// Visits the lines that name one of them, each right after it was read.
using Visitor = std::function<void(const Use& use, std::string_view key)>;
void VisitUses(ControlStream& file, SettingName kind, const NameSet& names, const Visitor& visit) {
    ControlLine header;
    ControlLine line;
    while (FindParagraph(file, std::nullopt, header)) {
        while (FindKeyLine(file, std::nullopt, line)) {
            for (const auto& [named, paragraph, key] : kNameKeys) {
                if (named != kind || !StartsWithFolded(header.View(), paragraph) || !BeginsWith(line, key)) continue;
                const std::string_view value = KeyValue(line).value_or("");
                if (!names.Has(value)) continue;
                visit({.File = NameOf(ServerFile::Setup),
                       .Where = FormatText("%s %s", header.View(), line.View()),
                       .Name = std::string(value)},
                      key);
            }
        }
    }
}

} // namespace

std::optional<std::vector<Use>> FindSettingUses(SettingName kind, const NameSet& names) {
    ControlStream file = OpenForReading(PathOf(ServerFile::Setup));
    if (!file) return {};
    std::vector<Use> uses;
    VisitUses(file, kind, names, [&uses](const Use& use, std::string_view) { uses.push_back(use); });
    if (!WasRead(file)) return {};
    return uses;
}

bool ChangeSettingUses(SettingName kind, const NameSet& names, const UseChange& change) {
    const auto plan = [&](ControlStream& held) {
        TextEdits edits;
        VisitUses(held, kind, names, [&](const Use&, std::string_view key) {
            edits.push_back(EditLastLine(held, KeyedLine(key, change.By)));
        });
        return edits;
    };
    if (!EditControlFile(PathOf(ServerFile::Setup), plan)) return false;
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
