// A page that an area above the server's settings brings into their dialog: least-cost routing, dialling, the mail
// gateway. The menu, which knows all areas, hands the makers in.
#pragma once

#include <windows.h>

#include <memory>
#include <string_view>

#include "dialogs/fields_dlg.h"
#include "dialogs/page_host_dlg.h"
#include "options/option_keys.h"

namespace bv {

// Lives as long as the dialog is open.
class AreaPage {
  public:
    virtual ~AreaPage() = default;

    [[nodiscard]] virtual OptionPage Place() const = 0;

    // The page, with a context of its own (Page::Context).
    [[nodiscard]] virtual Page What() = 0;

    // The control that shows an option ("QUEUEMAN/MailType"); 0 for none in particular.
    [[nodiscard]] virtual int ControlOf(std::string_view /*path*/) const { return 0; }

    // Before the settings are saved, with all pages taken. The control that keeps their dialog open, after its message,
    // or 0.
    virtual int Check(HWND /*dialog*/) { return 0; }
};

// The settings' options are entered by paths, as ControlOf has them.
using AreaPageMaker = std::unique_ptr<AreaPage> (*)(FieldRecord& options);

} // namespace bv
