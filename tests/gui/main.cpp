#include <gtest/gtest.h>

#include "dialogs/colours_dlg.h"
#include "gui/gui.h"
#include "shell/main_window_dlg.h"

int main(int count, char** arguments) {
    bv::gui::MakeDesktop();
    bv::StartCommonControls();
    bv::MainWindow::RegisterWindowClass();
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
