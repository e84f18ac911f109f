// What a save that was cut off has left beside a control file.
#include "console/commands.h"
#include "console/dry_run.h"
#include "ctlfile/recovery.h"

namespace bv::console {
namespace {

// Where nobody can be asked, the verb itself is the Yes, but not to a text that is plainly a part.
int Recover(Session& session, const Arguments& arguments) {
    const std::string& path = arguments["FILE"];
    const auto agrees = [&](const Leftover& leftover, std::string_view text) {
        const std::string diff = UnifiedDiff(session, path, std::string(text), std::string(leftover.Text));
        if (!session.DryRun && !session.Json) session.Streams.PrintResult(diff);
        if (!session.DryRun && session.Json) session.Streams.PrintNotice(diff);
        const bool isAsked = session.Streams.IsTerminal() || leftover.IsCutOff();
        return !isAsked || AskToRecover(path, leftover);
    };
    return Perform(session, [&] { return RecoverFile(path, agrees); });
}

constexpr Verb kVerbs[] = {
    {.Help = "Show what a save that was cut off has left beside a control file, and put it in place",
     .Parameters =
         {{{.Name = "FILE", .Help = "Control file, by a path of this system or a Windows path", .IsPath = true}}},
     .Example = "SETUP.INI",
     .Change = Recover},
};

} // namespace

const Area kRecoverArea = {"recover", "Put in place what a save that was cut off has left", kVerbs};

} // namespace bv::console
