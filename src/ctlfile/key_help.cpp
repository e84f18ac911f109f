#include "ctlfile/key_help.h"

#include <algorithm>

#include "voice/format.h"

namespace bv {
namespace {

std::string OrNothing(const std::string& text) { return text.empty() ? "nothing" : text; }

std::string Cell(const std::string& text) { return "<td>" + text + "</td>"; }

std::string BeginOfRow(const KeyHelp& help) {
    const std::string paragraph = help.Paragraph.empty() ? "" : help.Paragraph + " ";
    return "<tr>" + Cell("<code>" + paragraph + help.Key + "</code>");
}

} // namespace

std::string TakesText(const KeyHelp& help) {
    std::string text = FormatText("%s, else %s", help.Values, OrNothing(help.Default));
    if (help.OfNew && *help.OfNew != help.Default) text += "; a new one has " + OrNothing(*help.OfNew);
    return text;
}

std::string TooltipOf(const KeyHelp& help) {
    return TakesText(help) + (help.Meaning.empty() ? "" : "\r\n" + help.Meaning);
}

std::string HelpRowOf(const KeyHelp& help) {
    std::string row = BeginOfRow(help);
    if (!help.Meaning.empty()) row += Cell(help.Meaning);
    row += Cell(help.Values) + Cell(OrNothing(help.Default));
    if (help.OfNew) row += Cell(OrNothing(*help.OfNew));
    return row + "</tr>\n";
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
