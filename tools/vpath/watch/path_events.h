// The library's events as a command takes them in: after the call that raised them.
#pragma once

#include <vector>

#include <vpath/path.h>

struct PathEvent {
    vpEventType type;
    vpDir dir;
};

// Listens to a path, events on special directories and on directories read again included. One at a
// time.
class PathEvents {
  public:
    explicit PathEvents(const vpPath& path);
    ~PathEvents();
    PathEvents(const PathEvents&) = delete;
    PathEvents& operator=(const PathEvents&) = delete;

    // The events since the last call, in the order in which they were raised.
    std::vector<PathEvent> take();

  private:
    vpRegisteredInterest interest_;
};
