// Work that no signal may come into.
#pragma once

#include <csignal>

// While it lives, all signals wait.
class SignalBlock {
  public:
    SignalBlock() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &before_);
    }
    ~SignalBlock() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

  private:
    sigset_t before_;
};
