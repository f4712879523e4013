#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

// When to look at changes that come close together: once it is quiet for a moment, and after a
// while if it does not become quiet.
class Burst {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds kQuiet{30};
    static constexpr std::chrono::milliseconds kLongest{200};

    void extend(TimePoint now) {
        if (!latest_) latest_ = now + kLongest;
        due_ = std::min(now + kQuiet, *latest_);
    }
    std::optional<TimePoint> due() const { return due_; }
    void end() {
        due_.reset();
        latest_.reset();
    }

  private:
    std::optional<TimePoint> due_;
    std::optional<TimePoint> latest_;
};
