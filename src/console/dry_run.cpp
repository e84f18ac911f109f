#include "console/dry_run.h"

#include <algorithm>
#include <string>
#include <vector>

#include <dtl/dtl.hpp>
#include <nlohmann/json.hpp>

#include "console/output.h"
#include "ctlfile/lines.h"
#include "lcr/stored_passwords.h"
#include "platform/overlay_files.h"
#include "platform/processes.h"
#include "voice/format.h"

namespace bv::console {
namespace {

using Lines = std::vector<std::string>;

// A program that was not started, and so has already ended.
class EndedProgram : public platform::Process {
  public:
    bool IsRunning() override { return false; }
};

class RehearsedPrograms : public platform::Processes {
  public:
    platform::StartResult Start(const std::string& commandLine) override {
        CommandLines.push_back(commandLine);
        return {std::make_unique<EndedProgram>(), 0};
    }
    platform::StartResult StartRestored(const std::string& commandLine) override { return Start(commandLine); }

    Lines CommandLines;
};

// The lines of a text, their line ends included.
Lines SplitLines(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::size_t size = end == std::string_view::npos ? text.size() : end + 1;
        lines.emplace_back(text.substr(0, size));
        text.remove_prefix(size);
    }
    return lines;
}

// A line as the diff shows it, with its mark and without its line end.
std::string ShownText(const Session& session, const Lines& removed, char mark, const std::string& line) {
    const std::string text = line.substr(0, line.find_last_not_of("\r\n") + 1);
    if (session.Reveal || !FindPassword(text)) return mark + text;
    const auto isSame = [&](const std::string& other) { return CleanLine(other) == CleanLine(line); };
    const bool isNew = mark == '+' && std::ranges::none_of(removed, isSame);
    return mark + WithMaskedPassword(text) + (isNew ? " (new)" : "");
}

// The same with its line end.
std::string ShownLine(const Session& session, const Lines& removed, char mark, const std::string& line) {
    const std::string text = ShownText(session, removed, mark, line);
    if (line.ends_with("\r\n")) return text + '\n';
    if (line.ends_with('\n')) return text + "^J\n";
    return text + "\n\\ No newline at end of file\n";
}

std::string ShownHunk(const Session& session, const dtl::uniHunk<std::pair<std::string, dtl::elemInfo>>& hunk) {
    Lines removed;
    for (const auto& [line, where] : hunk.change)
        if (where.type == dtl::SES_DELETE) removed.push_back(line);
    std::string text = FormatText("@@ -%d,%d +%d,%d @@\n", hunk.a, hunk.b, hunk.c, hunk.d);
    for (const auto* part : {&hunk.common[0], &hunk.change, &hunk.common[1]}) {
        for (const auto& [line, where] : *part) {
            const char mark = where.type == dtl::SES_ADD ? '+' : where.type == dtl::SES_DELETE ? '-' : ' ';
            text += ShownLine(session, removed, mark, line);
        }
    }
    return text;
}

void PrintDiff(const Session& session, std::string_view diff) {
    for (const std::string& line : SplitLines(diff)) {
        const bool isName = line.starts_with("--- ") || line.starts_with("+++ ");
        const Look look = isName           ? Look::Header
                          : line[0] == '-' ? Look::Removed
                          : line[0] == '+' ? Look::Added
                                           : Look::Plain;
        session.Streams.PrintResult(line, look);
    }
}

void PrintRehearsal(const Session& session, const std::vector<platform::OverlayFiles::Change>& changes,
                    const Lines& commandLines) {
    nlohmann::ordered_json document = {{"changes", nlohmann::ordered_json::array()},
                                       {"starts", nlohmann::ordered_json::array()}};
    for (const auto& change : changes) {
        const std::string diff = UnifiedDiff(session, change.Path, change.Before, change.After);
        if (!session.Json) PrintDiff(session, diff);
        document["changes"].push_back(
            {{"path", session.Streams.Utf8Text(change.Path)}, {"diff", session.Streams.Utf8Text(diff)}});
    }
    for (const std::string& commandLine : commandLines) {
        if (!session.Json) session.Streams.PrintResult("Would start " + commandLine + '\n');
        document["starts"].push_back(session.Streams.Utf8Text(commandLine));
    }
    if (session.Json) PrintJson(session, document);
}

int Rehearse(const Session& session, const std::function<bool()>& action) {
    platform::OverlayFiles overlay(platform::Files());
    RehearsedPrograms programs;
    {
        const platform::Substitute<platform::FileSystem> files(overlay);
        const platform::Substitute<platform::Processes> processes(programs);
        session.Speaker.Rehearse();
        if (!action()) return kExitRefused;
    }
    PrintRehearsal(session, overlay.Changes(), programs.CommandLines);
    return kExitDone;
}

} // namespace

std::string UnifiedDiff(const Session& session, const std::string& path, const std::optional<std::string>& before,
                        const std::optional<std::string>& after) {
    dtl::Diff<std::string, Lines> diff(SplitLines(before.value_or("")), SplitLines(after.value_or("")));
    diff.compose();
    diff.composeUnifiedHunks();
    const std::string none = "/dev/null";
    std::string text = "--- " + (before ? path : none) + "\n+++ " + (after ? path : none) + '\n';
    for (const auto& hunk : diff.getUniHunks()) text += ShownHunk(session, hunk);
    return text;
}

int Perform(const Session& session, const std::function<bool()>& action) {
    if (session.DryRun) return Rehearse(session, action);
    if (!action()) return kExitRefused;
    if (session.Json) PrintRecord(session, {{"status", session.Speaker.LastStatus()}});
    return kExitDone;
}

} // namespace bv::console
