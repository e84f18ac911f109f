#include "dialling/dialling_page_dlg.h"

#include "dialling/dialling_actions.h"
#include "dialling/dialling_dlg.h"
#include "dialogs/dialog_dlg.h"
#include "resources/ids.h"

namespace bv {
namespace {

// The properties have a file of their own, so the page holds nothing.
class DiallingPage : public AreaPage {
  public:
    [[nodiscard]] OptionPage Place() const override { return OptionPage::DiallingProperties; }
    [[nodiscard]] Page What() override {
        return {.Template = "ConfigDiallingBox",
                .Title = TitleOf(Place()),
                .Procedure = ConfigDiallingDlgBox,
                .Icon = "PageDialling",
                .Context = this};
    }
    [[nodiscard]] int ControlOf(std::string_view) const override { return ID_DIALLING_PAGE_OPEN; }
};

void FillPage(HWND page, DiallingPage&) { SetText(page, ID_DIALLING_PAGE_TEXT, DialledByText()); }

void OpenDialling(HWND page, DiallingPage& context) {
    ConfigureDialling(GetAncestor(page, GA_ROOT));
    FillPage(page, context);
}

constexpr DialogCommand<DiallingPage> kCommands[] = {{ID_DIALLING_PAGE_OPEN, BN_CLICKED, OpenDialling}};
constexpr DialogPlan<DiallingPage> kPlan{HELP_DIALLING_PAGE, FillPage, kCommands};

} // namespace

std::unique_ptr<AreaPage> MakeDiallingPage(FieldRecord&) { return std::make_unique<DiallingPage>(); }

INT_PTR CALLBACK ConfigDiallingDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    return FollowPlan(kPlan, {page, message, wParam, lParam});
}

} // namespace bv
