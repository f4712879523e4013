#include "output/progress.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <utility>

#include "output/console.h"

namespace {

constexpr auto kQuietTime = std::chrono::milliseconds(500);
constexpr auto kShowInterval = std::chrono::milliseconds(100);
constexpr char kEraseLine[] = "\r\033[K";

// There is one terminal, and messages reach it from library callbacks that carry no context.
volatile std::sig_atomic_t shown = 0;

// Ends the process as the signal does by itself, but on a line of its own.
void EraseAndEnd(int signal) {
    if (shown != 0) static_cast<void>(!write(STDERR_FILENO, kEraseLine, sizeof kEraseLine - 1));
    raise(signal);
}

// Leaves alone a signal that is ignored or that somebody waits for.
void EraseWhenInterrupted() {
    struct sigaction action = {};
    if (sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) return;
    action.sa_handler = EraseAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
}

}  // namespace

Progress::Progress()
    : start_(Clock::now()),
      nextShow_(IsTerminal(STDERR_FILENO) ? start_ + kQuietTime : Clock::time_point::max()) {}

Progress::~Progress() { eraseShown(); }

void Progress::expect(size_t steps, std::function<size_t()> done) {
    steps_ = steps;
    done_ = std::move(done);
}

void Progress::countDirectory() {
    ++directories_;
    const Clock::time_point now = Clock::now();
    if (now >= nextShow_) show(now);
}

void Progress::show(Clock::time_point now) {
    const std::chrono::duration<double> elapsed = now - start_;
    std::fprintf(stderr, "%sreading: %llu directories, %.0f a second", kEraseLine,
                 static_cast<unsigned long long>(directories_),
                 static_cast<double>(directories_) / elapsed.count());
    const size_t done = steps_ != 0 ? done_() : 0;
    if (done != 0 && done <= steps_) {
        std::fprintf(
            stderr, ", %.0f s left",
            elapsed.count() * static_cast<double>(steps_ - done) / static_cast<double>(done));
    }
    std::fflush(stderr);
    if (shown == 0) EraseWhenInterrupted();
    shown = 1;
    nextShow_ = now + kShowInterval;
}

void Progress::eraseShown() {
    if (shown == 0) return;
    std::fputs(kEraseLine, stderr);
    std::fflush(stderr);
    shown = 0;
}
