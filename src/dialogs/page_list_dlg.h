// Pages that are chosen from a list with icons, and by words that are looked for in them.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/page_host_dlg.h"

namespace bv {

// The controls of the dialog.
struct PageListPlan {
    int List;  // a list view with one column and no header
    int Find;  // an edit control
    int Title; // a text, for the title of the page in front; its page follows it in the order of the keyboard
    int Frame; // what the page stands in
};

class PageList : public PageHost {
  public:
    struct Hit {
        std::size_t Page;
        int Control; // 0: none in particular
    };
    // Where the words are found; everywhere without any.
    using Finder = std::function<std::vector<Hit>(const std::string& words)>;

    // Takes up the controls of a dialog that is being filled, and shows the page that the person saw last.
    void Begin(HWND dialog, const PageListPlan& plan, const std::vector<Page>& pages, Finder find);

    // Has it called after a control of a page has told something, soon.
    void OnTouched(std::function<void()> touched) { touched_ = std::move(touched); }

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    bool TakeKey(const MSG& message) override;
    void Rescale(int dpi) override;

  protected:
    void AddTitle(std::size_t page, const Page& what) override;
    void ShowChosen(std::size_t page) override;
    bool AnswerChooser(const NMHDR& notice, INT_PTR& result) override;
    void Place(HWND window) const override;
    void Touched() override;

  private:
    void MakeIcons(int dpi);
    void FillWidth() const;
    void RememberPage() const;
    void ListFound();
    void GoToFirstHit();
    bool TakeKeyInFind(WPARAM key);

    PageListPlan plan_{};
    Finder find_;
    std::function<void()> touched_;
    bool isListing_ = false;
    bool isTouched_ = false;
};

} // namespace bv
