#include "options/options_dlg.h"

#include "options/options_dialog_dlg.h"
#include "resources/ids.h"
#include "voice/format.h"
#include "voice/messages.h"

namespace bv {
namespace {

std::string PathOf(std::string_view header, std::string_view key) {
    return FormatText("%s/%s", header.substr(1, header.size() - 2), key);
}

std::vector<PageList::Hit> FindOnPages(const std::string& words, std::size_t pages) {
    std::vector<PageList::Hit> hits;
    for (const OptionHit& hit : FindOptions(words))
        if (static_cast<std::size_t>(hit.Page) < pages)
            hits.push_back(PlaceOfOption(hit.Page, PathOf(hit.Paragraph, hit.Key)));
    return hits;
}

bool IsChanged(HWND, const OptionsDialog& context) { return context.Pages.IsEdited() || context.Entry.IsChanged(); }

void EnableApply(HWND dialog, OptionsDialog& context) {
    EnableControl(dialog, ID_OPTIONS_APPLY, IsChanged(dialog, context));
}

void FillOptions(HWND dialog, OptionsDialog& context) {
    constexpr PageListPlan kPages{ID_OPTIONS_LIST, ID_OPTIONS_FIND, ID_OPTIONS_TITLE, ID_OPTIONS_FRAME};
    const std::vector<Page> pages = PagesOfOptions();
    context.Pages.Begin(dialog, kPages, pages,
                        [count = pages.size()](const std::string& words) { return FindOnPages(words, count); });
    context.Pages.OnTouched([dialog, &context] { EnableApply(dialog, context); });
    EnableApply(dialog, context);
    context.Entry.SayAbsent();
    FocusControl(dialog, ID_OPTIONS_LIST);
}

// What cannot be saved keeps the dialog, with the option that is wrong in front.
bool Save(HWND dialog, OptionsDialog& context) {
    if (!context.Pages.TakeAll()) return false;
    if (const OptionKey* wrong = context.Entry.Check()) {
        const PageList::Hit place = PlaceOfOption(wrong->Page, PathOf(wrong->Paragraph, wrong->Field.Name()));
        context.Pages.Show(place.Page, place.Control);
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

void ConfigureOptions(HWND owner) {
    OptionsDialog context;
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
