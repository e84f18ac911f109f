#include "lcr/edit_lock.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "ctlfile/control_stream.h"
#include "ctlfile/dates.h"
#include "ctlfile/file_gate.h"
#include "ctlfile/lines.h"
#include "ctlfile/open_retry.h"
#include "ctlfile/reader.h"
#include "ctlfile/whole_file.h"
#include "lcr/fax_entry.h"
#include "lcr/lcr_messages.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host_name.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::FileError;

constexpr std::int64_t kWait = 5000; // milliseconds
constexpr std::int64_t kPause = 100;
constexpr std::string_view kHeader = "[BRIVANE]\r\nType: LCREditLock\r\nRevision: A\r\n";

std::unique_ptr<platform::File> heldLock;

// None also when the file is there already.
FileError MakeLockFile(const std::string& path) {
    constexpr platform::OpenRequest kNew{platform::Access::ReadWrite, platform::Deny::ReadingAndWriting,
                                         platform::Creation::CreateNew};
    const platform::OpenResult made = platform::Files().Open(path, kNew);
    if (!made.Opened) return made.Error == FileError::Exists ? FileError::None : made.Error;
    const FileError written = made.Opened->Write(0, kHeader).Error;
    const FileError closed = made.Opened->Close();
    if (written == FileError::None && closed == FileError::None) return FileError::None;
    platform::Files().Delete(path);
    return written != FileError::None ? written : closed;
}

platform::OpenResult OpenAlone(const std::string& path) {
    constexpr platform::OpenRequest kAlone{platform::Access::ReadWrite, platform::Deny::ReadingAndWriting};
    const std::int64_t end = platform::TheClock().Ticks() + kWait;
    FileWait wait(path);
    for (;;) {
        platform::OpenResult result = platform::Files().Open(path, kAlone);
        if (result.Opened || platform::TheClock().Ticks() >= end) return result;
        wait.Pause(kPause);
    }
}

// --- The note of who holds it ---

constexpr std::string_view kNoteHeader = "[BRIVANE]\r\nType: LCREditNote\r\nRevision: A\r\n\r\n";
constexpr std::string_view kHolder = "[HOLDER]";

struct NoteLine {
    std::string_view Key;
    std::string LcrHolder::*Value;
};
constexpr NoteLine kNoteLines[] = {{"User:", &LcrHolder::User},
                                   {"Host:", &LcrHolder::Host},
                                   {"Since:", &LcrHolder::Since},
                                   {"Editor:", &LcrHolder::Editor}};

std::string OrUnknown(const std::string& name) { return name.empty() ? FillMessage(kNotKnown) : name; }

LcrHolder ThisHolder(std::string_view what) {
    std::string user;
    for (const char* variable : {"USERNAME", "USER", "LOGNAME"}) {
        if (user.empty()) user = platform::TheEnvironment().Variable(variable).value_or("");
    }
    const CalendarTime now = ToCalendar(platform::TheClock().Now() / 1000);
    return {OrUnknown(user), OrUnknown(platform::HostName()), MomentText(now), std::string(what)};
}

void WriteNote(const LcrHolder& holder) {
    std::string text = std::string(kNoteHeader).append(kHolder).append(kLineEnd);
    for (const auto& [key, value] : kNoteLines)
        text.append(key).append(" ").append(CleanLine(holder.*value)).append(kLineEnd);
    WriteWholeFile(LcrNotePath(), text);
}

constexpr std::array<MessageWith<0>, 4> kLackMessages = {
    "",
    "You must configure the General Settings for this server before LCR can be enabled",
    "You must set up some links to remote servers before LCR can be enabled",
    "You must set up some fax destination definitions before LCR can be enabled",
};

constexpr MessageWith<0> kRulesQuestion =
    "No routing rules have been configured.\n\nNo faxes will be sent via remote servers, but fax submissions may still "
    "be recieved from remote servers\n\nSet up rules now?";

} // namespace

std::string LcrLockPath() { return Paths().RequestArea.String() + "LCREDIT.LOK"; }

std::string LcrNotePath() { return DatabaseFile("LCREDIT.WHO"); }

bool IsLcrLocked() {
    const platform::OpenResult look =
        platform::Files().Open(LcrLockPath(), {platform::Access::Read, platform::Deny::Nothing});
    return look.Error == FileError::AccessDenied;
}

std::optional<LcrHolder> FindLcrHolder() {
    if (!IsLcrLocked()) return {};
    ControlStream note = OpenToRead(LcrNotePath());
    ControlLine line;
    if (!note || !FindParagraph(note, kHolder, line)) return {};
    LcrHolder holder;
    for (const auto& [key, value] : kNoteLines) {
        ControlLine found;
        if (!GetKeyString(note, key, found)) return {};
        holder.*value = found.String();
    }
    return holder;
}

std::string DescribeLcrHolder(const LcrHolder& holder) {
    return FillMessage(kLcrHeldBy, holder.User, holder.Host, holder.Since, holder.Editor);
}

bool LockLcrEdit() {
    const std::string path = LcrLockPath();
    const FileError notMade = MakeLockFile(path);
    platform::OpenResult lock = notMade == FileError::None ? OpenAlone(path) : platform::OpenResult{nullptr, notMade};
    if (lock.Opened) {
        heldLock = std::move(lock.Opened);
        return true;
    }
    ShowError("LCR settings are being edited by another user.  Please try again later");
    // Who holds the file denies access to it; anything else is no other user's doing.
    if (notMade != FileError::None || lock.Error != FileError::AccessDenied)
        SetStatusLine(FillMessage(kLockFileUnusable, path, platform::ErrorWords(lock.Error)), 2);
    else if (const std::optional<LcrHolder> holder = FindLcrHolder())
        SetStatusLine(DescribeLcrHolder(*holder), 2);
    return false;
}

void UnlockLcrEdit() { heldLock.reset(); }

bool RunLcrEditor(const std::function<bool()>& editor, std::string_view what) {
    struct Release {
        ~Release() {
            platform::Files().Delete(LcrNotePath());
            UnlockLcrEdit();
        }
    };
    if (!LockLcrEdit()) return false;
    const Release release;
    WriteNote(ThisHolder(what));
    return editor();
}

LcrButtons UpdateLcrButtons(bool isEnabled, bool hasGeneralSettings) {
    LcrButtons buttons;
    buttons.General = buttons.Destinations = isEnabled;
    buttons.Links = isEnabled && hasGeneralSettings;
    buttons.Rules = buttons.Links && !IsMissing(PathOf(ServerFile::Countries)) && !IsMissing(PathOf(ServerFile::Links));
    return buttons;
}

LcrLack FindLcrLack(bool hasGeneralSettings) {
    if (!hasGeneralSettings) return LcrLack::GeneralSettings;
    if (IsMissing(PathOf(ServerFile::Links))) return LcrLack::Links;
    if (IsMissing(PathOf(ServerFile::Countries))) return LcrLack::Destinations;
    return !IsMissing(PathOf(ServerFile::Rules)) ? LcrLack::Nothing : LcrLack::Rules;
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
