// What the dialog of a user's or group's details and its pages share.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "dialogs/check_list_dlg.h"
#include "dialogs/fields_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "dialogs/name_field_dlg.h"
#include "dialogs/page_host_dlg.h"
#include "dialogs/printer_slots_dlg.h"
#include "dialogs/time_range_dlg.h"
#include "users/user_entry.h"
#include "users/user_messages.h"
#include "voice/messages.h"

namespace bv {

// The record that is entered, as the pages' controls see it.
class RecordFields : public FieldRecord {
  public:
    explicit RecordFields(RecordEntry& entry) : entry_(entry) {}

    [[nodiscard]] std::string TextOf(std::string_view key) const override {
        return Key(key).Field.Text(entry_.After());
    }
    std::optional<std::string> Enter(std::string_view key, std::string_view text) override {
        return entry_.Enter(key, text);
    }
    [[nodiscard]] std::size_t LimitOf(std::string_view key) const override { return Key(key).Field.Rule.Limit; }
    [[nodiscard]] std::string Describe(std::string_view key) const override {
        if (key == "Name") return FillMessage(kNameStays);
        return TooltipOf(HelpOf(Key(key), entry_.Kind()));
    }

  private:
    [[nodiscard]] const RecordKey& Key(std::string_view key) const { return *FindRecordKey(entry_.Kind(), key); }

    RecordEntry& entry_;
};

struct UserDialog {
    explicit UserDialog(RecordEntry entry) : Entry(std::move(entry)) {}

    RecordEntry Entry;
    RecordFields Fields{Entry};
    PageHost Pages;
    bool IsProfile = false; // a new mail user profile

    // The parts of the pages.
    NameField Group;
    CheckList Permissions;
    TimeRangeField Times;
    std::string TimesShown;
    CheckList DialClasses;
    PrinterSlots Printers;
    RowTable Members;
    std::unique_ptr<ListView> MemberList;
    std::vector<std::string> NewMembers;  // to be made members with OK
    std::vector<std::string> GoneMembers; // and to be made none
};

// The pages of a record: users and their default record, groups and theirs.
std::vector<Page> PagesOf(const UserDialog& context);
Page GroupGeneralPage();

INT_PTR CALLBACK UserGeneralDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UserPermissionsDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UserTimesDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UserDialDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UserPrintDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK UserMailDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK GroupGeneralDlgBox(HWND page, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace bv
