#include "progress.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr auto kQuietTime = std::chrono::milliseconds(500);
constexpr auto kShowInterval = std::chrono::milliseconds(100);
constexpr char kEraseLine[] = "\r\033[K";

// There is one terminal, and messages reach it from library callbacks that carry no context.
bool shown = false;

bool CanShow() {
    const char* terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

}  // namespace

Progress::Progress()
    : start_(Clock::now()), nextShow_(CanShow() ? start_ + kQuietTime : Clock::time_point::max()) {}

Progress::~Progress() { eraseShown(); }

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
    std::fflush(stderr);
    shown = true;
    nextShow_ = now + kShowInterval;
}

void Progress::eraseShown() {
    if (!shown) return;
    std::fputs(kEraseLine, stderr);
    std::fflush(stderr);
    shown = false;
}
