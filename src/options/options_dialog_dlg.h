// What the dialog of the server's settings and its pages share.
#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/area_page_dlg.h"
#include "dialogs/directory_field_dlg.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/page_list_dlg.h"
#include "dialogs/printer_slots_dlg.h"
#include "dialogs/time_range_dlg.h"
#include "options/options_entry.h"
#include "shell/row_table.h"

namespace bv {

// The options that are entered, as the pages' controls see them: "QUEUEMAN/SendTries".
class OptionFields : public FieldRecord {
  public:
    explicit OptionFields(OptionsEntry& entry) : entry_(entry) {}

    [[nodiscard]] std::string TextOf(std::string_view path) const override;
    std::optional<std::string> Enter(std::string_view path, std::string_view text) override;
    [[nodiscard]] std::size_t LimitOf(std::string_view path) const override;
    [[nodiscard]] std::string Describe(std::string_view path) const override;

  private:
    OptionsEntry& entry_;
};

struct OptionsDialog {
    OptionsEntry Entry;
    OptionFields Fields{Entry};
    PageList Pages;
    std::vector<std::unique_ptr<AreaPage>> Areas; // behind the pages of the settings' own

    // The parts of the pages.
    std::array<DirectoryField, 5> Directories;
    std::array<NameField, 2> Users;
    TimeRangeField Offpeak;
    std::string OffpeakShown;
    PrinterSlots Printers;
    RowTable Facts;
    std::unique_ptr<ListView> FactList;
    RowTable Types;
    std::unique_ptr<ListView> TypeList;
};

// The pages, in the order of OptionPage.
std::vector<Page> PagesOfOptions();

// The control that shows an option on a page of the settings' own; 0 for none in particular.
int ControlOfOption(OptionPage page, std::string_view path);

// The page of the types of telephone number. telephone_types_dlg.cpp has it.
Page TelephoneTypesPage();

} // namespace bv
