// Every way to save a file by putting a new one in its place, and every reader of such files, with each call to the
// file system failing in its turn: what is left or read is whole, and what failed is said.
#include <functional>
#include <map>
#include <optional>

#include <gmock/gmock.h>

#include "covlet/catalogue.h"
#include "dialling/dialling_file.h"
#include "lcr/destination_edit.h"
#include "lcr/links.h"
#include "lcr/router_settings.h"
#include "lcr/rule_file.h"
#include "mailgw/mail_list.h"
#include "routing/routing_file.h"
#include "support/faulty_files.h"
#include "support/memory_server.h"
#include "support/texts.h"
#include "users/user_directories.h"

namespace bv::test {
namespace {

using Texts = std::map<std::string, std::string>; // by their names below F:\BRIVANE\, with "\n" for a line end

const std::string kRouting =
    "[BRIVANE]\nType: RoutingInit\nRevision: A\n\n[SENDERID]\n\n[SUBADDR]\n22: BOB\n\n[FORWARD]\n";
const std::string kRule = "[BRIVANE]\nType: LCRRules\nRevision: A\n\n[RULE]\nDescription: old\n\n";
const std::string kLink = "[BRIVANE]\nType: LinkDatabase\n\n[LINK]\nRemoteServerID: A\nLinkType: WAN\n"
                          "RemoteServerAddress: x\n\n";
const std::string kMail =
    "[USER]\nBrivname: X\nEmailname: a\n\n[USER]\nBrivname: OLD\nEmailname: Kay K\nSubAddr: 7\n\n";
const std::string kDialling = "[BRIVANE]\nType: DiallingProperties\n\n[DIALPROPERTIES]\nLocation: Rome\n\n[LOCATION]\n"
                              "Description: Rome\nCountry: 39\n\n";
const Texts kDestinations = {
    {"B-DB\\Region.ini", "[BRIVANE]\nType: Region\nRevision: A\n\n[REGIONS]\nRegion: EU, \"\"\n"},
    {"B-DB\\Country.ini", "[BRIVANE]\nType: Country\nRevision: A\n\n[COUNTRIES]\n"
                          "44: UK, \"\", 0\n33: FR, \"\", 0\n\n"},
    {"B-DB\\Area44.ini", "[AREAS]\nArea: LON, \"London\"\nMatch: 171*\n"}};

struct Server : MemoryServer {
    explicit Server(const Texts& texts) {
        Load();
        Front.Answer = true;
        Put(Path("B-DB\\USER.INI"), "[OPTIONS]\r\n");
        for (const auto& [name, text] : texts)
            if (text != "(none)") Put(Path(name), Replaced(text, "\n", "\r\n"));
    }
    static std::string Path(const std::string& name) { return "F:\\BRIVANE\\" + name; }
    static std::string NewName(const std::string& name) { return name.substr(0, name.size() - 3) + "new"; }
    std::string Text(const std::string& name) { return Replaced(Get(Path(name)), "\r\n", "\n"); }
    Texts TextsOf(const Texts& wanted) {
        Texts found;
        for (const auto& [name, text] : wanted) found[name] = Text(name);
        return found;
    }
};

struct Saving {
    const char* Name;
    Texts Before;
    std::function<bool()> Run;
    bool IsInPlace = false; // what a kill leaves of such rewrites is shown by tests of their own
    std::string Between = {};
};

bool DescribeLink() {
    LinkTable links;
    TextStamp stamp;
    if (!LoadLinks(links, stamp)) return false;
    links.at(0).Description = "New";
    return SaveLinks(links, stamp);
}

bool RenameServer() {
    RouterSettings settings;
    if (ReadRouterSettings(settings) != RouterReading::Done) return false;
    settings.LocalServerId = "THERE";
    return WriteRouterSettings(settings);
}

bool EditDestinations() {
    DestinationEdit edit;
    if (!BeginDestinationEdit(edit)) return false;
    const bool isDone = WriteRegion(edit, {"ASIA", "", {"1"}}) && WriteCountry(edit, {"FR", "la France", "33", ""}) &&
                        WriteArea(edit, "44", {"YORK", "", {"1904*"}}) && CommitDestinationEdit(edit);
    if (!isDone) DropDestinationEdit(edit);
    return isDone;
}

bool ReplaceRules() {
    const auto opened = OpenRules();
    RoutingRule rule;
    rule.Description = "new";
    return opened && SaveRules({rule}, opened->Stamp);
}

bool SelectLondon() {
    DialProperties properties;
    SelectLocation(properties, "London");
    return WriteDiallingProperties(properties);
}

const Saving kSavings[] = {
    {"links", {{"B-DB\\Link.ini", kLink}}, DescribeLink},
    {"router", {{"B-DB\\Setup.ini", "[OPTIONS]\n\n[ROUTER]\nLocalServerID: HERE, \"\"\n"}}, RenameServer},
    {"destinations", kDestinations, EditDestinations},
    {"rules", {{"B-DB\\LCRRules.ini", kRule}}, ReplaceRules},
    {"dialling", {{"B-DB\\Dialling.ini", kDialling}}, SelectLondon},
    {"user's files",
     {{"USERS\\IRIS\\B-IN\\MSGDIR.CTL", "(none)"}, {"USERS\\IRIS\\B-DB\\USER.INI", "(none)"}},
     [] { return CreateUserDirectories("IRIS", "I", RecordKind::User); }},
    {"mail user", {{"B-DB\\MAILLIST.INI", kMail}}, [] { return AddMailUser("ANN", "b"); }, true},
    {"mail user replaced", {{"B-DB\\MAILLIST.INI", kMail}}, [] { return AddMailUser("ANN", "b", "Kay K"); }, true},
    {"mail list upgraded", {{"B-DB\\MAILLIST.INI", kMail}}, UpgradeMailList, true},
    // A line with the key escaped otherwise goes in a second rewrite, after the new one is there.
    {"routing",
     {{"B-DB\\ROUTING.INI", Replaced(kRouting, "22: BOB", "\\22: BOB")}},
     [] {
         return WriteSubAddressRule({"22", "ANN"});
     },
     true,
     Replaced(kRouting, "22: BOB\n", "\\22: BOB\n22: ANN\n")},
};

// Whether a run of the saving has come to the fault of the plan.
bool RunUnder(const FaultPlan& plan, const Saving& saving, const Texts& after) {
    SCOPED_TRACE(saving.Name + testing::PrintToString(std::tuple(plan.Kind, plan.Counted, plan.AtCall)));
    Server server(saving.Before);
    bool isDone = false;
    bool hasFired = false;
    {
        FaultyFiles faulty(server.Files, plan);
        const platform::Substitute<platform::FileSystem> use(faulty);
        isDone = saving.Run();
        hasFired = faulty.Fired();
    }
    const bool isKilled = plan.Kind == FaultKind::Kill || plan.Kind == FaultKind::KillHalfWritten;
    EXPECT_TRUE(isDone || isKilled || !server.Front.TakeSaid().empty()) << "nothing is said";
    EXPECT_TRUE(!isDone || isKilled || server.TextsOf(after) == after) << "done without the new text";
    for (const auto& [name, before] : saving.Before) {
        const std::string live = server.Text(name);
        const bool isMoved = live == "(none)" && server.Text(Server::NewName(name)) == after.at(name);
        EXPECT_TRUE(live == before || live == after.at(name) || live == saving.Between || isMoved) << name << live;
        if (isMoved) server.Files.Rename(Server::Path(Server::NewName(name)), Server::Path(name));
    }
    if (saving.IsInPlace) return hasFired;
    EXPECT_TRUE(saving.Run()) << "the next one";
    EXPECT_EQ(server.TextsOf(after), after);
    EXPECT_THAT(server.Files.List(Server::Path("B-DB"), "*.new"), testing::IsEmpty());
    return hasFired;
}

TEST(SaveFaults, LeaveWholeFilesAndAreSaid) {
    for (const Saving& saving : kSavings) {
        Server whole(saving.Before);
        ASSERT_TRUE(saving.Run()) << saving.Name;
        const Texts after = whole.TextsOf(saving.Before);
        EXPECT_NE(after, saving.Before);
        for (const FaultKind kind : {FaultKind::FailOnce, FaultKind::FailFromThenOn, FaultKind::ShortWrite,
                                     FaultKind::Kill, FaultKind::KillHalfWritten}) {
            if (saving.IsInPlace && kind != FaultKind::FailOnce) continue;
            for (const CallKind counted : {CallKind::Changes, CallKind::Looks}) {
                const bool hasHalf = kind == FaultKind::ShortWrite || kind == FaultKind::KillHalfWritten;
                if (hasHalf && counted == CallKind::Looks) continue;
                int call = 1;
                while (RunUnder({kind, call, counted}, saving, after)) ++call;
                EXPECT_GT(call, 4) << saving.Name << ": hardly anything has failed";
            }
        }
    }
}

struct Reading {
    const char* Name;
    Texts Files;
    std::function<std::string()> Read; // "" when it fails
};

std::string RulesRead() {
    const auto rules = ReadRules();
    return rules ? "rules " + std::to_string(rules->size()) : "";
}

std::string RulesOpened() {
    const auto rules = OpenRules();
    return rules ? "rules " + std::to_string(rules->Rules.size()) : "";
}

std::string DestinationsRead() {
    Destinations all;
    if (!LoadDestinations(all)) return "";
    return all.FindPlace("UK/LON") && all.FindRegion("EU") ? "all" : "a part";
}

std::string LocationRead() {
    const bool isRead = ReadDiallingProperties(Server::Path("B-DB\\Dialling.ini")) == kDone;
    EXPECT_EQ(DialPropertiesAreLoaded(), isRead);
    const std::string name = GetDialProperties().Description.String();
    if (!isRead) ShowError("not read");
    return isRead ? name : name.empty() ? "" : "of a failure: " + name;
}

std::string SubAddressesRead() {
    ControlStream file = OpenRoutingFile();
    std::string users = "users";
    const bool isRead = file && ReadSubAddressRules(file, [&](const auto& rule) { users += rule.User; });
    return isRead ? users : "";
}

std::string CatalogueRead() {
    VectorList list;
    const bool isRead = ListCatalogue(ItemKind::Coversheet, list).has_value();
    return isRead || !list.Entries.empty() ? "entries " + std::to_string(list.Entries.size()) : "";
}

const std::string kCatalogue = "[DIRECTORY]\nFile: A \"a\"\n;" + std::string(40'000, 'x') + "\nFile: Z \"z\"\n";

const Reading kReadings[] = {
    {"catalogue", {{"B-COVER\\MSGDIR.CTL", kCatalogue}}, CatalogueRead},
    {"rules", {{"B-DB\\LCRRules.ini", kRule}}, RulesRead},
    {"rules to edit", {{"B-DB\\LCRRules.ini", kRule}}, RulesOpened},
    {"destinations", kDestinations, DestinationsRead},
    {"dialling", {{"B-DB\\Dialling.ini", kDialling}}, LocationRead},
    {"routing", {{"B-DB\\ROUTING.INI", kRouting}}, SubAddressesRead},
};

TEST(SaveFaults, ReadersTakeAllOrSayThatTheyFailed) {
    for (const auto& [name, files, read] : kReadings) {
        for (const FaultKind kind : {FaultKind::FailOnce, FaultKind::FailFromThenOn}) {
            bool hasFired = true;
            for (int call = 1; hasFired; ++call) {
                Server server(files);
                const std::string whole = read();
                server.Front.TakeSaid();
                FaultyFiles faulty(server.Files, {kind, call, CallKind::Looks});
                const platform::Substitute<platform::FileSystem> use(faulty);
                const std::string found = read();
                hasFired = faulty.Fired();
                EXPECT_TRUE(found == whole || (found.empty() && hasFired)) << name << ", look " << call << found;
                EXPECT_TRUE(!found.empty() || !server.Front.Said.empty()) << name << ", look " << call;
            }
        }
    }
}

} // namespace
} // namespace bv::test
