// Keeps a path as the disk is, and says what changed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <vpath/path.h>

#include "watch/directory_watches.h"
#include "watch/held_directories.h"
#include "watch/path_events.h"
#include "watch/retest_queue.h"

enum class ChangeKind {
    kReread,
    kAdded,    // a special directory, or one of the path that is there again
    kRemoved,  // likewise
    kCurrent,  // the current directory was entered again
};

struct DirectoryChange {
    ChangeKind kind;
    std::string name;  // as commands print it
};

class PathFollower {
  public:
    using TimePoint = RetestQueue::TimePoint;
    using Changes = std::vector<DirectoryChange>;  // each directory once, if it was not replaced

    struct Counts {
        uint64_t events = 0;   // of the watches, that concerned the path
        uint64_t bursts = 0;   // takeBurst()
        uint64_t retests = 0;  // retest()
        uint64_t polls = 0;    // poll()
        uint64_t reads = 0;    // of directories
    };

    // Watches the directories when `watching` is set and the system can, else they are only polled.
    // What changed since the path was loaded is taken in without saying so.
    PathFollower(const vpPath& path, bool watching);

    // The descriptor on which changes arrive; nothing without watches.
    std::optional<int> input() const;

    // Takes in what has arrived; answers whether it calls for takeBurst().
    bool readInput() { return watches_->read(); }

    // Brings the path up to date with what readInput() took in.
    Changes takeBurst(TimePoint now);

    // Reads once more what changed a while ago. To be called when it is due.
    std::optional<TimePoint> retestDue() const { return retests_.due(); }
    Changes retest(TimePoint now);

    // Tests the directories that cannot be watched for changes.
    Changes poll();

    // Whether poll() has to be called now and then, and why it first had to.
    bool mustPoll() const { return watches_ == nullptr || watches_->hasUnwatched(); }
    std::string whyPoll() const;

    // A directory of the path as changes name it.
    std::string shownName(const vpDir& dir);

    size_t directoryCount() const { return held_.size(); }
    Counts counts() const;

  private:
    std::vector<vpDir> place();
    void refresh(const std::vector<vpDir>& changed);
    Changes settle(std::vector<vpDir> changed);
    void takeEvents();
    void takeReread(const vpDir& dir);
    void note(ChangeKind kind, const std::string& name);
    bool followCurrent();
    void markReturned();

    const vpPath path_;
    std::unique_ptr<DirectoryWatches> watches_;  // null: everything is polled
    std::string whyNoWatches_;
    PathEvents events_;
    HeldDirectories held_;
    RetestQueue retests_;
    std::unordered_map<const void*, vpDir> absent_;  // directories of the path that are gone
    std::vector<vpDir> reread_;                      // since the burst began
    Changes changes_;
    std::unordered_map<std::string, ChangeKind> noted_;  // the last change of each
    Counts counts_;
};
