// Changing one key of a control file: the whole new file against the model; what was set reads back, and setting it
// again changes nothing.
// Parameters: paragraph (empty: the lines before the first) | key (empty: empty the paragraph) | value (absent: delete
// the key) | "+" for the end of the paragraph.
#include "ctlfile/memory_disk.h"
#include "ctlfile/reader.h"
#include "ctlfile/rewriter.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"

namespace bv::fuzz {
namespace {

struct Change {
    std::string Paragraph;
    std::string Key;
    std::optional<std::string> Value;
    bool Append;

    [[nodiscard]] bool InHead() const { return Paragraph.empty(); }
    [[nodiscard]] KeyChange ForEngine() const {
        return {InHead() ? std::nullopt : std::optional<std::string_view>(Paragraph),
                Key.empty() ? std::nullopt : std::optional<std::string_view>(Key), Value,
                Append ? Placing::Append : Placing::InPlace};
    }
};

std::string Changed(std::string_view text, const Change& change) {
    std::string changed;
    bool inTarget = change.InHead();
    bool seen = inTarget;
    bool pending = !change.Key.empty() && change.Value;
    bool lastWasEmpty = true;
    const auto write = [&](const std::string& line) {
        changed += line + "\r\n";
        lastWasEmpty = line.empty();
    };
    const auto writePending = [&] {
        if (pending) write(model::KeyedLine(change.Key, *change.Value));
        pending = false;
    };
    for (const std::string& line : model::ReadLines(text)) {
        if (model::IsParagraph(line)) {
            if (inTarget) {
                writePending();
                write("");
            }
            inTarget = !seen && model::Begins(line, change.Paragraph);
            seen = seen || inTarget;
            write(line);
        } else if (!inTarget || (!line.empty() && !model::IsSignificant(line))) {
            write(line);
        } else if (!line.empty() && !change.Key.empty() && !model::Begins(line, change.Key)) {
            write(line);
        } else if (!line.empty() && !change.Key.empty() && !change.Append) {
            writePending();
        }
    }
    if (!seen && !lastWasEmpty) write("");
    if (!seen) write(change.Paragraph);
    writePending();
    return changed;
}

std::string ChangedByEngine(std::string_view text, const Change& change) {
    test::MemoryDisk::Put("A.CTL", text);
    ControlStream source = OpenShared("A.CTL", "rb");
    ControlStream destination = OpenShared("B.CTL", "w+b");
    Require(CopyReplacingKey(source, destination, change.ForEngine()), "CopyReplacingKey");
    Require(destination.Close(), "closing the copy");
    return test::MemoryDisk::Get("B.CTL");
}

void CheckReadsBack(const Change& change) {
    ControlStream stream = OpenShared("B.CTL", "rb");
    ControlLine line;
    Require(change.InHead() || FindParagraph(stream, change.Paragraph, line), "the paragraph reads back");
    const bool found = FindKeyLine(stream, change.Key, line); // no key: any significant line
    Require(found == (!change.Key.empty() && change.Value), "the key reads back");
    if (!found) return;
    RequireEqual(line, model::Clean(model::KeyedLine(change.Key, *change.Value)), "the line reads back");
}

} // namespace

void TryInput(std::string_view bytes) {
    const Input input(bytes);
    Change change{model::Clean(input.Parameters[0]),
                  model::Clean(input.Parameter(1).value_or("")),
                  {},
                  input.Parameter(3) == "+"};
    if (const auto value = input.Parameter(2)) change.Value = model::Clean(*value);
    if (!change.InHead() && !model::IsParagraph(change.Paragraph)) return;
    if (!change.Key.empty() && (!model::IsSignificant(change.Key) || model::IsParagraph(change.Key))) return;

    const test::MemoryDisk disk;
    const std::string changed = ChangedByEngine(input.Text, change);
    RequireEqual(changed, Changed(input.Text, change), "the changed file");
    CheckReadsBack(change);
    RequireEqual(ChangedByEngine(changed, change), changed, "the second change");
    if (change.InHead()) return;
    test::MemoryDisk::Put("A.CTL", input.Text);
    Require(UpdateControlFile("A.CTL", change.ForEngine()), "UpdateControlFile");
    RequireEqual(test::MemoryDisk::Get("A.CTL"), changed, "the file changed in place");
    Require(!OpenShared("A.TMP", "rb"), "no temporary is left");
}

} // namespace bv::fuzz
