#include "output/interruption.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

void NoteInterrupts() {
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    sigaction(SIGINT, &action, nullptr);
}

bool IsInterrupted() { return interrupted != 0; }

void ForgetInterrupt() { interrupted = 0; }

void EndIfInterrupted() {
    if (IsInterrupted()) throw LineInterrupted();
}
