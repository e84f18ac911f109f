#include <optional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/output.h"
#include "console/password_input.h"
#include "ctlfile/key_fields.h"
#include "ctlfile/lines.h"
#include "ctlfile/reader.h"
#include "ctlfile/reading.h"
#include "ctlfile/rewriter.h"
#include "lcr/stored_passwords.h"
#include "platform/ascii.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv::console {
namespace {

// What the arguments name.
struct Target {
    std::string Path;
    std::string Header; // "[OPTIONS]"
    std::string Key;    // with its separator
};

// "[NAME]" of a name with or without its brackets; empty when there is no name.
std::string HeaderOf(std::string_view paragraph) {
    if (paragraph.starts_with('[')) paragraph.remove_prefix(1);
    if (paragraph.ends_with(']')) paragraph.remove_suffix(1);
    return paragraph.empty() ? std::string() : '[' + std::string(paragraph) + ']';
}

std::string KeyOf(const std::string& key) { return key.ends_with(':') || key.ends_with('=') ? key : key + ':'; }

// Why a line with the key could not be read back; none when it can.
std::optional<std::string> FaultOfKey(const std::string& key) {
    const std::size_t separator = key.find_first_of(":=");
    if (separator == 0 || !IsSignificantLine(key) || IsParagraphLine(key))
        return "A key is a word that begins a line: '" + key + "' is none";
    if (separator != std::string::npos && separator + 1 != key.size())
        return "A key ends at its first ':' or '=': '" + key + "' goes on";
    return {};
}

// Why readers would not give the value back as it is; none when they would.
std::optional<std::string> FaultOfValue(std::string_view key, std::string_view value) {
    if (TrimBlanks(value) != value)
        return FormatText("Readers would lose the blank that VALUE \"%s\" begins or ends with", value);
    if (value == kPasswordMark && IsPasswordKey(key.substr(0, key.size() - 1)))
        return FillMessage(kAsterisksForPassword, key.substr(0, key.size() - 1));
    if (KeyedLine(key, value).size() > kMaxLine)
        return "A line holds at most " + std::to_string(kMaxLine) + " characters: readers would lose the end of VALUE";
    return {};
}

// Reads the target from the arguments; 0 or the exit status, a message shown.
int ReadTarget(const Session& session, const Arguments& arguments, Target& target) {
    target = {arguments["FILE"], HeaderOf(arguments["PARAGRAPH"]), KeyOf(arguments["KEY"])};
    if (target.Header.empty()) return session.WrongUsage("A paragraph has a name");
    if (target.Header.size() > kMaxLine)
        return session.Refuse("A line holds at most " + std::to_string(kMaxLine) + " characters");
    if (!arguments.Has("KEY")) return 0;
    const std::optional<std::string> fault = FaultOfKey(arguments["KEY"]);
    return fault ? session.WrongUsage(*fault) : 0;
}

int RefuseParagraph(const Session& session, const Target& target) {
    return session.Refuse("There is no paragraph " + target.Header + " in file " + target.Path);
}

int RefuseKey(const Session& session, const Target& target) {
    return session.Refuse("There is no key " + target.Key + " in paragraph " + target.Header + " of file " +
                          target.Path);
}

std::string ValueText(std::string_view line) { return std::string(KeyValue(line).value_or("")); }

// A line without a separator is all key, and has no value.
struct PartedLine {
    std::string Key;
    Value Content;
};

// The line as it is shown.
std::string ShownLine(const Session& session, std::string_view line) {
    return session.Reveal ? std::string(line) : WithMaskedPassword(line);
}

PartedLine PartLine(std::string_view line) {
    const std::size_t separator = line.find_first_of(":=");
    if (separator == std::string_view::npos) return {std::string(line), {}};
    return {std::string(line.substr(0, separator)), ValueText(line)};
}

int ListParagraphs(Session& session, const Arguments& arguments) {
    ControlStream stream = OpenForReading(arguments["FILE"]);
    if (!stream) return kExitRefused;
    std::vector<std::string> headers;
    for (ControlLine line; FindParagraph(stream, {}, line);) headers.push_back(line.String());
    if (!WasRead(stream)) return kExitRefused;
    PrintLines(session, headers);
    return kExitDone;
}

int ListLines(Session& session, const Arguments& arguments) {
    Target target;
    if (const int fault = ReadTarget(session, arguments, target)) return fault;
    ControlStream stream = OpenForReading(target.Path);
    if (!stream) return kExitRefused;
    ControlLine line;
    const bool found = FindParagraph(stream, target.Header, line);
    std::vector<std::string> lines;
    std::vector<Record> records;
    while (found && FindKeyLine(stream, {}, line)) {
        lines.push_back(ShownLine(session, line));
        const PartedLine parted = PartLine(lines.back());
        records.push_back({{"key", parted.Key}, {"value", parted.Content}});
    }
    if (!WasRead(stream)) return kExitRefused;
    if (!found) return RefuseParagraph(session, target);
    if (session.Json)
        PrintRecords(session, records);
    else
        PrintLines(session, lines);
    return kExitDone;
}

int List(Session& session, const Arguments& arguments) {
    return arguments.Has("PARAGRAPH") ? ListLines(session, arguments) : ListParagraphs(session, arguments);
}

enum class Sought { Unreadable, NoParagraph, NoKey, Key };

// Looks for the target's key and stores its line. Unreadable: a message has been shown.
Sought Find(const Target& target, ControlLine& line) {
    ControlStream stream = OpenForReading(target.Path);
    if (!stream) return Sought::Unreadable;
    Position body = 0;
    const bool hasParagraph = FindParagraph(stream, target.Header, line, &body);
    if (hasParagraph && FindKeyLine(stream, target.Key, line, body)) return Sought::Key;
    if (!WasRead(stream)) return Sought::Unreadable;
    return hasParagraph ? Sought::NoKey : Sought::NoParagraph;
}

// Says what was not found, if anything that is needed; 0 or the exit status.
int RequireFound(const Session& session, const Target& target, Sought found) {
    switch (found) {
    case Sought::Unreadable: return kExitRefused;
    case Sought::NoParagraph: return RefuseParagraph(session, target);
    case Sought::NoKey: return RefuseKey(session, target);
    case Sought::Key: break;
    }
    return 0;
}

int Get(Session& session, const Arguments& arguments) {
    Target target;
    if (const int fault = ReadTarget(session, arguments, target)) return fault;
    ControlLine line;
    if (const int fault = RequireFound(session, target, Find(target, line))) return fault;
    const std::string shown = ShownLine(session, line);
    if (session.Json)
        PrintRecord(session, {{PartLine(shown).Key, ValueText(shown)}});
    else
        PrintLines(session, {ValueText(shown)});
    return kExitDone;
}

bool Rewrite(const std::string& path, const KeyChange& change) {
    ShowStatus(kUpdatingFile, path);
    if (UpdateControlFile(path, change)) {
        ShowStatus(kUpdatedFile, path);
        return true;
    }
    const bool canOpen{OpenShared(path, "r+b", OpenTimeout{0})};
    ShowError(canOpen ? kErrorUpdatingFile : kUnableToOpenFile, path);
    return false;
}

int Set(Session& session, const Arguments& arguments) {
    Target target;
    if (const int fault = ReadTarget(session, arguments, target)) return fault;
    const std::string& value = arguments["VALUE"];
    if (const std::optional<std::string> fault = FaultOfValue(target.Key, value)) return session.Refuse(*fault);
    WarnOfTypedPassword(session, target.Key.substr(0, target.Key.size() - 1), value);
    if (!OpenForReading(target.Path)) return kExitRefused;
    const Placing placing = arguments.Has("--append") ? Placing::Append : Placing::InPlace;
    return Perform(session, [&] { return Rewrite(target.Path, {target.Header, target.Key, value, placing}); });
}

int Delete(Session& session, const Arguments& arguments) {
    Target target;
    if (const int fault = ReadTarget(session, arguments, target)) return fault;
    ControlLine line;
    if (const int fault = RequireFound(session, target, Find(target, line))) return fault;
    return Perform(session, [&] { return Rewrite(target.Path, {target.Header, target.Key, {}}); });
}

int Empty(Session& session, const Arguments& arguments) {
    Target target;
    if (const int fault = ReadTarget(session, arguments, target)) return fault;
    if (!OpenForReading(target.Path)) return kExitRefused;
    return Perform(session, [&] { return Rewrite(target.Path, {target.Header, {}, {}}); });
}

constexpr Parameter kFile = {
    .Name = "FILE", .Help = "Control file, by a path of this system or a Windows path", .IsPath = true};
constexpr Parameter kParagraph = {"PARAGRAPH", "Paragraph, with or without its brackets"};
constexpr Parameter kKey = {"KEY", "Key, with or without its ':'; write the '=' of one that has that"};

constexpr Verb kVerbs[] = {
    {.Name = "list",
     .Help = "List the paragraphs of a file, or the lines of its first paragraph of a name",
     .Parameters = {{kFile, {kParagraph.Name, kParagraph.Help, ParameterKind::Optional}}},
     .Example = "SETUP.INI OPTIONS",
     .Run = List},
    {.Name = "get",
     .Help = "Show the value of a key",
     .Parameters = {{kFile, kParagraph, kKey}},
     .Example = "SETUP.INI OPTIONS LogFile",
     .Run = Get},
    {.Name = "set",
     .Help = "Set the value of a key, adding the key or its paragraph when it is not there",
     .Parameters = {{kFile,
                     kParagraph,
                     kKey,
                     {"VALUE", "Value; may be empty (''). Put -- before one that begins with '-'"},
                     {"--append", "Move the key's line to the end of the paragraph", ParameterKind::Flag}}},
     .Example = "SETUP.INI OPTIONS LogFile SERVER.LOG",
     .Change = Set},
    {.Name = "delete",
     .Help = "Delete every line with a key",
     .Parameters = {{kFile, kParagraph, kKey}},
     .Example = "SETUP.INI OPTIONS LogFile",
     .Change = Delete},
    {.Name = "empty",
     .Help = "Delete every line of a paragraph except comments, and keep its header, or make it",
     .Parameters = {{kFile, kParagraph}},
     .Example = "SETUP.INI OPTIONS",
     .Change = Empty},
};

} // namespace

const Area kFileArea = {"file", "Read and change any control file", kVerbs};

} // namespace bv::console
