// One line on the terminal that says how a long load is going.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>

// Counts directories. The line is shown after half a second, on standard error and only when that
// is a terminal; it is overwritten while the count grows and erased at the end.
class Progress {
  public:
    Progress();
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // How many steps there are, when that is known, and how many are done: from the two comes the
    // remaining time. Steps need not be directories.
    void expect(size_t steps, std::function<size_t()> done);

    void countDirectory();

    // Makes room for another line on the terminal; the next count shows the progress again.
    static void eraseShown();

  private:
    using Clock = std::chrono::steady_clock;

    void show(Clock::time_point now);

    const Clock::time_point start_;
    Clock::time_point nextShow_;
    uint64_t directories_ = 0;
    size_t steps_ = 0;
    std::function<size_t()> done_;
};
