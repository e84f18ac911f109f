// The server's settings while a person edits them: the options and the types of telephone number.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "options/server_options.h"
#include "options/telephone_types.h"

namespace bv {

class OptionsEntry {
  public:
    // Reads SETUP.INI, once. Status 467 and 469. False after 413 or 9011.
    bool Load();

    [[nodiscard]] const ServerOptions& Before() const { return before_; }
    [[nodiscard]] const ServerOptions& After() const { return after_; }

    // Takes a value that a person gives. Returns the fault in a sentence, and nothing is taken.
    std::optional<std::string> Enter(const OptionKey& key, std::string_view text);

    // The list of types; none when it could not be read whole: then it is neither shown in part nor written.
    [[nodiscard]] const std::optional<TelephoneTypes>& Types() const { return types_; }
    void SetTypes(TelephoneTypes types) { types_ = std::move(types); }

    // Whether a value is another one than when it was read.
    [[nodiscard]] bool IsChanged() const;

    // How many of the keys that can be written the file does not have; and 9303 in status line 2 when there are any, or
    // 9206 for a file that may not be written.
    [[nodiscard]] std::size_t CountAbsent() const;
    void SayAbsent() const;

    // What may not be saved so, after its message: CheckOptions. To be asked before Save.
    [[nodiscard]] const OptionKey* Check() const { return CheckOptions(after_, saved_); }

    // Writes what was changed, and keys that the file lacks, on top of what somebody else has written since
    // (TakesMine). Warns of types that will be read as others. Statuses and faults as of SaveServerOptions and
    // SaveTelephoneTypes; when a save fails in its middle, 9290 says what was saved, and what was entered stays to be
    // saved again. Without anything to write, does and says nothing.
    bool Save();

  private:
    struct InFile {
        ServerOptions Options;
        SavedOptions Saved;
        std::optional<TelephoneTypes> Types;
    };
    static std::optional<InFile> Read();
    void Begin(InFile file);
    bool TakeOver();
    bool SaveOptions();
    bool SaveTypes();
    void SayWhatWasSaved(const SavedOptions& before);

    ServerOptions before_;
    ServerOptions after_;
    SavedOptions saved_;
    std::optional<TelephoneTypes> types_;
    std::optional<TelephoneTypes> typesBefore_;
};

} // namespace bv
