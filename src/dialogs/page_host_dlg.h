// A dialog of pages, of which one is in front: behind a tab control, or beside a list (page_list_dlg.h). A page is a
// child dialog with a plan of its own over the same context; it is made when it is first shown. A page with a fault is
// not left.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "dialogs/dialog_dlg.h"

namespace bv {

struct Page {
    const char* Template;
    const char* Title;
    DLGPROC Procedure;
    // Takes what the page's controls say into the context. Returns the control of the first fault, after its message,
    // or 0. None: the page takes it as it goes.
    int (*Take)(HWND page, void* context) = nullptr;
    const char* Icon = nullptr; // of a page in a list
    void* Context = nullptr;    // its own; none: the dialog's
};

// The Take of a page, for a function that knows the context's type.
template <class Context, int (*kTake)(HWND, Context&)>
int TakePage(HWND page, void* context) {
    return kTake(page, *static_cast<Context*>(context));
}

class PageHost : public DialogPart {
  public:
    // Takes up the tab control of a dialog that is being filled, and shows a page.
    void Begin(HWND dialog, int chooser, const std::vector<Page>& pages, std::size_t first = 0);

    // Has all pages that were shown taken, in their order. False at the first fault, whose page and control then have
    // the focus.
    bool TakeAll();

    // Brings a page to the front, whatever the one in front says; its control, if one is given, gets the focus.
    void Show(std::size_t page, int control = 0);
    void ShowFault(const char* pageTemplate, int control);

    // Puts the focus on the first control of the page in front.
    void FocusFirst();

    // The page's window; made if it was not there yet.
    HWND Window(std::size_t page);

    // Makes the pages that were shown anew, as the context has them now. The focus stays where it is.
    void FillAnew();

    // The page's controls show something else now, and the person has changed nothing.
    void NoteAsFilled(HWND page);

    // Whether the person has changed anything on a page.
    [[nodiscard]] bool IsEdited() const;

    bool Answer(const DialogMessage& message, INT_PTR& result) override;
    bool TakeKey(const MSG& message) override;

  protected:
    // What the person chooses pages by, here a tab control: a title in it, the one that is chosen, what it tells, and
    // the place of a page in the dialog and in the order of the keyboard.
    virtual void AddTitle(std::size_t page, const Page& what);
    virtual void ShowChosen(std::size_t page);
    virtual bool AnswerChooser(const NMHDR& notice, INT_PTR& result);
    virtual void Place(HWND window) const;

    // A control of a page has told something.
    virtual void Touched() {}

    // Goes to another page, if the one in front can be left. Else that one is chosen again.
    void Turn(std::size_t page);

    [[nodiscard]] HWND Dialog() const { return dialog_; }
    [[nodiscard]] HWND Chooser() const { return chooser_; }
    [[nodiscard]] std::size_t Front() const { return front_; }
    [[nodiscard]] std::size_t Count() const { return pages_.size(); }
    [[nodiscard]] const Page& What(std::size_t page) const { return pages_.at(page).What; }

  private:
    struct Shown {
        explicit Shown(const Page& page) : What(page) {}
        Page What;
        std::unique_ptr<OpenedDialog> Opened;
        HWND Window = nullptr;
        std::string State; // of its controls, when it was filled
    };
    bool Leave();
    int Take(Shown& page) const;
    void Step(int by);
    static LRESULT CALLBACK FollowPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR data);

    HWND dialog_ = nullptr;
    HWND chooser_ = nullptr;
    std::size_t front_ = 0;
    std::vector<Shown> pages_;
};

} // namespace bv
