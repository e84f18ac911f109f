#include "ctlfile/text_edits.h"

#include "ctlfile/lines.h"
#include "ctlfile/reading.h"
#include "ctlfile/saving.h"

namespace bv {

TextEdit EditLastLine(const ControlStream& stream, std::optional<std::string_view> newLine) {
    const Position end = stream.Tell();
    Position start = end == 0 ? 0 : end - 1;
    while (start > 0 && stream.Seen(start - 1, 1) != "\n") --start;
    return {start, end, newLine ? std::string(*newLine).append(kLineEnd) : std::string()};
}

bool WriteEdited(const ControlStream& held, Position size, const TextEdits& edits, ControlStream& temporary) {
    const auto text = [&held](Position from, Position to) {
        return held.Seen(from, static_cast<std::size_t>(to - from));
    };
    Position at = 0;
    for (const TextEdit& edit : edits) {
        if (!temporary.Write(text(at, edit.From)) || !temporary.Write(edit.Text)) return false;
        at = edit.To;
    }
    return temporary.Write(text(at, size)) && temporary.Flush();
}

bool EditControlFile(const std::string& path, const std::function<TextEdits(ControlStream& held)>& plan) {
    Rewrite rewrite(path);
    if (!CheckOpened(rewrite)) return false;
    const Position size = rewrite.Control.Rest().size();
    rewrite.Control.Rewind();
    const TextEdits edits = plan(rewrite.Control);
    if (!WasRead(rewrite.Control)) return false;
    if (edits.empty()) return true;
    return SaveRewrite(
        rewrite, [&] { return WriteEdited(rewrite.Control, size, edits, rewrite.Temporary) && rewrite.CopyBack(); });
}

} // namespace bv
