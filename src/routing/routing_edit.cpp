#include "routing/routing_edit.h"

#include <algorithm>
#include <map>
#include <string>

#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/text_edits.h"
#include "platform/ascii.h"
#include "routing/routing_file.h"
#include "routing/routing_messages.h"
#include "shell/server_files.h"
#include "shell/startup.h"
#include "voice/messages.h"

namespace bv {
namespace {

// A line of a paragraph, and what becomes of it.
struct EditedLine {
    Position From = 0;
    Position To = 0;
    std::string Text; // cleaned
    bool IsGone = false;
    std::optional<std::string> New;
    std::string Added; // lines behind it
};

// The lines of a paragraph that are no comments, its header first.
class EditedParagraph {
  public:
    EditedParagraph(ControlStream& held, RoutingKind kind) : held_(held), header_(HeaderOf(kind)) {
        ControlLine line;
        held.Rewind();
        isThere_ = FindParagraph(held, header_, line);
        if (isThere_) Take("");
        while (isThere_ && FindKeyLine(held, std::nullopt, line)) Take(line.View());
        if (!isThere_) lines_.push_back(EndOfFile());
    }

    [[nodiscard]] std::size_t Count() const { return lines_.size(); }
    EditedLine& operator[](std::size_t index) { return lines_[index]; }

    static void AddBehind(EditedLine& line, std::string_view text) { line.Added.append(text).append(kLineEnd); }
    void Append(std::string_view text) { AddBehind(lines_.back(), text); }

    void Collect(TextEdits& edits) const {
        for (const EditedLine& line : lines_) {
            if (!line.IsGone && !line.New && line.Added.empty()) continue;
            std::string text = line.New ? *line.New + std::string(kLineEnd) : AsItStands(line);
            edits.push_back({line.From, line.To, (line.IsGone ? std::string() : text) + line.Added});
        }
    }

  private:
    void Take(std::string_view text) {
        const TextEdit place = EditLastLine(held_, std::nullopt);
        lines_.push_back({place.From, place.To, std::string(text), false, {}, {}});
    }
    EditedLine EndOfFile() {
        held_.Rest();
        return {held_.Tell(), held_.Tell(), {}, false, {}, {}};
    }
    // With the end that the file's last line may lack, and the header that it may lack, after an empty line.
    [[nodiscard]] std::string AsItStands(const EditedLine& line) const {
        std::string text(held_.Seen(line.From, static_cast<std::size_t>(line.To - line.From)));
        const bool lacksEnd = line.To > 0 && held_.Seen(line.To - 1, 1) != "\n";
        if (lacksEnd) text += kLineEnd;
        return isThere_ ? text : text.append(kLineEnd).append(header_).append(kLineEnd);
    }

    ControlStream& held_;
    std::string_view header_;
    bool isThere_ = false;
    std::vector<EditedLine> lines_;
};

const std::string& NameOf(const SenderIdRule& rule) { return rule.Sender; }
const std::string& NameOf(const SubAddressRule& rule) { return rule.SubAddress; }
const std::string& NameOf(const ForwardRule& rule) { return rule.User; }

// The lines of each key, which is folded; a line that is changed loses its own.
using LinesOfKeys = std::multimap<std::string, std::size_t>;

// Where a new rule of a key goes: into the given line, else that of the first one of the key. The others go.
std::optional<std::size_t> PlaceOf(EditedParagraph& lines, LinesOfKeys& keys, const std::string& key,
                                   std::optional<std::size_t> place) {
    const auto [first, last] = keys.equal_range(key);
    for (auto at = first; at != last; ++at) {
        if (!place) place = at->second;
        if (place != at->second) lines[at->second].IsGone = true;
    }
    keys.erase(first, last);
    if (place) keys.emplace(key, *place);
    return place;
}

// Changes the paragraph of rules that are one line each. The name of a rule that is not there any more, or none.
template <class Rule, auto Parse>
std::optional<std::string> ChangeLines(EditedParagraph& lines, const std::vector<RuleChange<Rule>>& changes) {
    LinesOfKeys keys;
    for (std::size_t i = 1; i < lines.Count(); ++i)
        if (const auto key = KeyOfLine(lines[i].Text)) keys.emplace(UpperText(*key), i);
    for (const auto& [before, after] : changes) {
        std::optional<std::size_t> place;
        if (before) {
            auto [at, last] = keys.equal_range(UpperText(NameOf(*before)));
            while (at != last && Parse(lines[at->second].Text) != before) ++at;
            if (at == last) return NameOf(*before);
            place = at->second;
            keys.erase(at);
        }
        if (!after) {
            lines[*place].IsGone = true;
            continue;
        }
        place = PlaceOf(lines, keys, UpperText(NameOf(*after)), place);
        if (place)
            lines[*place].New = LineOf(*after);
        else
            lines.Append(LineOf(*after));
    }
    return {};
}

// The paragraph of the senders' records.
class SenderEdit {
  public:
    explicit SenderEdit(EditedParagraph& lines) : lines_(lines) {
        for (std::size_t i = 1; i < lines.Count(); ++i) TakeLine(i);
    }

    // False when what is to be changed is not there any more.
    bool Make(const RuleChange<SenderIdRule>& change) {
        std::optional<std::size_t> place;
        if (change.Before) {
            place = Find(*change.Before);
            if (!place) return false;
        }
        const bool isEntry = change.Before && !change.Before->Addressee.empty();
        const bool stays = change.After && isEntry && change.After->Record == change.Before->Record;
        if (place && (!change.After || (isEntry && !stays))) lines_[*place].IsGone = true;
        if (!change.After) return true;
        return Put(*change.After, stays ? place : std::nullopt);
    }

