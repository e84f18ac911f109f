// List views over rows that stay where they are: filtered and sorted, with the keys, the menu and the count that all
// lists have. Columns and order are remembered for each dialog.
//
// The control is an owner-data list view in report view. To its dialog it sends commands, as list boxes do.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/dialog_dlg.h"
#include "dialogs/list_codes_dlg.h"
#include "shell/row_order.h"

namespace bv {

struct ListColumn {
    const char* Title;
    int Units; // its width at first
    bool IsRight = false;
};

// The controls around a list; 0 for one that is not there.
struct ListPlan {
    int List;
    std::span<const ListColumn> Columns;
    int Filter = 0;                 // an edit control
    int Count = 0;                  // a text that counts
    int DefaultButton = 0;          // what Enter presses in the list
    std::span<const int> Menu = {}; // the buttons that stand in the menu, too
    const char* Name = "";          // under which columns and order are remembered, of a list that has several plans
    bool IsSorted = true;           // by the first column, until the person sorts otherwise; else in file order
    bool HasTicks = false;          // a box before each row, which Space and a click tick
};

class ListView : public DialogPart {
  public:
    ListView(const RowModel& rows, const ListPlan& plan) : rows_(rows), plan_(plan), order_(rows) {}

    // Takes up the control, when its dialog is filled.
    void Begin(HWND dialog);

    // Has other columns from now on; to be filled anew.
    void Change(const ListPlan& plan);

    // Has the rows read anew, by the reader and not before, then shows them and selects those that have the names
    // (RowModel::Name) of the rows that were selected; when there are none of these any more, the row at the place of
    // the first one. False from the reader: the rows could not be read.
    void Refill(const std::function<bool()>& read);

    // The selected rows, by their number in the model, in the order shown.
    [[nodiscard]] std::vector<std::size_t> Selected() const;
    [[nodiscard]] bool HasOneSelected() const { return CountSelected() == 1; }
    [[nodiscard]] std::size_t CountSelected() const;

    // The names of the selected rows.
    [[nodiscard]] std::vector<std::string> SelectedNames() const;

    // Selects the row of that name alone and brings it into view. A row that the filter hides has the filter emptied.
    void SelectName(std::string_view name);

    // Ticks rows when the person wants it; for a list with ticks. The model says what has a tick.
    using Ticker = std::function<void(std::size_t row, bool ticked)>;
    void OnTick(Ticker tick) { tick_ = std::move(tick); }

    // The rows' texts or ticks are others now, and no row has come or gone: shows them, and the count.
    void ShowChanged() const;

    // All rows as they are filtered and sorted now.
    [[nodiscard]] const RowOrder& Order() const { return order_; }

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    bool TakeKey(const MSG& message) override;
    void Resized() override { FillWidth(); }
    void Rescale(int dpi) override;

  private:
    [[nodiscard]] HWND Window() const { return GetDlgItem(dialog_, plan_.List); }
    bool AnswerNotice(const NMHDR& notice, INT_PTR& result);
    void ShowCell(NMLVDISPINFOW& cell);
    void PressKey(WORD key);
    void TickSelected();
    void ClickBox(const NMITEMACTIVATE& click);
    void ClickColumn(int column);
    void SortBy(std::optional<RowOrder::SortBy> by);
    void ApplyFilter();
    void Notify(int code) const;
    void ShowOrder();
    void ShowArrow() const;
    void ShowCount() const;
    [[nodiscard]] std::size_t CountTicked() const;
    void SelectRows(const std::vector<std::size_t>& rows, std::size_t place);
    void SelectAll();
    void Deselect() const;
    void SelectPlaces(const std::vector<std::size_t>& places);
    void CopySelected() const;
    void OpenMenu(POINT at);
    void MakeColumns();
    void FillWidth() const;
    void RememberColumns() const;
    static LRESULT CALLBACK FilterKeys(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR data);

    const RowModel& rows_;
    ListPlan plan_;
    RowOrder order_;
    HWND dialog_ = nullptr;
    int dpi_ = USER_DEFAULT_SCREEN_DPI;
    bool isRead_ = true;
    bool isChanging_ = false; // the selection, by the program
    WPARAM defaultButton_ = 0;
    std::wstring cell_;
    Ticker tick_;
};

} // namespace bv
