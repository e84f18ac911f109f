#include "console/interrupt.h"

namespace bv::console {
namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void NoteInterrupt(int) {
    interrupted = 1;
    std::signal(SIGINT, NoteInterrupt); // some systems take a handler away once it was called
}

} // namespace

InterruptWatch::InterruptWatch() {
    interrupted = 0;
    before_ = std::signal(SIGINT, NoteInterrupt);
}

InterruptWatch::~InterruptWatch() { std::signal(SIGINT, before_ == SIG_ERR ? SIG_DFL : before_); }

bool InterruptWatch::WasInterrupted() { return interrupted != 0; }

} // namespace bv::console
