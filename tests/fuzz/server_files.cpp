// The files of the server with any bytes: each reader and writer gets along with them, a change is there afterwards and
// gone again when it is undone, and what is saved again and again settles.
// Parameters: which file | a name | a value. The rest is the file.
#include <algorithm>
#include <functional>
#include <map>

#include "covlet/catalogue.h"
#include "dialling/dialling_file.h"
#include "fuzz/fuzz.h"
#include "fuzz/model.h"
#include "lcr/destination_entry.h"
#include "lcr/destination_files.h"
#include "lcr/links.h"
#include "lcr/router_settings.h"
#include "lcr/rule_file.h"
#include "mailgw/mail_directory.h"
#include "mailgw/mail_list.h"
#include "mailgw/profile_file.h"
#include "routing/routing_file.h"
#include "support/memory_server.h"

namespace bv::fuzz {
namespace {

struct Case {
    test::MemoryServer& Server;
    std::string Path;
    std::string Name;
    std::string Value;

    [[nodiscard]] std::string Text() const { return Server.Get(Path); }
};

// Saved again and again a file settles: each save may turn kept lines into read ones (a rule's second block of servers
// stands before the first afterwards), so it takes no more saves than the file has lines. Quotes that were not put in
// pairs may go on for ever.
void Settles(const Case& one, const std::function<bool()>& save) {
    const std::string first = one.Text();
    const bool hasQuotes = first.find('"') != std::string::npos;
    auto left = std::ranges::count(first, '\n') + 2;
    std::string before;
    do {
        before = one.Text();
        Require(save(), "the save");
    } while (one.Text() != before && --left > 0);
    Require(hasQuotes || left > 0, "the file settles");
}

void TryLinks(const Case& one) {
    Settles(one, [] {
        LinkTable links;
        TextStamp stamp;
        return LoadLinks(links, stamp) && SaveLinks(links, stamp);
    });
}

void TryRules(const Case& one) {
    Settles(one, [] {
        const auto opened = OpenRules();
        return opened && SaveRules(opened->Rules, opened->Stamp);
    });
}

void TryRouter(const Case& one) {
    Settles(one, [] {
        RouterSettings settings;
        return ReadRouterSettings(settings) != RouterReading::Failed && WriteRouterSettings(settings);
    });
}

void TryDestinations(const Case& one) {
    const RegionEntry region = {one.Name, "", {one.Value}};
    std::string text = WithMatchEntry(kRegionFile, one.Text(), region);
    text = WithMatchEntry(kRegionFile, text, region);
    if (RegionKind::FaultOf({}, region, {}).empty()) // as a person may enter it
        RequireEqual(WithMatchEntry(kRegionFile, text, region), text, "the region written again");
    ParseMatchEntries(kRegionFile, text);
    ParseCountries(WithCountry(one.Text(), {one.Name, "", one.Value, "0"}));
    WithoutCountry(one.Text(), one.Name);
    WithoutMatchEntry(kAreaFile, one.Text(), one.Name);
}

void TryDialling(const Case& one) {
    ReadDiallingProperties(one.Path);
    DialProperties properties;
    SelectLocation(properties, model::Clean(one.Name));
    Settles(one, [&] { return WriteDiallingProperties(properties); });
}

void TryMailList(const Case& one) {
    const auto count = CountMailUsers(one.Name);
    if (!AddMailUser(one.Name, one.Value)) return;
    Require(count.has_value(), "a list that can be changed can be read");
    RemoveMailUser(one.Name, one.Value);
    Settles(one, UpgradeMailList);
}

void TryMailDirectory(const Case& one) {
    std::string whole;
    std::string cut;
    const StatusCode status = LookupMailUser(one.Name, std::string::npos, whole);
    Require(LookupMailUser(one.Name, 3, cut) == status, "an address, cut or not");
    RequireEqual(cut, std::string_view(whole).substr(0, 3), "the cut address");
}

void TryProfile(const Case& one) { ReadProfileText("WIN.INI", one.Name, one.Value); }

void TryRouting(const Case& one) {
    const SubAddressRule rule{one.Name, one.Value};
    const auto ofKey = [&] {
        ControlStream file = OpenRoutingFile();
        std::string users;
        if (!file) return users;
        ReadSubAddressRules(file, [&](const auto& found) {
            if (model::Compare(found.SubAddress, rule.SubAddress) == 0) users += found.User + "\n";
        });
        return users;
    };
    if (!OpenRoutingFile() || !CanBeKept(rule)) return;
    Require(WriteSubAddressRule(rule), "WriteSubAddressRule");
    RequireEqual(ofKey(), rule.User + "\n", "the written rule alone has its key");
    Require(DeleteSubAddressRule(rule.SubAddress) && ofKey().empty(), "no rule is left");
}

void TryCatalogue(const Case& one) {
    test::VectorList list;
    Require(ListCatalogue(ItemKind::Coversheet, list).has_value(), "the list");
    Require(AddCatalogueEntry(ItemKind::Coversheet, one.Name, one.Value), "AddCatalogueEntry");
    if (!ChangeCatalogueEntry(ItemKind::Coversheet, one.Name, one.Value)) return;
    Require(DeleteCatalogueEntry(ItemKind::Coversheet, one.Name), "DeleteCatalogueEntry");
    Require(!IsCatalogued(ItemKind::Coversheet, one.Name), "the entry is gone");
}

} // namespace

void TryInput(std::string_view bytes) {
    const std::string area = "F:\\BRIVANE\\B-DB\\";
    const std::map<std::string_view, std::pair<std::string, void (*)(const Case&)>> kinds = {
        {"links", {area + "LINK.INI", TryLinks}},
        {"rules", {area + "LCRRules.ini", TryRules}},
        {"router", {area + "SETUP.INI", TryRouter}},
        {"destinations", {area + "REGION.INI", TryDestinations}},
        {"dialling", {area + "DIALLING.INI", TryDialling}},
        {"mail", {area + "MAILLIST.INI", TryMailList}},
        {"directory", {area + "MAILUSER.DAT", TryMailDirectory}},
        {"profile", {"C:\\WINDOWS\\WIN.INI", TryProfile}},
        {"routing", {area + "ROUTING.INI", TryRouting}},
        {"catalogue", {"F:\\BRIVANE\\B-COVER\\MSGDIR.CTL", TryCatalogue}},
    };
    const Input input(bytes);
    const auto kind = kinds.find(input.Parameters[0]);
    if (kind == kinds.end()) return;
    test::MemoryServer server;
    server.Load();
    const auto& [path, tryFile] = kind->second;
    server.Put(path, input.Text);
    tryFile(
        {server, path, std::string(input.Parameter(1).value_or("N")), std::string(input.Parameter(2).value_or(""))});
}

} // namespace bv::fuzz
