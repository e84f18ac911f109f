#include "ctlfile/key_help.h"

#include <algorithm>

#include "voice/format.h"

namespace bv {
namespace {

std::string DefaultText(const KeyHelp& help) { return help.Default.empty() ? "nothing" : help.Default; }

std::string BeginOfRow(const KeyHelp& help) { return FormatText("<tr><td><code>%s</code></td>", help.Key); }

} // namespace

std::string TooltipOf(const KeyHelp& help) {
    std::string text = FormatText("%s, else %s", help.Values, DefaultText(help));
    if (!help.Paragraph.empty()) text.append(", ").append(help.Paragraph);
    return text.append("\r\n").append(help.Meaning);
}

std::string HelpRowOf(const KeyHelp& help) {
    return BeginOfRow(help) +
           FormatText("<td>%s</td><td>%s</td><td>%s</td></tr>\n", help.Meaning, help.Values, DefaultText(help));
}

std::string WithHelpRows(const std::string& page, const std::vector<KeyHelp>& keys) {
    std::string text;
    for (std::size_t at = 0; at < page.size();) {
        const std::size_t end = std::min(page.find('\n', at), page.size() - 1) + 1;
        std::string line = page.substr(at, end - at);
        for (const KeyHelp& help : keys)
            if (line.starts_with(BeginOfRow(help))) line = HelpRowOf(help);
        text += line;
        at = end;
    }
    return text;
}

} // namespace bv
