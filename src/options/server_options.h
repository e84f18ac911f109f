// Reading and saving the server's options: the paragraphs "[OPTIONS]", "[QUEUEMAN]", "[PRINTING]", "[EPSTIFF]",
// "[BSUBMIT]", "[HPSCAN]" and "[WORKSTATION]" of SETUP.INI.
#pragma once

#include <string>
#include <vector>

#include "ctlfile/control_stream.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/key_help.h"
#include "options/option_keys.h"

namespace bv {

// What SETUP.INI held for each of OptionKeys when it was last read or written.
using SavedOptions = std::vector<StoredValue>;

const StoredValue& StoredValueOf(const SavedOptions& saved, const OptionKey& key);

// What the reader finds beside the options.
struct OptionsFound {
    bool HasRouter = false;        // "[ROUTER]": least-cost routing has been configured
    bool IsGatewayUnknown = false; // a default hangs on its version, which could not be read; a message says so
};

// Fills the options, each paragraph searched from the file's start. What is absent or unreadable has its default and
// counts as not in the file. Without "[PRINTING]" the print choices are read from where older files have them.
OptionsFound ReadServerOptions(ControlStream& setup, ServerOptions& options, SavedOptions& saved);

// The same from SETUP.INI, which is opened for it. Status 467 and 469. False after 413 or 9011, also of
// the mail gateway's VERSION.DAT.
bool LoadServerOptions(ServerOptions& options, SavedOptions& saved, OptionsFound* found = nullptr);

// The value that is in force without the key.
std::string DefaultText(const OptionKey& key);

// What a person is told of the key.
KeyHelp HelpOf(const OptionKey& key);

// Takes a value that a person gives; that which is in force may always be given. False after a message.
bool EnterOption(const OptionKey& key, std::string_view text, ServerOptions& options);

// What the values do together with each other and with what lies outside, of those that are not as they were saved:
// whether users who are newly named are there (CheckReceiver), directories are, or the person agrees or has them made
// (CheckDirectory), scanner input has a directory, and text has room between its margins, or the person goes on.
// Returns the key that is wrong, after its message; none without one.
const OptionKey* CheckOptions(const ServerOptions& options, const SavedOptions& saved);

// Whether the key is to be written: its value is not the one in the file.
bool IsToBeWritten(const ServerOptions& options, const SavedOptions& saved, const OptionKey& key);

// Writes the keys whose values are not those in the file, by one rewrite of SETUP.INI each; without any, does and says
// nothing. Status 470 and 471; sets SettingsChanged. False after 413, with nothing changed, or after 5000 at the first
// key that cannot be written: those before it are in the file, and `saved` takes all of them for written.
bool WriteServerOptions(const ServerOptions& options, SavedOptions& saved);

// The same of what CheckOptions finds to be right.
bool SaveServerOptions(const ServerOptions& options, SavedOptions& saved);

} // namespace bv
