// Two lists side by side: what there is, with a filter, and what is chosen of it. A row goes from one to the other by a
// double click, by the buttons, and by Alt+Right and Alt+Left; it stands in one of them only. What is chosen keeps its
// order, as a file has it, and new rows come behind.
//
// Other rows that are chosen are told as kListSelected of that list.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/dialog_dlg.h"
#include "dialogs/list_view_dlg.h"
#include "shell/name_set.h"
#include "shell/row_table.h"

namespace bv {

// The controls. Of the texts and edit controls, 0 for one that is not there.
struct PickPlan {
    int Available; // list views
    int Chosen;
    int Take; // buttons
    int Remove;
    int RemoveAll;
    std::span<const ListColumn> AvailableColumns;
    std::span<const ListColumn> ChosenColumns;
    int Filter = 0;
    int Count = 0; // of what there is
};

// The plan of controls whose numbers follow each other: the filter, what there is, the three buttons, what is chosen.
constexpr PickPlan PicksFrom(int filter, int count, std::span<const ListColumn> available,
                             std::span<const ListColumn> chosen) {
    return {filter + 1, filter + 5, filter + 2, filter + 3, filter + 4, available, chosen, filter, count};
}

// A chosen name as its list shows it. What is no longer there, or not as it is written, can be chosen, too.
struct ChosenRow {
    std::vector<std::string> Cells; // one for each column
    std::string Is;                 // the row of what there is that it stands for (RowModel::Name); else empty
};

class PickLists : public DialogPart {
  public:
    using Describe = std::function<ChosenRow(const std::string& name)>;

    // The rows that there are; what their names are is what is chosen.
    PickLists(const RowModel& rows, const PickPlan& plan, Describe describe);

    // Takes up the controls of a dialog or a page that is being filled.
    void Begin(HWND dialog, std::vector<std::string> chosen);

    // Has the rows that there are read anew: other kinds are to be shown, or a file has changed.
    void Refill(const std::function<bool()>& read);

    [[nodiscard]] const std::vector<std::string>& Chosen() const { return names_.Names; }
    void Choose(std::vector<std::string> names);

    // What the buttons do.
    void TakeSelected();
    void RemoveSelected();
    void RemoveAll();

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    bool TakeKey(const MSG& message) override;

  private:
    // The rows of what there is that are not chosen.
    class Rest : public RowModel {
      public:
        explicit Rest(const RowModel& rows) : rows_(rows) {}
        void LeaveOut(const NameSet& names);
        [[nodiscard]] std::size_t Count() const override { return shown_.size(); }
        [[nodiscard]] std::size_t Columns() const override { return rows_.Columns(); }
        [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const override {
            return rows_.Text(shown_[row], column);
        }
        [[nodiscard]] std::string Name(std::size_t row) const override { return rows_.Name(shown_[row]); }

      private:
        const RowModel& rows_;
        std::vector<std::uint32_t> shown_;
    };

    struct ChosenRows : RowTable {
        std::vector<std::string> Names;
        [[nodiscard]] std::string Name(std::size_t row) const override { return Names[row]; }
    };

    bool AnswerCommand(int control, int code);
    void ShowChosen(std::vector<std::string> names);
    void LeaveOutChosen();
    void EnableButtons() const;

    PickPlan plan_;
    std::array<int, 1> takeMenu_{plan_.Take};
    std::array<int, 2> removeMenu_{plan_.Remove, plan_.RemoveAll};
    Describe describe_;
    Rest rest_;
    ChosenRows names_;
    ListView available_;
    ListView chosen_;
    HWND dialog_ = nullptr;
};

} // namespace bv
