// The command line itself, and the commands that only report.
#include <gtest/gtest.h>

#include <sstream>

#include "console/command_line.h"
#include "console/output.h"
#include "console/table.h"
#include "console/text_console.h"
#include "console/user_settings.h"
#include "platform/code_page.h"
#include "support/memory_server.h"
#include "support/samples.h"
#include "support/temporary_directory.h"
#include "support/texts.h"

namespace bv::console {
namespace {

using test::MemoryServer;
using test::TextConsole;

struct Fault {
    std::vector<std::string> Arguments;
    int Status;
    std::string Notices;
};

const std::string kDriveForm = "--drive takes a drive and a directory, as X:=DIR, or a share and a directory, as "
                               "'\\\\server\\share=DIR'\n";

const Fault kFaults[] = {
    {{"file"}, 2, "bvctl file: A verb is missing\nSee 'bvctl file --help'.\n"},
    {{"nonsense"}, 2, "bvctl: There is no 'nonsense'\nSee 'bvctl --help'.\n"},
    {{"--json=false", "paths"}, 2, "bvctl: json was given a disallowed flag override\nSee 'bvctl --help'.\n"},
    {{"file", "get", "X"}, 2, "bvctl file get: PARAGRAPH is required\nSee 'bvctl file get --help'.\n"},
    {{"paths", "--drive", "F"}, 2, kDriveForm},
    {{"paths", "--drive", "\\\\server=X"}, 2, kDriveForm},
    {{"paths", "--drive", "\\\\a\\b\\c=X"}, 2, kDriveForm},
    {{"paths", "--drive", "F:=X"}, 2, "--drive: drives are the system's own\n"},
    {{"paths", "--ini", "F:\\A;F:\\B"}, 2, "--ini takes one directory, without ';'\n"},
    {{"paths", "--ini", "F:\\NONE"}, 1, "There is no BRIVANE.INI in directory F:\\NONE\n"},
    {{"paths"}, 1, "ERROR - File BRIVANE.INI not found\n"},
    {{"coversheet", "list"}, 1, "ERROR - File BRIVANE.INI not found\n"},
    {{"completion", "fish"}, 2, "SHELL is bash or zsh\n"},
    {{"--codepage", "x", "paths"}, 2, "--codepage: \"x\" is not the number of a code page\n"},
    {{"manual", "--dry-run"}, 2, "bvctl manual: --dry-run has no use here\nSee 'bvctl manual --help'.\n"},
    {{"lcr", "rules", "--dry-run"}, 2, "bvctl lcr rules: --dry-run has no use here\nSee 'bvctl lcr rules --help'.\n"},
    {{"secret", "unscramble"}, 2, "The text to unscramble is a line of standard input\n"},
};

TEST(CommandLine, SaysWhatIsWrong) {
    MemoryServer server;
    for (const auto& [arguments, status, notices] : kFaults) {
        SCOPED_TRACE(notices);
        TextConsole console;
        EXPECT_EQ(console.Run(arguments), status);
        EXPECT_EQ(console.Results, "");
        EXPECT_EQ(console.Notices, notices);
    }
    TextConsole console;
    EXPECT_EQ(console.Run({}), 2);
    EXPECT_NE(console.Notices.find("Usage: bvctl"), std::string::npos);
    EXPECT_EQ(console.Run({"--version"}), 0);
    EXPECT_EQ(console.Results, "bvctl 5.50\n");
}

TEST(CommandLine, TakesTheUsersSettingsForWhatIsNotGiven) {
    const test::TemporaryDirectory directory;
    directory.Write("bvctl.ini", "ini=F:\\FILE\ndrive=F:=/a\ndrive=G:=/b\ncodepage=1250\n");
    const std::string file = directory.HostPath().string() + "/bvctl.ini";
    MemoryServer server;
    server.Environment.Variables = {
        {"XDG_CONFIG_HOME", directory.HostPath().string()}, {"BVCTL_CODEPAGE", "1251"}, {"BVCTL_INI", "F:\\VARIABLE"}};
    GlobalOptions global;
    global.Ini = {{"F:\\GIVEN"}, "--ini"};
    EXPECT_EQ(FillGlobalOptions(global), "");
    EXPECT_EQ(global.Ini.From, "--ini");
    EXPECT_EQ(global.CodePage.Values, std::vector<std::string>{"1251"});
    EXPECT_EQ(global.CodePage.From, "BVCTL_CODEPAGE");
    EXPECT_EQ(global.Drives.Values, (std::vector<std::string>{"F:=/a", "G:=/b"}));
    EXPECT_EQ(global.Drives.From, file);
    directory.Write("bvctl.ini", "colour=red\n");
    EXPECT_EQ(FillGlobalOptions(global), file + ": there is no setting colour");
}

TEST(CommandLine, MapsADriveOfTheHost) {
    if (!platform::Service<platform::Environment>::System().WindowsDirectory().empty()) GTEST_SKIP();
    const std::string samples = test::SamplesDirectory() + "/server";
    TextConsole console;
    EXPECT_EQ(console.Run({"--drive", "Q:=" + samples, "file", "get", "q:\\brivane.ini", "SERVER", "ServerName"}), 0);
    EXPECT_EQ(console.Results, "QUILL\n");
    EXPECT_EQ(console.Run({"file", "list", "\\\\S\\FAX\\Brivane.ini", "--drive", "\\\\s\\fax=" + samples}), 0);
    EXPECT_EQ(console.Results, "[WORKSTATION]\n[SERVER]\n[NETWORK]\n");
    EXPECT_EQ(console.Run({"--drive", "Q:=" + samples + "/NONE", "paths"}), 1);
    EXPECT_EQ(console.Notices, "--drive Q:: there is no directory " + samples + "/NONE\n");
}

// Every command is documented everywhere, with each of its parameters.
TEST(CommandLine, HelpManualAndCompletionKnowEveryCommand) {
    TextConsole manual;
    EXPECT_EQ(manual.Run({"manual"}), 0);
    TextConsole completion;
    EXPECT_EQ(completion.Run({"completion", "bash"}), 0);
    for (const Area* area : kAreas) {
        for (const Verb& verb : area->Verbs) {
            const std::string command =
                std::string(area->Name) + (verb.Name.empty() ? "" : " ") + std::string(verb.Name);
            SCOPED_TRACE(command);
            std::vector<std::string> asking;
            std::istringstream words(command);
            for (std::string word; words >> word;) asking.push_back(word);
            asking.emplace_back("--help");
            TextConsole help;
            EXPECT_EQ(help.Run(asking), 0);
            EXPECT_NE(help.Results.find("Usage: bvctl " + command), std::string::npos);
            EXPECT_EQ(help.Results.find(" VERB "), std::string::npos);
            EXPECT_NE(manual.Results.find("\n.SS bvctl " + test::Replaced(command, "-", "\\-")), std::string::npos);
            EXPECT_NE(completion.Results.find("'" + command + "') echo"), std::string::npos);
            for (const Parameter& parameter : verb.Parameters)
                EXPECT_NE(help.Results.find("\n  " + std::string(parameter.Name)), std::string::npos);
        }
    }
}

TEST(CommandLine, ManualIsPlainGroff) {
    TextConsole console;
    EXPECT_EQ(console.Run({"manual"}), 0);
    EXPECT_NE(console.Results.find("(\\(aq\\e\\eserver\\eshare=DIR\\(aq)"), std::string::npos);
    EXPECT_NE(console.Results.find("\n.B \\-\\-drive X:=DIR\n"), std::string::npos);
    EXPECT_EQ(console.Results.find("\n'"), std::string::npos);
}

TEST(ReportingCommands, ShowTheRecords) {
    MemoryServer server;
    server.Load();
    server.Put("F:\\INI\\BRIVANE.INI", "[SERVER]\r\nAllUserArea: U\r\nRequestArea: R\r\nServerArea: F:\\S\r\n"
                                       "SystemArea: F:\\\r\n");
    server.Put("F:\\B-DB\\SETUP.INI", "[OPTIONS]\r\nLogKeepDays: 7\r\nLanguage: ENG\r\n");
    server.Put("F:\\S\\VERSION.DAT", "[VERSION]\r\nServer: 5.50c\r\n");
    TextConsole console;
    EXPECT_EQ(console.Run({"paths", "--ini", "F:\\INI"}), 0);
    EXPECT_EQ(console.Results,
              "AllUserArea: U\\\nRequestArea: R\\\nServerArea: F:\\S\\\nSystemArea: F:\\\n"
              "MailArea: F:\\S\\B-MAIL\\\nMailAreaConfigured: NO\nLogFile: F:\\S\\B-DB\\SERVER.LOG\n"
              "LogKeepDays: 7\nLanguage: ENG\nIniFrom: --ini: F:\\INI\nDriveFrom: (none)\nCodePageFrom: (none)\n");
    EXPECT_EQ(console.Run({"--json", "paths"}), 0);
    EXPECT_NE(console.Results.find("\"MailAreaConfigured\": false,\n"), std::string::npos);
    EXPECT_NE(console.Results.find("\"LogKeepDays\": 7,\n"), std::string::npos);
    EXPECT_EQ(console.Run({"version"}), 0);
    EXPECT_EQ(console.Results, "Program: 5.50\nServer: 5.50c\nMailGateway: (none)\n");

    server.Put("F:\\S\\VERSION.DAT", "");
    EXPECT_EQ(console.Run({"version", "--json"}), 0);
    EXPECT_EQ(console.Results, "{\n  \"Program\": \"5.50\",\n  \"Server\": null,\n  \"MailGateway\": null\n}\n");
}

struct SecretCase {
    std::string Text;
    std::vector<std::string> Options;
    std::size_t Letters; // 0: refused
    int Status;
};

const SecretCase kSecrets[] = {
    {"", {}, 30, 0},
    {" \xFC blank ", {}, 30, 0},
    {"x", {"--size", "14"}, 14, 0},
    {std::string(45, 'x'), {}, 0, 1},
    {"x", {"--size", "198"}, 0, 2},
};

TEST(SecretCommand, ScramblesAndUnscrambles) {
    MemoryServer server;
    for (const auto& [text, options, letters, status] : kSecrets) {
        SCOPED_TRACE(text + (options.empty() ? "" : options.back()));
        std::vector<std::string> arguments = {"secret", "scramble"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        TextConsole console;
        console.Input = {text};
        EXPECT_EQ(console.Run(arguments), status);
        EXPECT_EQ(console.Notices == "Unable to encrypt the password\n", status == 1);
        if (status != 0) continue;
        ASSERT_EQ(console.Results.size(), letters + 1);
        console.Input = {console.Results.substr(0, letters)};
        EXPECT_EQ(console.Run({"secret", "unscramble"}), 0);
        EXPECT_EQ(console.Results, text + "\n");
    }
    TextConsole console;
    console.Terminal = true;
    console.Input = {"typed"};
    EXPECT_EQ(console.Run({"secret", "scramble"}), 0);
    EXPECT_EQ(console.Results.substr(0, 8), "(hidden)");
    EXPECT_EQ(console.Notices, "Text to scramble: \n");
    console.Terminal = false;
    console.Input = {"one", "two"};
    EXPECT_EQ(console.Run({"secret", "scramble"}), 2);
    EXPECT_EQ(console.Notices, "Standard input holds more than one line\n");
    console.Input = {"xyz"};
    EXPECT_EQ(console.Run({"secret", "unscramble"}), 1);
    EXPECT_EQ(console.Notices, "This is no scrambled text\n");
}

TEST(Output, ShowsControlCharactersInsteadOfObeyingThem) {
    const std::pair<std::string_view, const char*> texts[] = {
        {"a\tb\n", "a\tb\n"},
        {"a\r\nb\r", "a\r\nb\\x0d"},
        {"\x1b[2J\x07\x7F", "\\x1b[2J\\x07\\x7f"},
        {std::string_view("\0", 1), "\\x00"},
        {"\x80\x9B\xFC", "\x80\x9B\xFC"},
    };
    for (const auto& [text, expected] : texts) EXPECT_EQ(PrintableText(text), expected);
}

// A console whose person has UTF-8.
class Utf8Console : public test::TextConsole {
  public:
    bool HasEncoding() override { return true; }
    std::optional<std::size_t> Width() override { return Columns; }
    bool TakesColours() override { return true; }

    std::optional<std::size_t> Columns;
};

TEST(TextStreams, TurnTextsIntoThePersonsEncoding) {
    Utf8Console console;
    TextStreams streams(console, false);
    streams.PrintAsGiven("Z:\\tmp\\\xC3\xBC.ini", "/tmp/\xC3\xBC.ini");
    const std::pair<std::string, std::string> texts[] = {
        {"plain\x07\n", "plain\\x07\n"},
        {"\xFC \x80 \x81 \x9F", "\xC3\xBC \xE2\x82\xAC \\x81 \xC5\xB8"},
        {"\xFC in Z:\\tmp\\\xC3\xBC.ini.", "\xC3\xBC in /tmp/\xC3\xBC.ini."},
    };
    for (const auto& [text, expected] : texts) EXPECT_EQ(streams.Shown(text), expected);
    EXPECT_EQ(streams.Utf8Text("\x81\xC3\xBC Z:\\tmp\\\xC3\xBC.ini"), "\xC2\x81\xC3\x83\xC2\xBC /tmp/\xC3\xBC.ini");
    EXPECT_EQ(TextStreams(console, true).Shown("\xFC"), "\xFC");
    console.Input = {"\xC3\xBC", "\xC5\x81"};
    EXPECT_EQ(streams.ReadLine(), "\xFC");
    EXPECT_EQ(streams.ReadLine(), std::nullopt);
    EXPECT_EQ(console.Notices, "Standard input: the letter U+0141 is not in the code page of the files\n");
    std::string text = "\xC5\x81";
    EXPECT_EQ(streams.TakeArgument(text), "the letter U+0141 is not in the code page of the files");
    ASSERT_TRUE(platform::UseCodePage(1250));
    EXPECT_EQ(streams.TakeArgument(text), "");
    EXPECT_EQ(text, "\xA3");
    EXPECT_EQ(streams.Shown(text), "\xC5\x81");
    EXPECT_FALSE(platform::UseCodePage(932)); // two bytes a letter
    platform::UseCodePage(0);
}

TEST(Table, FitsTheTerminal) {
    Table table({"Name", "Text"}, [](std::string_view text) { return text.size(); });
    const TableRow row = {"A", "one two three four"};
    table.Add(row);
    EXPECT_EQ(table.Header() + table.Line(row), "Name  Text\nA     one two three four\n");
    table.Fit(17);
    EXPECT_EQ(table.Line(row), "A     one two ...\n");
    EXPECT_EQ(table.Line({"A\tB", ""}), "A B\n");
}

} // namespace
} // namespace bv::console
