#include "ctlfile/leftover.h"

#include <algorithm>
#include <set>
#include <utility>

#include "ctlfile/lines.h"
#include "ctlfile/paths.h"
#include "ctlfile/reader.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "voice/messages.h"

namespace bv {
namespace {

using platform::FileError;
using platform::Files;

constexpr std::string_view kSaved = "SAV";

// The copy-back writes the control file after the temporary, and may take so many seconds.
constexpr std::int64_t kLongestCopy = 60;

std::set<std::string>& SaidFiles() {
    static std::set<std::string> files;
    return files;
}

// What tells one kind of control file from another: its first paragraph's header, and of the general one the type
// that follows. Empty without a paragraph.
std::string HeaderOf(std::string_view text) {
    constexpr std::string_view kGeneralHeader = "[BRIVANE]";
    std::string header;
    while (!text.empty()) {
        const std::string line = UpperText(CleanLine(TakeLine(text)));
        if (!IsSignificantLine(line)) continue;
        if (!header.empty()) return IsParagraphLine(line) ? header : header + line;
        if (!IsParagraphLine(line)) continue;
        header = line;
        if (header != kGeneralHeader) break;
    }
    return header;
}

// A file that was cut to nothing has no header any more.
bool IsOtherTextOf(std::string_view controlText, std::string_view text) {
    if (text == controlText) return false;
    const std::string header = HeaderOf(text);
    const std::string controlHeader = HeaderOf(controlText);
    return !header.empty() && (controlHeader.empty() || controlHeader == header);
}

bool IsNewer(const std::string& temporaryPath, const std::string& controlPath) {
    const std::optional<platform::FileInfo> temporary = Files().Find(temporaryPath);
    const std::optional<platform::FileInfo> control = Files().Find(controlPath);
    return !temporary || !control || temporary->WriteTime + kLongestCopy >= control->WriteTime;
}

// Whether the temporary is left over beside the file, which is read for it; none when either cannot be read.
std::optional<bool> IsLeftover(ControlStream temporary, ControlStream& control) {
    if (!IsNewer(temporary.Path(), control.Path())) return false;
    const std::string_view text = temporary.Rest();
    const bool isOther = IsOtherTextOf(control.Rest(), text);
    if (temporary.Failed() || !control.Rewind()) return {};
    return isOther;
}

// The names for what is kept beside a file, in the order in which they are taken: "SAV", "SA2" to "SA9".
std::vector<std::string> NamesBeside(const std::string& path, std::string_view extension) {
    std::vector<std::string> names = {WithExtension(path, extension)};
    for (char digit = '2'; digit <= '9'; ++digit)
        names.push_back(WithExtension(path, std::string(extension.substr(0, 2)) + digit));
    return names;
}

} // namespace

void SayLeftover(ControlStream& control) {
    const std::string path = TemporaryPath(control.Path());
    platform::OpenResult found = Files().Open(path, {});
    if (!found.Opened || !IsLeftover(ControlStream(std::move(found.Opened), path), control).value_or(false)) return;
    if (!SaidFiles().insert(UpperText(control.Path())).second) return;
    SetStatusLine(FillMessage(kSaveWasCutOff, control.Path(), FilePart(path)), 2);
}

void ForgetSaidLeftovers() { SaidFiles().clear(); }

bool PutLeftoverAside(ControlStream& control, OpenTimeout timeout) {
    const std::string path = TemporaryPath(control.Path());
    ControlStream temporary = OpenShared(path, "rb", timeout); // the writer before us may be about to delete it
    if (!temporary) return Files().Open(path, {}).Error == FileError::NotFound;
    const std::optional<bool> isLeftover = IsLeftover(std::move(temporary), control);
    if (!isLeftover.value_or(false)) return isLeftover.has_value();
    const std::optional<std::string> isFree = FreeNameBeside(control.Path(), kSaved);
    const std::string saved = isFree.value_or(NamesBeside(control.Path(), kSaved).back());
    const FileError error = isFree ? Files().Rename(path, saved) : Files().Replace(path, saved);
    if (error == FileError::None) SetStatusLine(FillMessage(kCutOffTextKept, control.Path(), FilePart(saved)), 2);
    return error == FileError::None;
}

std::vector<Leftover> FindLeftovers(const std::string& path, std::string_view text) {
    std::vector<Leftover> found;
    const auto add = [&](const std::string& name) {
        ControlStream stream(Files().Open(name, {}).Opened, name);
        const std::string_view other = stream.Rest();
        if (!stream.Failed() && IsOtherTextOf(text, other)) found.push_back({name, std::string(other)});
    };
    if (IsNewer(TemporaryPath(path), path)) add(TemporaryPath(path));
    const std::vector<std::string> saved = NamesBeside(path, kSaved);
    std::for_each(saved.rbegin(), saved.rend(), add);
    return found;
}

std::optional<std::string> FreeNameBeside(const std::string& path, std::string_view extension) {
    for (const std::string& name : NamesBeside(path, extension))
        if (!Files().Find(name)) return name;
    return {};
}

} // namespace bv
