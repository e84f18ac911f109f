#include "mailgw/mail_login.h"

#include <functional>
#include <memory>
#include <utility>

#include "ctlfile/reading.h"
#include "ctlfile/scramble.h"
#include "mailgw/mail_access.h"
#include "mailgw/mail_messages.h"
#include "mailgw/notes_settings.h"
#include "options/option_values.h"
#include "options/server_options.h"
#include "platform/ascii.h"
#include "shell/server_files.h"
#include "shell/server_paths.h"
#include "shell/versions.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr std::pair<std::string_view, MailType> kInterfaces[] = {
    {"MSMAIL", MailType::Mapi},
    {"EXCHANGE", MailType::Mapi},
    {"CCMAIL", MailType::Vim},
    {"MAPI", MailType::Mapi},
    {"MAPI_EXCHANGE", MailType::Mapi},
    {"MAPI_LNOTES", MailType::Mapi},
    {"LOTUS_NOTES_API", MailType::Notes},
};

// The password itself; none after 5035.
std::optional<std::string> Readable(const LoginPassword& password) {
    if (!password.IsStored || password.Text.empty()) return password.Text;
    std::optional<std::string> text = UnscrambleText(password.Text);
    if (!text) ShowError(kPasswordUnreadable);
    return text;
}

// The system whose sessions can be had here; none after a message.
std::optional<MailType> CheckSystem(std::string_view system) {
    if (system.empty()) ShowError(kNoMailSystemChosen);
    if (system.empty()) return {};
    const std::optional<MailType> type = InterfaceOf(system);
    if (type == MailType::Mapi || type == MailType::Notes) return type;
    ShowWarning(kNotTestedHere, system);
    return {};
}

// Logs in, does the work, and logs out.
bool Work(const MailLogin& login, bool isInteractive, std::function<StatusCode()> work, MailWait& wait) {
    const std::optional<MailType> type = CheckSystem(login.System);
    const std::optional<std::string> password = type ? Readable(login.Password) : std::nullopt;
    return password && RunMailSession({*type, login.Name, *password, isInteractive, std::move(work)}, wait);
}

std::string DescribeOrigin(const MailLibraryName& library) {
    if (library.Key.empty()) return library.Name;
    return library.IsUsual ? FillMessage(kUsualLibrary, library.Name, library.Key)
                           : FillMessage(kLibraryFromProfile, library.Name, library.Key);
}

} // namespace

std::optional<MailType> InterfaceOf(std::string_view system) {
    for (const auto& [word, type] : kInterfaces)
        if (EqualFolded(word, system)) return type;
    return {};
}

std::optional<MailLogin> ReadGatewayLogin() {
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup));
    if (!setup) return {};
    ServerOptions options;
    SavedOptions saved;
    ReadServerOptions(setup, options, saved);
    if (!WasRead(setup)) return {};
    return MailLogin{ValueCodec<MailSystem>::Text(options.MailType),
                     options.MailLoginName.String(),
                     {options.MailLoginParams.String(), true}};
}

bool TestMailLogin(const MailLogin& login, MailWait& wait) {
    if (!Work(
            login, false, [] { return kDone; }, wait))
        return false;
    ShowStatus(kLoggedIn);
    return true;
}

bool ClearMailFolder(const MailLogin& login, int folder, const std::string& subject, MailWait& wait) {
    if (!AskQuestion(kDeleteOldMessages, subject, MailFolderName(folder))) return false;
    if (!Work(
            login, true, [folder, subject] { return MailTidyFolder(folder, subject); }, wait))
        return false;
    ShowStatus(kFolderTidied, subject, MailFolderName(folder));
    return true;
}

std::vector<std::string> PickMailNames(const MailLogin& login, MailWait& wait) {
    const auto chosen = std::make_shared<std::vector<MailRecipient>>();
    const bool isDone = Work(
        login, true, [chosen] { return MailPickAddresses("Choose mail users", *chosen); }, wait);
    std::vector<std::string> names;
    if (!isDone) return names;
    for (const MailRecipient& recipient : *chosen)
        if (!recipient.Name.empty()) names.push_back(recipient.Name);
    SetStatusLine("", 1);
    return names;
}

std::string DescribeGateway(std::string_view isV6) {
    const std::optional<InstalledVersions> versions = ReadInstalledVersions();
    const std::string version = versions && versions->MailGateway ? *versions->MailGateway : "not known";
    return FormatText("Gateway version %s (MailGatewayV6: %s). Mail area %s%s", version, isV6, Paths().MailArea.View(),
                      Paths().MailAreaConfigured ? "" : " (derived)");
}

std::string DescribeMailLibrary(std::string_view system) {
    if (system.empty()) return FillMessage(kNoMailSystemChosen);
    const std::optional<MailType> type = InterfaceOf(system);
    if (!type) return FillMessage(kNotTestedHere, system);
    const MailLibraryName named = LibraryOf(*type);
    const bool isFound = platform::TheLibraries().Load(named.Name) != nullptr;
    const std::string origin = DescribeOrigin(named);
    std::string text = isFound ? FillMessage(kLibraryFound, origin)
                               : FillMessage(kLibraryNotLoaded, origin, platform::TheLibraries().LastError());
    if (type != MailType::Notes) return text;
    FixedText<kMaxLine> keyFile;
    FixedText<kMaxLine> location;
    ReadNotesSettings(keyFile, location);
    return text + ". " + FillMessage(kNotesSettings, location.View(), keyFile.View());
}

} // namespace bv
