// Waits for whatever a command that runs until it is stopped has to wait for.
#pragma once

#include <signal.h>

#include <chrono>
#include <optional>

#include "files/descriptor.h"

// Thrown when the user or the system ends the command. The signal is SIGINT or SIGTERM.
struct Interrupted {
    int signal;
};

// While it lives, SIGINT and SIGTERM are held back from the process and end its waits instead, also
// where they were ignored, as shells have it for what runs in the background: nothing is left
// running. Everything here throws CommandError when the system refuses.
class EventLoop {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    // The descriptor that wait() watches.
    void setInput(int fd);

    // Sleeps until there is input or the time has come; without a time, until there is input.
    // Answers whether there is input. Throws Interrupted, and OutputClosed as soon as the reader of
    // standard output has gone away.
    bool wait(std::optional<TimePoint> until);

    // Sleeps until standard output takes a line without blocking, so that a reader that has stopped
    // reading does not keep the command from ending. Throws Interrupted.
    void waitForOutput();

  private:
    class SignalMask {
      public:
        SignalMask();
        ~SignalMask();
        const sigset_t& signals() const { return signals_; }

      private:
        sigset_t signals_;
        sigset_t before_;
    };

    void add(int fd, unsigned int events);
    void setTimer(std::optional<TimePoint> until);
    void takeSignal();

    SignalMask mask_;
    Descriptor signals_;
    Descriptor timer_;
    Descriptor epoll_;
    int input_ = -1;
    std::optional<TimePoint> timerSet_;
};
