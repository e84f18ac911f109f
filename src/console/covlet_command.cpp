// Coversheets and letterheads: the same verbs for both kinds.
#include <optional>

#include "console/commands.h"
#include "console/dry_run.h"
#include "console/located.h"
#include "console/output.h"
#include "covlet/catalogue.h"
#include "covlet/item_actions.h"
#include "covlet/launch.h"
#include "platform/ascii.h"
#include "voice/list_target.h"

namespace bv::console {
namespace {

class TextList : public ListTarget {
  public:
    void Clear() override { Entries.clear(); }
    void Add(const std::string& entry) override { Entries.push_back(entry); }
    [[nodiscard]] bool Contains(const std::string& entry) const override {
        return std::ranges::any_of(Entries, [&](const std::string& other) { return EqualFolded(entry, other); });
    }
    [[nodiscard]] bool IsComboBox() const override { return false; }

    std::vector<std::string> Entries;
};

// The entry of a name, as the catalogue writes it; none, after a message, when it is not there.
std::optional<CatalogueEntry> FindEntry(ItemKind kind, const std::string& name) {
    TextList list;
    if (!ListCatalogue(kind, list)) return {};
    for (const std::string& text : list.Entries) {
        const CatalogueEntry entry = ParseEntryText(text);
        if (EqualFolded(entry.Name, name)) return entry;
    }
    ShowNotCatalogued(kind, name);
    return {};
}

int List(Session& session, const Arguments&, ItemKind kind) {
    TextList list;
    if (!ListCatalogue(kind, list)) return kExitRefused;
    std::vector<Record> records;
    for (const std::string& text : list.Entries) {
        const CatalogueEntry entry = ParseEntryText(text);
        records.push_back({{"Name", entry.Name.String()}, {"Description", entry.Description.String()}});
    }
    PrintRecords(session, records);
    return kExitDone;
}

int Installable(Session& session, const Arguments&, ItemKind kind) {
    TextList list;
    if (!ListInstallable(kind, list)) return kExitRefused;
    PrintLines(session, list.Entries);
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
    const std::optional<CatalogueEntry> entry = FindEntry(kind, arguments["NAME"]);
    if (!entry) return kExitRefused;
    return Perform(session, [&] { return ChangeItem(kind, *entry, arguments["DESCRIPTION"]); });
}

int Delete(Session& session, const Arguments& arguments, ItemKind kind) {
    const std::optional<CatalogueEntry> entry = FindEntry(kind, arguments["NAME"]);
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
     .Run = kFor<Add, kind>},
    {.Name = "rename",
     .Help = "Change the description of an item",
     .Parameters = {{kName, kDescription}},
     .Example = "PRICES 'Price list, winter'",
     .Run = kFor<Rename, kind>},
    {.Name = "delete",
     .Help = "Take an item out of the catalogue; its files stay",
     .Parameters = {{kName}},
     .Example = "PRICES --yes",
     .Run = kFor<Delete, kind>},
    {.Name = "view", .Help = "Show an item in the fax viewer", .Parameters = {{kName}}, .Run = kFor<View, kind>},
    {.Name = "edit",
     .Help = "Open an item in the coversheet editor and wait for its end",
     .Parameters = {{{kName.Name, "File name without extension, or * for a new item"}}},
     .Run = kFor<Edit, kind>},
};

} // namespace

const Area kCoversheetArea = {"coversheet", "The installed coversheets", kVerbs<ItemKind::Coversheet>};
const Area kLetterheadArea = {"letterhead", "The installed letterheads", kVerbs<ItemKind::Letterhead>};

} // namespace bv::console