    // To be called at the end.
    void AppendNewRecords() {
        for (const auto& [key, record] : newRecords_) lines_.Append(record);
    }

  private:
    struct Record {
        std::size_t Line;
        std::size_t LastLine;             // of its entries, or its own
        std::optional<SenderIdRule> Rule; // none: malformed
    };

    static std::string KeyOf(int record, std::string_view addressee) {
        return std::to_string(record) + ':' + UpperText(addressee);
    }

    void TakeLine(std::size_t index) {
        const std::string& text = lines_[index].Text;
        if (text.front() == kRecordMarker) {
            records_.push_back({index, index, ParseRecordLine(text)});
            if (records_.back().Rule) records_.back().Rule->Record = static_cast<int>(records_.size()) - 1;
            return;
        }
        if (records_.empty() || !records_.back().Rule) return;
        SenderIdRule rule = *records_.back().Rule;
        if (!ParseAddresseeLine(text, rule)) return;
        records_.back().LastLine = index;
        entries_.emplace(KeyOf(rule.Record, rule.Addressee), index);
        rules_.emplace(index, std::move(rule));
    }

    Record* RecordAt(int number) {
        const bool isThere = number >= 0 && static_cast<std::size_t>(number) < records_.size();
        return isThere && records_[static_cast<std::size_t>(number)].Rule ? &records_[static_cast<std::size_t>(number)]
                                                                          : nullptr;
    }

    // The line of a rule that is to be changed, which then has no key any more.
    std::optional<std::size_t> Find(const SenderIdRule& rule) {
        const Record* record = RecordAt(rule.Record);
        if (record == nullptr) return {};
        if (rule.Addressee.empty()) return record->Rule == rule ? std::optional(record->Line) : std::nullopt;
        auto [at, last] = entries_.equal_range(KeyOf(rule.Record, rule.Addressee));
        while (at != last && rules_.at(at->second) != rule) ++at;
        if (at == last) return {};
        const std::size_t line = at->second;
        entries_.erase(at);
        return line;
    }

    bool Put(const SenderIdRule& rule, std::optional<std::size_t> place) {
        if (rule.Record == kNewRecord) {
            std::string& record = newRecords_[RecordKeyText(rule)];
            if (record.empty()) record = RecordLineOf(rule);
            if (!rule.Addressee.empty()) record.append(kLineEnd).append(LineOf(rule));
            return true;
        }
        Record* record = RecordAt(rule.Record);
        if (record == nullptr) return false;
        if (RecordLineOf(rule) != RecordLineOf(*record->Rule)) lines_[record->Line].New = RecordLineOf(rule);
        if (rule.Addressee.empty()) return true;
        place = PlaceOf(lines_, entries_, KeyOf(rule.Record, rule.Addressee), place);
        if (place)
            lines_[*place].New = LineOf(rule);
        else
            EditedParagraph::AddBehind(lines_[record->LastLine], LineOf(rule));
        return true;
    }

    EditedParagraph& lines_;
    std::vector<Record> records_; // by their number
    std::map<std::size_t, SenderIdRule> rules_;
    LinesOfKeys entries_;
    std::map<std::string, std::string> newRecords_; // the lines of each
};

std::optional<std::string> ChangeSenders(EditedParagraph& lines, const std::vector<RuleChange<SenderIdRule>>& changes) {
    SenderEdit edit(lines);
    for (const RuleChange<SenderIdRule>& change : changes)
        if (!edit.Make(change)) return NameOf(change.Before ? *change.Before : *change.After);
    edit.AppendNewRecords();
    return {};
}

// Plans the changes of one kind. The name of a rule that is not there any more, or none.
template <class Changes, class Plan>
std::optional<std::string> PlanKind(ControlStream& held, RoutingKind kind, const Changes& changes, Plan plan,
                                    TextEdits& edits) {
    if (changes.empty()) return {};
    EditedParagraph lines(held, kind);
    auto gone = plan(lines, changes);
    if (!gone) lines.Collect(edits);
    return gone;
}

std::optional<std::string> PlanChanges(ControlStream& held, const RoutingChanges& changes, TextEdits& edits) {
    auto gone = PlanKind(held, RoutingKind::Sender, changes.Senders, ChangeSenders, edits);
    if (!gone)
        gone = PlanKind(held, RoutingKind::SubAddress, changes.SubAddresses,
                        ChangeLines<SubAddressRule, ParseSubAddressLine>, edits);
    if (!gone)
        gone =
            PlanKind(held, RoutingKind::Forward, changes.Forwards, ChangeLines<ForwardRule, ParseForwardLine>, edits);
    std::ranges::stable_sort(edits, {}, &TextEdit::From);
    return gone;
}

} // namespace

bool ChangeRoutingRules(const RoutingChanges& changes) {
    if (!OpenRoutingFile()) return false;
    std::optional<std::string> gone;
    const auto plan = [&](ControlStream& held) {
        TextEdits edits;
        gone = PlanChanges(held, changes, edits);
        return gone ? TextEdits() : edits;
    };
    if (!EditControlFile(PathOf(ServerFile::Routing), plan)) return false;
    if (gone) {
        ShowError(kChangedMeanwhile, FormatText("The rule for %s", *gone));
        return false;
    }
    Startup().SettingsChanged = true;
    return true;
}

} // namespace bv
