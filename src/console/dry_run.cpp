#include "console/dry_run.h"

#include <string>
#include <vector>

#include <dtl/dtl.hpp>
#include <nlohmann/json.hpp>

#include "console/output.h"
#include "platform/overlay_files.h"
#include "platform/processes.h"
#include "shell/format.h"

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

// A line as the diff shows it.
std::string ShownLine(char mark, std::string_view line) {
    std::string shown(1, mark);
    if (line.ends_with("\r\n")) return shown.append(line.substr(0, line.size() - 2)) + '\n';
    if (line.ends_with('\n')) return shown.append(line.substr(0, line.size() - 1)) + "^J\n";
    return shown.append(line) + "\n\\ No newline at end of file\n";
}

void PrintRehearsal(const Session& session, const std::vector<platform::OverlayFiles::Change>& changes,
                    const Lines& commandLines) {
    nlohmann::ordered_json document = {{"changes", nlohmann::ordered_json::array()},
                                       {"starts", nlohmann::ordered_json::array()}};
    for (const auto& change : changes) {
        const std::string diff = UnifiedDiff(change.Path, change.Before.value_or(""), change.After.value_or(""));
        if (!session.Json) session.Streams.PrintResult(diff);
        document["changes"].push_back({{"path", Utf8Text(change.Path)}, {"diff", Utf8Text(diff)}});
    }
    for (const std::string& commandLine : commandLines) {
        if (!session.Json) session.Streams.PrintResult("Would start " + commandLine + '\n');
        document["starts"].push_back(Utf8Text(commandLine));
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

std::string UnifiedDiff(const std::string& path, std::string_view before, std::string_view after) {
    dtl::Diff<std::string, Lines> diff(SplitLines(before), SplitLines(after));
    diff.compose();
    diff.composeUnifiedHunks();

    std::string text = "--- " + path + "\n+++ " + path + '\n';
    for (const auto& hunk : diff.getUniHunks()) {
        text += FormatText("@@ -%d,%d +%d,%d @@\n", hunk.a, hunk.b, hunk.c, hunk.d);
        for (const auto* part : {&hunk.common[0], &hunk.change, &hunk.common[1]})
            for (const auto& [line, where] : *part)
                text += ShownLine(where.type == dtl::SES_ADD ? '+' : where.type == dtl::SES_DELETE ? '-' : ' ', line);
    }
    return text;
}

int Perform(const Session& session, const std::function<bool()>& action) {
    if (session.DryRun) return Rehearse(session, action);
    if (!action()) return kExitRefused;
    if (session.Json) PrintRecord(session, {{"status", session.Speaker.LastStatus()}});
    return kExitDone;
}

} // namespace bv::console
