#include "lcr/edit_lock.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "ctlfile/whole_file.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "shell/messages.h"
#include "shell/server_paths.h"

namespace bv {
namespace {

constexpr std::int64_t kWait = 5000; // milliseconds
constexpr std::int64_t kPause = 100;
constexpr std::string_view kHeader = "[BRIVANE]\r\nType: LCREditLock\r\nRevision: A\r\n";

std::unique_ptr<platform::File> heldLock;

std::unique_ptr<platform::File> OpenAlone(const std::string& path) {
    constexpr platform::OpenRequest kAlone{platform::Access::ReadWrite, platform::Deny::ReadingAndWriting};
    const std::int64_t end = platform::TheClock().Ticks() + kWait;
    for (;;) {
        platform::OpenResult result = platform::Files().Open(path, kAlone);
        if (result.Opened || platform::TheClock().Ticks() >= end) return std::move(result.Opened);
        YieldToSystem();
        platform::TheClock().Sleep(kPause);
    }
}

constexpr std::array<std::string_view, 4> kLackMessages = {
    "",
    "You must configure the General Settings for this server before LCR can be enabled",
    "You must set up some links to remote servers before LCR can be enabled",
    "You must set up some fax destination definitions before LCR can be enabled",
};

constexpr std::string_view kRulesQuestion =
    "No routing rules have been configured.\n\nNo faxes will be sent via remote servers, but fax submissions may still "
    "be recieved from remote servers\n\nSet up rules now?";

} // namespace

std::string LcrLockPath() { return Paths().RequestArea.String() + "LCREDIT.LOK"; }

bool LockLcrEdit() {
    const std::string path = LcrLockPath();
    std::unique_ptr<platform::File> opened;
    if (FileExists(path) || WriteWholeFile(path, kHeader)) opened = OpenAlone(path);
    if (!opened) {
        ShowError("LCR settings are being edited by another user.  Please try again later");
        return false;
    }
    heldLock = std::move(opened);
    return true;
}

void UnlockLcrEdit() { heldLock.reset(); }

bool RunLcrEditor(const std::function<bool()>& editor) {
    struct Release {
        ~Release() { UnlockLcrEdit(); }
    };
    if (!LockLcrEdit()) return false;
    const Release release;
    return editor();
}

LcrButtons UpdateLcrButtons(bool isEnabled, bool hasGeneralSettings) {
    LcrButtons buttons;
    buttons.General = buttons.Destinations = isEnabled;
    buttons.Links = isEnabled && hasGeneralSettings;
    buttons.Rules = buttons.Links && FileExists(DatabaseFile("COUNTRY.INI")) && FileExists(DatabaseFile("LINK.INI"));
    return buttons;
}

LcrLack FindLcrLack(bool hasGeneralSettings) {
    if (!hasGeneralSettings) return LcrLack::GeneralSettings;
    if (!FileExists(DatabaseFile("LINK.INI"))) return LcrLack::Links;
    if (!FileExists(DatabaseFile("COUNTRY.INI"))) return LcrLack::Destinations;
    return FileExists(DatabaseFile("LCRRULES.INI")) ? LcrLack::Nothing : LcrLack::Rules;
}

LcrReadiness CheckLcrReady(bool hasGeneralSettings, bool mayAskForRules) {
    const LcrLack lack = FindLcrLack(hasGeneralSettings);
    if (lack == LcrLack::Nothing) return LcrReadiness::Ready;
    if (lack != LcrLack::Rules) {
        ShowError(kLackMessages.at(static_cast<std::size_t>(lack)));
        return LcrReadiness::NotReady;
    }
    const bool editsRules = mayAskForRules && AskWarning(kRulesQuestion);
    return editsRules ? LcrReadiness::SetUpRules : LcrReadiness::Ready;
}

} // namespace bv
