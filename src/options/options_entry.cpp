#include "options/options_entry.h"

#include <algorithm>
#include <utility>

#include "ctlfile/merge.h"
#include "ctlfile/reading.h"
#include "options/option_messages.h"
#include "shell/server_files.h"
#include "voice/messages.h"

namespace bv {
namespace {

constexpr OpenTimeout kTimeout{10};

bool CanBeWritten(const OptionKey& key) { return key.Trait != OptionKey::Traits::OnlyRead; }

std::string PathOfKey(const OptionKey& key) {
    const std::string_view paragraph = key.Paragraph.substr(1, key.Paragraph.size() - 2);
    return FormatText("%s/%s", paragraph, key.Field.Name());
}

void AppendName(std::string& names, const OptionKey& key) {
    names.append(names.empty() ? "" : ", ").append(PathOfKey(key));
}

std::string ListText(const std::optional<TelephoneTypes>& types) {
    std::string text;
    for (const TelephoneType& type : types.value_or(TelephoneTypes{}))
        text.append(text.empty() ? "" : ", ")
            .append(TelephoneTypeWord(type.Code))
            .append(" ")
            .append(type.Description.View());
    return text;
}

} // namespace

std::optional<OptionsEntry::InFile> OptionsEntry::Read() {
    InFile file;
    ControlStream setup = OpenForReading(PathOf(ServerFile::Setup), kTimeout);
    if (!setup) return std::nullopt;
    const OptionsFound found = ReadServerOptions(setup, file.Options, file.Saved);
    TelephoneTypes types;
    if (ReadTelephoneTypes(setup, types)) file.Types = std::move(types);
    if (!WasRead(setup) || found.IsGatewayUnknown) return std::nullopt;
    return file;
}

void OptionsEntry::Begin(InFile file) {
    before_ = file.Options;
    after_ = std::move(file.Options);
    saved_ = std::move(file.Saved);
    types_ = file.Types;
    typesBefore_ = std::move(file.Types);
}

bool OptionsEntry::Load() {
    ShowStatus(kReadingSettings);
    ShowStatus(kUsingFile, PathOf(ServerFile::Setup));
    std::optional<InFile> file = Read();
    if (!file) return false;
    Begin(std::move(*file));
    return true;
}

void OptionsEntry::SayAbsent() const {
    const std::size_t count = CountAbsent();
    std::string text = ReadOnlyText(PathOf(ServerFile::Setup));
    if (text.empty() && count != 0) text = FillMessage(kSettingsAbsent, PathOf(ServerFile::Setup), count);
    SetStatusLine(text, 2);
}

std::optional<std::string> OptionsEntry::Enter(const OptionKey& key, std::string_view text) {
    if (std::optional<std::string> fault = key.Field.FaultIn(after_, text)) return fault;
    if (text != key.Field.Text(after_)) key.Field.Store(after_, text);
    return std::nullopt;
}

bool OptionsEntry::IsChanged() const { return before_ != after_ || types_ != typesBefore_; }

std::size_t OptionsEntry::CountAbsent() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        OptionKeys(), [&](const OptionKey& key) { return CanBeWritten(key) && !StoredValueOf(saved_, key); }));
}

// Puts what was entered on top of what the file has now.
bool OptionsEntry::TakeOver() {
    std::optional<InFile> now = Read();
    if (!now) return false;
    if (types_ != typesBefore_ && !now->Types) {
        ShowError(kTypesUnreadable);
        return false;
    }
    ServerOptions merged = now->Options;
    for (const OptionKey& key : OptionKeys()) {
        const std::string mine = key.Field.Text(after_);
        const MergedKey texts{key.Field.Name(), key.Field.Text(before_), mine, key.Field.Text(now->Options)};
        if (CanBeWritten(key) && TakesMine(PathOf(ServerFile::Setup), texts)) key.Field.Store(merged, mine);
    }
    std::optional<TelephoneTypes> types = now->Types;
    const MergedKey list{"TelnumType", ListText(typesBefore_), ListText(types_), ListText(now->Types)};
    if (types_ && types && TakesMine(PathOf(ServerFile::Setup), list)) types = types_;
    Begin(std::move(*now));
    after_ = std::move(merged);
    types_ = std::move(types);
    return true;
}

// What was entered is still to be saved; which of it is in the file by now, the file says.
void OptionsEntry::SayWhatWasSaved(const SavedOptions& before) {
    std::optional<InFile> now = Read();
    if (!now) return;
    std::string done;
    std::string left;
    for (const OptionKey& key : OptionKeys()) {
        if (!IsToBeWritten(after_, before, key)) continue;
        AppendName(IsToBeWritten(after_, now->Saved, key) ? left : done, key);
    }
    const std::string none = FillMessage(kNoSettings);
    ShowWarning(kSavedBeforeFault, done.empty() ? none : done, left.empty() ? none : left);
    before_ = now->Options;
    saved_ = std::move(now->Saved);
}

bool OptionsEntry::SaveOptions() {
    const SavedOptions before = saved_;
    if (WriteServerOptions(after_, saved_)) {
        before_ = after_;
        return true;
    }
    if (saved_ != before) SayWhatWasSaved(before);
    return false;
}

bool OptionsEntry::SaveTypes() {
    if (!types_ || types_ == typesBefore_) return true;
    WarnOfShifts(*types_);
    return SaveTelephoneTypes(*types_, *typesBefore_);
}

bool OptionsEntry::Save() {
    if (!IsChanged() && CountAbsent() == 0) return true;
    return TakeOver() && SaveOptions() && SaveTypes();
}

} // namespace bv
