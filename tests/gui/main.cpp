// gui_tests [--pictures DIRECTORY [--high-contrast] | GoogleTest's arguments]
// With --pictures it draws every dialog into a .bmp file of the directory instead of testing.
#include <gtest/gtest.h>

#include <string_view>

#include "dialogs/colours_dlg.h"
#include "gui/gui.h"
#include "gui/pictures.h"
#include "shell/main_window_dlg.h"

int main(int count, char** arguments) {
    bv::gui::MakeDesktop();
    bv::StartCommonControls();
    bv::MainWindow::RegisterWindowClass();
    if (count >= 3 && std::string_view(arguments[1]) == "--pictures") {
        const bool isHighContrast = count == 4 && std::string_view(arguments[3]) == "--high-contrast";
        return isHighContrast ? bv::gui::DrawHighContrast(arguments[2]) : bv::gui::DrawPictures(arguments[2]);
    }
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
