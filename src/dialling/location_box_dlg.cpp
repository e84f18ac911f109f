#include "dialling/location_box_dlg.h"

#include <algorithm>

#include "dialling/dialling_actions.h"
#include "dialogs/dialog_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

template <class Keys>
auto Find(const Keys& keys, std::string_view name) {
    return std::ranges::find_if(keys, [name](const auto& key) { return key.Name() == name; });
}

const DialListKey* ListOf(std::string_view name) {
    const auto* const list = Find(kDialListKeys, name);
    return list == std::end(kDialListKeys) ? nullptr : list;
}

constexpr std::string_view kBreak = "\r\n";

std::string AsLines(std::string prefixes) {
    for (std::size_t at = 0; (at = prefixes.find(',', at)) != std::string::npos; at += kBreak.size())
        prefixes.replace(at, 1, kBreak);
    return prefixes;
}

// Empty lines at the end are none.
std::string AsPrefixes(std::string lines) {
    while (lines.ends_with('\n') || lines.ends_with('\r')) lines.pop_back();
    for (std::size_t at = 0; (at = lines.find(kBreak, at)) != std::string::npos; ++at)
        lines.replace(at, kBreak.size(), ",");
    return lines;
}

struct NameBox {
    DialLocations& Locations;
    std::optional<std::size_t> Renamed = {}; // none: a new one
    std::optional<std::size_t> Like = {};
};

void FillName(HWND dialog, NameBox& context) {
    if (!context.Renamed) SetWindowTextA(dialog, "Add new location");
    const auto shown = context.Renamed ? context.Renamed : context.Like;
    using Name = decltype(DialProperties::Description);
    PutField(dialog, ID_LOCATION_NAME, shown ? context.Locations.Places[*shown].Now.Description : Name());
    FocusControl(dialog, ID_LOCATION_NAME);
}

void TakeName(HWND dialog, NameBox& context) {
    std::string name;
    if (!TakeText(dialog, ID_LOCATION_NAME, name)) return;
    const bool isTaken = context.Renamed ? RenamePlace(context.Locations, *context.Renamed, name)
                                         : AddPlace(context.Locations, name, context.Like);
    if (!isTaken) return FocusControl(dialog, ID_LOCATION_NAME);
    EndDialog(dialog, IDOK);
}

constexpr DialogCommand<NameBox> kCommands[] = {{IDOK, BN_CLICKED, TakeName}, {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<NameBox> kPlan{HELP_DIALLING, FillName, kCommands};

bool AskName(HWND owner, NameBox context) {
    return OpenDialog("LocationNameBox", owner, LocationNameDlgBox, &context) == IDOK;
}

} // namespace

std::string LocationFields::TextOf(std::string_view key) const {
    if (const DialListKey* list = ListOf(key)) return AsLines(PrefixesText(location_->*list->List));
    return Find(DialKeys(), key)->Text(*location_);
}

std::optional<std::string> LocationFields::Enter(std::string_view key, std::string_view text) {
    return StoreDialValue(*location_, key, ListOf(key) ? AsPrefixes(std::string(text)) : std::string(text));
}

std::size_t LocationFields::LimitOf(std::string_view key) const {
    if (ListOf(key)) return DialPrefixes::kLimit * (DialPrefix::kLimit + kBreak.size());
    const ValueRule& rule = Find(DialKeys(), key)->Rule;
    return rule.Kind == ValueRule::Form::Other ? DialPrefix::kLimit : rule.Limit;
}

std::string LocationFields::Describe(std::string_view key) const { return TooltipOf(HelpOfDialKey(key)); }

bool AddPlaceByDialog(HWND owner, DialLocations& locations, std::optional<std::size_t> like) {
    return AskName(owner, {.Locations = locations, .Like = like});
}

bool RenamePlaceByDialog(HWND owner, DialLocations& locations, std::size_t place) {
    return AskName(owner, {.Locations = locations, .Renamed = place});
}

INT_PTR CALLBACK LocationNameDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
