// What one run of the companion has at hand.
#pragma once

#include <string>
#include <string_view>

#include "console/console.h"
#include "console/console_front.h"

namespace bv::console {

struct Session {
    Console& Streams;
    ConsoleFront& Speaker; // the installed front
    bool Json = false;     // results as one JSON document
    bool DryRun = false;   // write and start nothing, show what would be
    bool Reveal = false;   // show passwords

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
