#include "watch/event_loop.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "output/console.h"
#include "output/exit_status.h"

namespace {

// std::chrono::steady_clock is CLOCK_MONOTONIC.
itimerspec At(std::optional<EventLoop::TimePoint> time) {
    itimerspec setting = {};
    if (!time) return setting;  // all zero disarms
    using std::chrono::nanoseconds;
    const auto since = std::chrono::duration_cast<nanoseconds>(time->time_since_epoch()).count();
    setting.it_value.tv_sec = since / 1'000'000'000;
    setting.it_value.tv_nsec = since % 1'000'000'000;
    return setting;
}

void Check(bool done, const char* what) {
    if (!done) throw CommandError(std::string(what) + ": " + std::strerror(errno));
}

}  // namespace

EventLoop::SignalMask::SignalMask() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals_, &before_);
}

EventLoop::SignalMask::~SignalMask() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

EventLoop::EventLoop()
    : signals_(signalfd(-1, &mask_.signals(), SFD_NONBLOCK | SFD_CLOEXEC)),
      timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      epoll_(epoll_create1(EPOLL_CLOEXEC)) {
    Check(signals_.isOpen(), "signalfd");
    Check(timer_.isOpen(), "timerfd");
    Check(epoll_.isOpen(), "epoll");
    add(signals_.get(), EPOLLIN);
    add(timer_.get(), EPOLLIN);
    // Nothing is asked for: an error, which a pipe reports when nobody reads it any more, always
    // comes. What has no such error, as files, cannot be added, which is well.
    epoll_event event = {};
    event.data.fd = STDOUT_FILENO;
    epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, STDOUT_FILENO, &event);
}

EventLoop::~EventLoop() = default;

void EventLoop::add(int fd, unsigned int events) {
    epoll_event event = {};
    event.events = events;
    event.data.fd = fd;
    Check(epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event) == 0, "epoll");
}

void EventLoop::setInput(int fd) {
    add(fd, EPOLLIN);
    input_ = fd;
}

void EventLoop::setTimer(std::optional<TimePoint> until) {
    if (until == timerSet_) return;
    const itimerspec setting = At(until);
    Check(timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME, &setting, nullptr) == 0, "timerfd");
    timerSet_ = until;
}

bool EventLoop::wait(std::optional<TimePoint> until) {
    setTimer(until);
    epoll_event events[4];
    int count;
    do {
        count = epoll_wait(epoll_.get(), events, 4, -1);
    } while (count < 0 && errno == EINTR);
    Check(count >= 0, "epoll");

    bool hasInput = false;
    bool outputClosed = false;
    for (int i = 0; i < count; ++i) {
        const int fd = events[i].data.fd;
        if (fd == signals_.get()) takeSignal();
        if (fd == input_) hasInput = true;
        if (fd == STDOUT_FILENO) outputClosed = true;
        if (fd == timer_.get()) setTimer(std::nullopt);  // which clears that it has gone off
    }
    if (outputClosed) throw OutputClosed();
    return hasInput;
}

void EventLoop::waitForOutput() {
    pollfd waited[] = {{STDOUT_FILENO, POLLOUT, 0}, {signals_.get(), POLLIN, 0}};
    while (poll(waited, 2, -1) < 0) Check(errno == EINTR, "poll");
    if (waited[1].revents != 0) takeSignal();
}

void EventLoop::takeSignal() {
    signalfd_siginfo info;
    const ssize_t size = read(signals_.get(), &info, sizeof info);
    if (size == static_cast<ssize_t>(sizeof info)) {
        throw Interrupted{static_cast<int>(info.ssi_signo)};
    }
}
