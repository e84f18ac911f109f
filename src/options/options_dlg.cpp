#include "options/options_dlg.h"

#include <optional>

#include "options/options_dialog_dlg.h"
#include "resources/ids.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

std::string PathOf(std::string_view header, std::string_view key) {
    return FormatText("%s/%s", header.substr(1, header.size() - 2), key);
}

// Where an option is shown; nowhere when its page is another version's.
std::optional<PageList::Hit> PlaceOf(const OptionsDialog& context, OptionPage page, std::string_view path) {
    const std::size_t own = PagesOfOptions().size();
    if (static_cast<std::size_t>(page) < own)
        return PageList::Hit{static_cast<std::size_t>(page), ControlOfOption(page, path)};
    for (std::size_t i = 0; i < context.Areas.size(); ++i)
        if (context.Areas[i]->Place() == page) return PageList::Hit{own + i, context.Areas[i]->ControlOf(path)};
    return std::nullopt;
}

std::vector<PageList::Hit> FindOnPages(const OptionsDialog& context, const std::string& words) {
    std::vector<PageList::Hit> hits;
    for (const OptionHit& hit : FindOptions(words))
        if (const auto place = PlaceOf(context, hit.Page, PathOf(hit.Paragraph, hit.Key))) hits.push_back(*place);
    return hits;
}

bool IsChanged(HWND, const OptionsDialog& context) { return context.Pages.IsEdited() || context.Entry.IsChanged(); }

void EnableApply(HWND dialog, OptionsDialog& context) {
    EnableControl(dialog, ID_OPTIONS_APPLY, IsChanged(dialog, context));
}

void FillOptions(HWND dialog, OptionsDialog& context) {
    constexpr PageListPlan kPages{ID_OPTIONS_LIST, ID_OPTIONS_FIND, ID_OPTIONS_TITLE, ID_OPTIONS_FRAME};
    std::vector<Page> pages = PagesOfOptions();
    for (const std::unique_ptr<AreaPage>& area : context.Areas) pages.push_back(area->What());
    context.Pages.Begin(dialog, kPages, pages,
                        [&context](const std::string& words) { return FindOnPages(context, words); });
    context.Pages.OnTouched([dialog, &context] { EnableApply(dialog, context); });
    EnableApply(dialog, context);
    context.Entry.SayAbsent();
    FocusControl(dialog, ID_OPTIONS_LIST);
}

// What cannot be saved, after its message, and where it is.
std::optional<PageList::Hit> FindFault(HWND dialog, OptionsDialog& context) {
    if (const OptionKey* wrong = context.Entry.Check())
        return PlaceOf(context, wrong->Page, PathOf(wrong->Paragraph, wrong->Field.Name())).value_or(PageList::Hit{});
    for (std::size_t i = 0; i < context.Areas.size(); ++i)
        if (const int control = context.Areas[i]->Check(dialog))
            return PageList::Hit{PagesOfOptions().size() + i, control};
    return std::nullopt;
}

// A fault keeps the dialog, with the option that is wrong in front.
bool Save(HWND dialog, OptionsDialog& context) {
    if (!context.Pages.TakeAll()) return false;
    if (const auto fault = FindFault(dialog, context)) {
        context.Pages.Show(fault->Page, fault->Control);
        return false;
    }
    const WaitCursor wait;
    const bool isSaved = context.Entry.Save();
    context.Pages.FillAnew(); // others' changes have been taken over
    EnableApply(dialog, context);
    context.Entry.SayAbsent();
    return isSaved;
}

void TakeOptions(HWND dialog, OptionsDialog& context) {
    if (Save(dialog, context)) EndDialog(dialog, IDOK);
}

void ApplyOptions(HWND dialog, OptionsDialog& context) {
    if (IsChanged(dialog, context)) Save(dialog, context);
}

constexpr DialogCommand<OptionsDialog> kCommands[] = {{IDOK, BN_CLICKED, TakeOptions},
                                                      {ID_OPTIONS_APPLY, BN_CLICKED, ApplyOptions},
                                                      {IDCANCEL, BN_CLICKED, EndWithCancel}};
constexpr DialogPlan<OptionsDialog> kPlan{HELP_OPTIONS, FillOptions, kCommands, {}, nullptr, IsChanged};

} // namespace

void ConfigureOptions(HWND owner, std::span<const AreaPageMaker> areas) {
    OptionsDialog context;
    for (const AreaPageMaker make : areas) context.Areas.push_back(make(context.Fields));
    {
        const WaitCursor wait;
        if (!context.Entry.Load()) return;
    }
    OpenDialog("ConfigOptionsBox", owner, ConfigOptionsDlgBox, &context);
    SetStatusLine("", 2);
}

INT_PTR CALLBACK ConfigOptionsDlgBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {dialog, message, wParam, lParam});
}

} // namespace bv
