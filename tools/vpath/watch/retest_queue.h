// Directories that changed, until their time stamps can be trusted.
#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

#include <vpath/path.h>

class RetestQueue {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Stamps are whole seconds, and one of this second or the one before may hide a later change.
    static constexpr std::chrono::milliseconds kDelay{2100};

    // A directory that is in the queue waits anew.
    void add(const vpDir& dir, TimePoint now);

    // When to take() next; nothing while the queue is empty.
    std::optional<TimePoint> due() const;

    // The directories whose time has come.
    std::vector<vpDir> take(TimePoint now);

  private:
    struct Entry {
        TimePoint due;
        vpDir dir;
    };

    std::deque<Entry> entries_;                         // in order of time
    std::unordered_map<const void*, TimePoint> dueOf_;  // by what the handle points at: its last
};
