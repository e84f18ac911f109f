#include "mailgw/profile_file.h"

#include <optional>

#include "ctlfile/control_stream.h"
#include "ctlfile/paths.h"
#include "platform/ascii.h"
#include "platform/environment.h"

namespace bv {
namespace {

// The name between the brackets; none for a line that is no section's.
std::optional<std::string_view> SectionOf(std::string_view line) {
    if (!line.starts_with('[')) return {};
    return TrimBlanks(line.substr(1, line.find(']', 1) - 1));
}

std::string_view WithoutQuotes(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

} // namespace

std::string ReadProfileText(std::string_view fileName, std::string_view section, std::string_view key) {
    ControlStream file =
        OpenShared(WithBackslash(platform::TheEnvironment().WindowsDirectory()).append(fileName), "rb");
    bool isInSection = false;
    for (std::string_view raw = file.NextRawLine(); !raw.empty(); raw = file.NextRawLine()) {
        const std::string_view line = TrimBlanks(raw);
        if (const auto name = SectionOf(line)) {
            if (isInSection) return {};
            isInSection = EqualFolded(*name, section);
            continue;
        }
        const std::size_t separator = line.find('=');
        if (!isInSection || separator == std::string_view::npos) continue;
        if (!EqualFolded(TrimBlanks(line.substr(0, separator)), key)) continue;
        return std::string(WithoutQuotes(TrimBlanks(line.substr(separator + 1))).substr(0, kMaxPath));
    }
    return {};
}

} // namespace bv
