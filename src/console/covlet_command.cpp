// Coversheets and letterheads: the same verbs for both kinds.
#include <optional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "covlet/catalogue.h"
#include "covlet/item_actions.h"
#include "covlet/launch.h"

namespace bv::console {
namespace {

int List(Session& session, const Arguments&, ItemKind kind) {
    const std::optional<CatalogueEntries> entries = ReadCatalogue(kind);
    if (!entries) return kExitRefused;
    std::vector<Record> records;
    for (const auto& [name, description] : *entries)
        records.push_back({{"Name", name.String()}, {"Description", description.String()}});
    PrintRecords(session, records);
    return kExitDone;
}

int Installable(Session& session, const Arguments&, ItemKind kind) {
    const auto names = FindInstallable(kind);
    if (!names) return kExitRefused;
    PrintLines(session, *names);
    return kExitDone;
}

int Add(Session& session, const Arguments& arguments, ItemKind kind) {
    if (const auto fault = FaultOfItemName(arguments["NAME"])) return session.Refuse(*fault);
    if (!CheckDescription(arguments["DESCRIPTION"])) return kExitRefused;
    CatalogueEntry entry = {arguments["NAME"], arguments["DESCRIPTION"]};
    if (!CheckNewItem(kind, entry.Name)) return kExitRefused;
    return Perform(session, [&] { return AddItem(kind, entry); });
}

int Rename(Session& session, const Arguments& arguments, ItemKind kind) {
    const std::optional<CatalogueEntry> entry = FindCatalogued(kind, arguments["NAME"]);
    if (!entry) return kExitRefused;
    return Perform(session, [&] { return ChangeItem(kind, *entry, arguments["DESCRIPTION"]); });
}

int Delete(Session& session, const Arguments& arguments, ItemKind kind) {
    const std::optional<CatalogueEntry> entry = FindCatalogued(kind, arguments["NAME"]);
    if (!entry) return kExitRefused;
    return Perform(session, [&] { return DeleteItem(kind, *entry); });
}

int View(Session& session, const Arguments& arguments, ItemKind kind) {
    return Perform(session, [&] { return ViewItem(kind, arguments["NAME"]); });
}

int Edit(Session& session, const Arguments& arguments, ItemKind) {
    return Perform(session, [&] { return RunItemEditor(arguments["NAME"]); });
}

using ItemCommand = int (*)(Session&, const Arguments&, ItemKind);

// The command for one kind.
template <ItemCommand command, ItemKind kind>
int Of(Session& session, const Arguments& arguments) {
    return command(session, arguments, kind);
}
template <ItemCommand command, ItemKind kind>
constexpr Command kFor = Located<Of<command, kind>>;

constexpr Parameter kName = {"NAME", "File name without extension, in any case"};
constexpr Parameter kDescription = {"DESCRIPTION", "Description, at most 50 characters"};

template <ItemKind kind>
constexpr Verb kVerbs[] = {
    {.Name = "list", .Help = "List the catalogue", .Run = kFor<List, kind>},
    {.Name = "installable", .Help = "List the files that are not in the catalogue yet", .Run = kFor<Installable, kind>},
    {.Name = "add",
     .Help = "Put an item whose files are there into the catalogue",
     .Parameters = {{kName, kDescription}},
     .Example = "PRICES 'Price list'",
     .Change = kFor<Add, kind>},
    {.Name = "rename",
     .Help = "Change the description of an item",
     .Parameters = {{kName, kDescription}},
     .Example = "PRICES 'Price list, winter'",
     .Change = kFor<Rename, kind>},
    {.Name = "delete",
     .Help = "Take an item out of the catalogue; its files stay",
     .Parameters = {{kName}},
     .Example = "PRICES --yes",
     .Change = kFor<Delete, kind>},
    {.Name = "view", .Help = "Show an item in the fax viewer", .Parameters = {{kName}}, .Change = kFor<View, kind>},
    {.Name = "edit",
     .Help = "Open an item in the coversheet editor and wait for its end",
     .Parameters = {{{kName.Name, "File name without extension, or * for a new item"}}},
     .Change = kFor<Edit, kind>},
};

} // namespace

const Area kCoversheetArea = {"coversheet", "The installed coversheets", kVerbs<ItemKind::Coversheet>};
const Area kLetterheadArea = {"letterhead", "The installed letterheads", kVerbs<ItemKind::Letterhead>};

} // namespace bv::console
