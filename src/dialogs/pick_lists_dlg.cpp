#include "dialogs/pick_lists_dlg.h"

#include <algorithm>
#include <utility>

namespace bv {
namespace {

ListPlan PlanOfAvailable(const PickPlan& plan, std::span<const int> menu) {
    return {.List = plan.Available,
            .Columns = plan.AvailableColumns,
            .Filter = plan.Filter,
            .Count = plan.Count,
            .DefaultButton = plan.Take,
            .Menu = menu,
            .Name = "Available",
            .IsSorted = false};
}

ListPlan PlanOfChosen(const PickPlan& plan, std::span<const int> menu) {
    return {.List = plan.Chosen, .Columns = plan.ChosenColumns, .Menu = menu, .Name = "Chosen", .IsSorted = false};
}

} // namespace

PickLists::PickLists(const RowModel& rows, const PickPlan& plan, Describe describe)
    : plan_(plan), describe_(std::move(describe)), rest_(rows), available_(rest_, PlanOfAvailable(plan, takeMenu_)),
      chosen_(names_, PlanOfChosen(plan, removeMenu_)) {}

void PickLists::Rest::LeaveOut(const NameSet& names) {
    shown_.clear();
    for (std::size_t row = 0; row < rows_.Count(); ++row)
        if (names.IsEmpty() || !names.Has(rows_.Name(row))) shown_.push_back(static_cast<std::uint32_t>(row));
}

void PickLists::Begin(HWND dialog, std::vector<std::string> chosen) {
    dialog_ = dialog;
    available_.Begin(dialog);
    chosen_.Begin(dialog);
    TakeUp(dialog, *this);
    Choose(std::move(chosen));
}

void PickLists::LeaveOutChosen() {
    NameSet names;
    for (const std::string& name : names_.Names) names.Add(describe_(name).Is);
    rest_.LeaveOut(names);
}

void PickLists::Refill(const std::function<bool()>& read) {
    available_.Refill([&] {
        const bool isRead = read();
        LeaveOutChosen();
        return isRead;
    });
    ShowChosen(names_.Names);
    EnableButtons();
}

void PickLists::ShowChosen(std::vector<std::string> names) {
    chosen_.Refill([&] {
        names_.Names = std::move(names);
        names_.Begin(plan_.ChosenColumns.size());
        for (const std::string& name : names_.Names) {
            const ChosenRow row = describe_(name);
            for (const std::string& cell : row.Cells) names_.Add(cell);
        }
        return true;
    });
}

void PickLists::Choose(std::vector<std::string> names) {
    ShowChosen(std::move(names));
    available_.Refill([&] {
        LeaveOutChosen();
        return true;
    });
    EnableButtons();
}

void PickLists::TakeSelected() {
    const std::vector<std::string> taken = available_.SelectedNames();
    if (taken.empty()) return;
    std::vector<std::string> names = names_.Names;
    names.insert(names.end(), taken.begin(), taken.end());
    Choose(std::move(names));
    chosen_.SelectName(taken.back());
}

void PickLists::RemoveSelected() {
    std::vector<std::string> names;
    const std::vector<std::size_t> gone = chosen_.Selected();
    for (std::size_t row = 0; row < names_.Names.size(); ++row)
        if (std::ranges::find(gone, row) == gone.end()) names.push_back(names_.Names[row]);
    Choose(std::move(names));
}

void PickLists::RemoveAll() { Choose({}); }

void PickLists::EnableButtons() const {
    EnableControl(dialog_, plan_.Take, available_.CountSelected() > 0);
    EnableControl(dialog_, plan_.Remove, chosen_.CountSelected() > 0);
    EnableControl(dialog_, plan_.RemoveAll, !names_.Names.empty());
}

bool PickLists::AnswerCommand(int control, int code) {
    const struct {
        int Control;
        int Code;
        void (PickLists::*Do)();
    } kCommands[] = {
        {plan_.Available, kListOpen, &PickLists::TakeSelected}, {plan_.Take, BN_CLICKED, &PickLists::TakeSelected},
        {plan_.Chosen, kListOpen, &PickLists::RemoveSelected},  {plan_.Chosen, kListDelete, &PickLists::RemoveSelected},
        {plan_.Remove, BN_CLICKED, &PickLists::RemoveSelected}, {plan_.RemoveAll, BN_CLICKED, &PickLists::RemoveAll},
    };
    for (const auto& command : kCommands) {
        if (command.Control != control || command.Code != code) continue;
        (this->*command.Do)();
        return true;
    }
    const bool isList = control == plan_.Available || control == plan_.Chosen;
    if (isList && code == kListSelected) EnableButtons();
    return false;
}

bool PickLists::Answer(const DialogMessage& message, INT_PTR&) {
    return message.Number == WM_COMMAND && AnswerCommand(LOWORD(message.WParam), HIWORD(message.WParam));
}

bool PickLists::TakeKey(const MSG& message) {
    const bool isArrow = message.wParam == VK_RIGHT || message.wParam == VK_LEFT;
    const int control = GetDlgCtrlID(message.hwnd);
    const bool isHere = control == plan_.Available || control == plan_.Chosen || control == plan_.Filter;
    if (message.message != WM_SYSKEYDOWN || !isArrow || !isHere || GetParent(message.hwnd) != dialog_) return false;
    message.wParam == VK_RIGHT ? TakeSelected() : RemoveSelected();
    return true;
}

} // namespace bv
