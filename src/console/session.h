// What one run of the companion has at hand.
#pragma once

#include <string>
#include <string_view>

#include "console/console_front.h"
#include "console/text_streams.h"

namespace bv::console {

struct GlobalOptions;

struct Session {
    TextStreams& Streams;
    ConsoleFront& Speaker; // the installed front
    const GlobalOptions& Given;
    bool Json = false;   // results as one JSON document
    bool DryRun = false; // write and start nothing, show what would be
    bool Reveal = false; // show passwords
    bool Header = false; // lists begin with the names of their columns, also where they are no table
    bool Quiet = false;  // say nothing of what was done

    // From here on says what is done, but for what a person wants none of and a rehearsal does not do; or nothing, as
    // while something is only looked at.
    void SayWhatIsDone(bool isSaid = true) const { Speaker.SetStatusShown(isSaid && !DryRun && !Quiet); }

    // Says why the command is refused, in one line; returns the exit status.
    [[nodiscard]] int Refuse(std::string_view reason) const { return Say(reason, kExitRefused); }
    [[nodiscard]] int WrongUsage(std::string_view reason) const { return Say(reason, kExitWrongUsage); }

  private:
    [[nodiscard]] int Say(std::string_view reason, int status) const {
        Streams.PrintNotice(std::string(reason) + '\n');
        return status;
    }
};

} // namespace bv::console
