#include "platform/terminal.h"

#include <termios.h>
#include <unistd.h>

namespace bv::platform {

bool IsTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1; }

struct HiddenTyping::Mode {
    termios Settings;
};

HiddenTyping::HiddenTyping() {
    termios settings{};
    if (tcgetattr(STDIN_FILENO, &settings) != 0) return;
    before_ = std::make_unique<Mode>(Mode{settings});
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

HiddenTyping::~HiddenTyping() {
    if (before_) tcsetattr(STDIN_FILENO, TCSANOW, &before_->Settings);
}

} // namespace bv::platform
