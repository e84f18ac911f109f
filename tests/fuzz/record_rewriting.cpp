// Changing one record of a control file: the whole new file against a model that takes each paragraph apart into
// records; doing it again changes nothing.
// Parameters: paragraph | record key, which begins with the marker | field key (empty: remove the other lines) | field
// value ("-": delete the field) | record value (absent: delete the opening line) | "+" to keep the old opening line.
#include "ctlfile/memory_disk.h"
#include "ctlfile/rewriter.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

using Lines = std::vector<std::string>;

struct Change {
    std::string Paragraph;
    std::string RecordKey;
    std::string FieldKey;
    std::optional<std::string> FieldValue;
    std::optional<std::string> RecordValue;
    bool Append;

    [[nodiscard]] bool Opens(const std::string& line) const { return line[0] == RecordKey[0]; }
    [[nodiscard]] std::string OpeningLine() const { return RecordKey + " " + *RecordValue; }
    [[nodiscard]] RecordChange ForEngine() const {
        return {Paragraph, RecordKey,  RecordValue, Append ? Placing::Append : Placing::InPlace,
                FieldKey,  FieldValue, RecordKey[0]};
    }
};

// The lines below the opening line of the record to change.
Lines ChangedFields(const Lines& fields, const Change& change) {
    Lines changed;
    bool pending = !change.FieldKey.empty() && change.FieldValue;
    const auto writePending = [&] {
        if (pending) changed.push_back(model::KeyedLine(change.FieldKey, *change.FieldValue));
        pending = false;
    };
    for (const std::string& line : fields) {
        if (!model::IsSignificant(line)) {
            changed.push_back(line);
        } else if (!change.FieldKey.empty() && model::Begins(line, change.FieldKey)) {
            writePending();
        } else if (!change.FieldKey.empty()) {
            changed.push_back(line);
        }
    }
    writePending();
    return changed;
}

// The paragraph's lines but its header, with the record changed unless that is done.
Lines ChangedBody(const Lines& body, const Change& change, bool& done) {
    std::vector<Lines> records(1); // the first is what stands before the first record
    for (const std::string& line : body) {
        if (line.empty()) continue;
        if (change.Opens(line)) records.emplace_back();
        records.back().push_back(line);
    }
    Lines changed = records[0];
    for (std::size_t i = 1; i < records.size(); ++i) {
        const std::string opening = records[i].front();
        Lines fields(records[i].begin() + 1, records[i].end());
        const bool isTheOne = !done && model::Begins(opening, change.RecordKey);
        if (isTheOne && change.RecordValue) fields = ChangedFields(fields, change);
        if (!isTheOne || (change.RecordValue && change.Append)) {
            changed.push_back(opening);
        } else if (change.RecordValue) {
            changed.push_back(change.OpeningLine());
        }
        changed.insert(changed.end(), fields.begin(), fields.end());
        done = done || isTheOne;
    }
    if (done || !change.RecordValue) return changed;
    done = true;
    changed.push_back(change.OpeningLine());
    for (const std::string& line : ChangedFields({}, change)) changed.push_back(line);
    return changed;
}

std::string Changed(std::string_view text, const Change& change) {
    Lines changed;
    bool seen = false;
    bool done = false;
    Lines lines = model::ReadLines(text);
    for (std::size_t at = 0; at < lines.size();) {
        const std::string line = lines[at++];
        changed.push_back(line);
        if (!model::IsParagraph(line) || !model::Begins(line, change.Paragraph)) continue;
        seen = true;
        Lines body;
        while (at < lines.size() && !model::IsParagraph(lines[at])) body.push_back(lines[at++]);
        for (const std::string& one : ChangedBody(body, change, done)) changed.push_back(one);
        if (at < lines.size()) changed.emplace_back();
    }
    if (!seen) {
        if (!changed.empty() && !changed.back().empty()) changed.emplace_back();
        changed.push_back(change.Paragraph);
        for (const std::string& line : ChangedBody({}, change, done)) changed.push_back(line);
    }
    std::string file;
    for (const std::string& line : changed) file += line + "\r\n";
    return file;
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    const auto parameter = [&input](std::size_t i) { return model::Clean(input.Parameter(i).value_or("")); };
    Change change{parameter(0), parameter(1), parameter(2), parameter(3), {}, input.Parameter(5) == "+"};
    if (change.FieldValue == "-") change.FieldValue.reset();
    if (input.Parameter(4)) change.RecordValue = parameter(4);
    const auto isKey = [](const std::string& key) { return model::IsSignificant(key) && !model::IsParagraph(key); };
    if (!model::IsParagraph(change.Paragraph) || !isKey(change.RecordKey)) return;
    if (!change.FieldKey.empty() && (!isKey(change.FieldKey) || change.Opens(change.FieldKey))) return;

    const test::MemoryDisk disk;
    test::MemoryDisk::Put("A.CTL", input.Text);
    Require(UpdateControlFileRecord("A.CTL", change.ForEngine()), "UpdateControlFileRecord");
    const std::string changed = test::MemoryDisk::Get("A.CTL");
    RequireEqual(changed, Changed(input.Text, change), "the changed file");
    Require(!OpenShared("A.TMP", "rb"), "no temporary is left");
    // A second deletion takes the next record, and an empty value leaves a blank at the line's end until it is copied.
    if (!change.RecordValue || change.RecordValue->empty()) return;
    Require(UpdateControlFileRecord("A.CTL", change.ForEngine()), "UpdateControlFileRecord again");
    RequireEqual(test::MemoryDisk::Get("A.CTL"), changed, "the second change");
}

} // namespace bv::fuzz
