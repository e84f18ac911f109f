#include "lcr/lcr_page_dlg.h"

#include <algorithm>
#include <string>

#include "lcr/destinations_dlg.h"
#include "lcr/edit_lock.h"
#include "lcr/lcr_overview.h"
#include "lcr/links_dlg.h"
#include "lcr/rule_list_dlg.h"
#include "resources/ids.h"
#include "shell/startup.h"

namespace bv {
namespace {

constexpr std::string_view kPath = "OPTIONS/LCR";
constexpr std::string_view kYesAndNo[] = {"YES", "NO"};
constexpr FieldControl kSwitch[] = {{ID_LCR_ENABLED, kPath, FieldForm::Radio, kYesAndNo}};

// An editor of routing: its button, the texts beside it, and when it can be opened.
struct Editor {
    int Button;
    int Label;
    int State;
    std::string LcrOverview::*Text;
    bool LcrButtons::*CanOpen;
    LcrLack Lack;                                          // what routing lacks without it
    std::string_view What;                                 // who holds the lock, for others
    bool (*Open)(HWND owner, const LcrServices& services); // true when ended with OK
};

template <bool (*kEdit)(HWND owner)>
bool Open(HWND owner, const LcrServices&) {
    return kEdit(owner);
}

constexpr Editor kEditors[] = {
    {ID_LCR_GENERAL, ID_LCR_GENERAL_LABEL, ID_LCR_GENERAL_STATE, &LcrOverview::General, &LcrButtons::General,
     LcrLack::GeneralSettings, "general settings", EditRouter},
    {ID_LCR_DESTINATIONS, ID_LCR_DESTINATIONS_LABEL, ID_LCR_DESTINATIONS_STATE, &LcrOverview::Destinations,
     &LcrButtons::Destinations, LcrLack::Destinations, "destinations", Open<EditDestinations>},
    {ID_LCR_LINKS, ID_LCR_LINKS_LABEL, ID_LCR_LINKS_STATE, &LcrOverview::Links, &LcrButtons::Links, LcrLack::Links,
     "links", Open<EditLinks>},
    {ID_LCR_RULES, ID_LCR_RULES_LABEL, ID_LCR_RULES_STATE, &LcrOverview::Rules, &LcrButtons::Rules, LcrLack::Rules,
     "rules", Open<EditRules>},
};

class LcrPage : public AreaPage {
  public:
    LcrPage(FieldRecord& options, const LcrServices& services) : options_(options), services_(services) {}

    [[nodiscard]] OptionPage Place() const override { return OptionPage::LeastCostRouting; }
    [[nodiscard]] Page What() override;
    [[nodiscard]] int ControlOf(std::string_view path) const override { return path == kPath ? ID_LCR_ENABLED : 0; }
    int Check(HWND dialog) override;

    void Fill(HWND page);
    int Take(HWND page) { return TakeFields(page, kSwitch, options_); }
    void Update(HWND page) const;
    void Edit(HWND page, const Editor& editor);

  private:
    [[nodiscard]] bool IsEnabled() const { return options_.TextOf(kPath) == kYesAndNo[0]; }
    void LookAgain(HWND page);

    FieldRecord& options_;
    LcrServices services_;
    HWND page_ = nullptr;
    bool wasEnabled_ = true; // in the file; a page that was never shown has changed nothing
    LcrOverview found_;
};

void LcrPage::Update(HWND page) const {
    const bool isEnabled = IsDlgButtonChecked(page, ID_LCR_ENABLED) == BST_CHECKED;
    const LcrButtons buttons = UpdateLcrButtons(isEnabled, found_.HasGeneralSettings);
    for (const Editor& editor : kEditors) {
        const bool canOpen = buttons.*editor.CanOpen;
        EnableControl(page, editor.Button, canOpen);
        EnableControl(page, editor.Label, canOpen);
        EnableControl(page, editor.State, isEnabled);
    }
}

void LcrPage::LookAgain(HWND page) {
    const WaitCursor wait;
    found_ = LookAtLcr();
    for (const Editor& editor : kEditors) SetText(page, editor.State, found_.*editor.Text);
    Update(page);
}

void LcrPage::Fill(HWND page) {
    page_ = page;
    wasEnabled_ = IsEnabled();
    ShowFields(page, kSwitch, options_);
    AddTooltips(page, kSwitch, options_);
    LookAgain(page);
}

void LcrPage::Edit(HWND page, const Editor& editor) {
    const bool isDone = RunLcrEditor([&] { return editor.Open(page, services_); }, editor.What);
    if (isDone) Startup().SettingsChanged = true;
    LookAgain(page);
}

// Routing that is being switched on must be ready.
int LcrPage::Check(HWND /*dialog*/) {
    if (!IsEnabled() || wasEnabled_) return 0;
    const Editor& rules = kEditors[3];
    switch (CheckLcrReady(found_.HasGeneralSettings, true)) {
    case LcrReadiness::Ready: return 0;
    case LcrReadiness::SetUpRules: Edit(page_, rules); return rules.Button;
    case LcrReadiness::NotReady: break;
    }
    const LcrLack lack = FindLcrLack(found_.HasGeneralSettings);
    const auto* const missing = std::ranges::find(kEditors, lack, &Editor::Lack);
    const bool canOpen = missing != std::end(kEditors) && IsWindowEnabled(GetDlgItem(page_, missing->Button)) != FALSE;
    return canOpen ? missing->Button : ID_LCR_ENABLED;
}

// --- The page ---

void FillLcr(HWND page, LcrPage& context) { context.Fill(page); }
void UpdateLcr(HWND page, LcrPage& context) { context.Update(page); }
int TakeLcr(HWND page, LcrPage& context) { return context.Take(page); }

template <std::size_t kEditor>
void PressEditor(HWND page, LcrPage& context) {
    context.Edit(page, kEditors[kEditor]);
}

constexpr DialogCommand<LcrPage> kCommands[] = {
    {ID_LCR_ENABLED, BN_CLICKED, UpdateLcr},      {ID_LCR_DISABLED, BN_CLICKED, UpdateLcr},
    {ID_LCR_GENERAL, BN_CLICKED, PressEditor<0>}, {ID_LCR_DESTINATIONS, BN_CLICKED, PressEditor<1>},
    {ID_LCR_LINKS, BN_CLICKED, PressEditor<2>},   {ID_LCR_RULES, BN_CLICKED, PressEditor<3>}};
constexpr DialogPlan<LcrPage> kPlan{HELP_LCR, FillLcr, kCommands};

Page LcrPage::What() {
    return {.Template = "ConfigLcrBox",
            .Title = TitleOf(OptionPage::LeastCostRouting),
            .Procedure = ConfigLcrDlgBox,
            .Take = TakePage<LcrPage, TakeLcr>,
            .Icon = "PageLcr",
            .Context = this};
}

} // namespace

std::unique_ptr<AreaPage> MakeLcrPage(FieldRecord& options, const LcrServices& services) {
    return std::make_unique<LcrPage>(options, services);
}

INT_PTR CALLBACK ConfigLcrDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}

} // namespace bv
