// How dialogs look: their colours, the common controls and the optional library for a three-dimensional look.
#pragma once

#include <windows.h>

#include <memory>

#include "dialogs/dialog_dlg.h"
#include "platform/libraries.h"

namespace bv {

// The brush of the system's button face, for the banner and for grey dialogs.
HBRUSH BackgroundBrush();
void RecreateBackgroundBrush(); // when the system's colours have changed

// A dialog's answer to a message that asks for a control's colours: where the button face is exactly light grey (192,
// 192, 192), button text on button face for the dialog and all its controls but combo boxes. 0 for any other message or
// scheme: the system's colours.
INT_PTR ColourDialog(const DialogMessage& message);

// Readies the system's common controls.
void StartCommonControls();

// CTL3D32.DLL, registered with the program while this lives; without the library, or without one of its entries,
// nothing happens.
class ThreeDControls {
  public:
    ThreeDControls();
    ~ThreeDControls();
    ThreeDControls(const ThreeDControls&) = delete;
    ThreeDControls& operator=(const ThreeDControls&) = delete;

    void ColoursChanged();

  private:
    std::unique_ptr<platform::Library> library_;
};

} // namespace bv
