#include "watch/path_follower.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unordered_set>
#include <utility>

#include <vpath_posix/posix_host.h>

#include "loading/path_names.h"
#include "output/console.h"

namespace {

bool IsSame(const vpDir& a, const vpDir& b) { return a.get() == b.get(); }

bool ComesBefore(const vpDir& a, const vpDir& b) {
    return !IsSame(a, b) && IsSame(vpSelectDirFirstOnPath(b, a), a);
}

bool LeadToTheSame(const char* a, const char* b) {
    struct stat statusOfA;
    struct stat statusOfB;
    return stat(a, &statusOfA) == 0 && stat(b, &statusOfB) == 0 &&
           statusOfA.st_dev == statusOfB.st_dev && statusOfA.st_ino == statusOfB.st_ino;
}

}  // namespace

PathFollower::PathFollower(const vpPath& path, bool watching)
    : path_(path),
      events_(path),
      held_(
          path,
          [this](const std::string& name) {
              if (watches_ != nullptr) watches_->add(name);
          },
          [this](const std::string& name) {
              if (watches_ != nullptr) watches_->remove(name);
          }) {
    if (watching) {
        watches_ = std::make_unique<DirectoryWatches>();
        if (!watches_->isOpen()) {
            whyNoWatches_ = std::string("inotify: ") + std::strerror(errno);
            watches_.reset();
        }
    }
    held_.holdAll();
    // What changed between the load and the moment when the watches stand is told by nobody.
    place();
    vpRefreshAllDirectories(path_, vpRefreshIfChanged);
    settle({});
    counts_.reads = 0;
    reread_.clear();
}

std::optional<int> PathFollower::input() const {
    if (watches_ == nullptr) return std::nullopt;
    return watches_->fd();
}

PathFollower::Counts PathFollower::counts() const {
    Counts counts = counts_;
    if (watches_ != nullptr) counts.events = watches_->eventCount();
    return counts;
}

PathFollower::Changes PathFollower::takeBurst(TimePoint now) {
    ++counts_.bursts;
    reread_.clear();
    const bool lost = watches_->takeOverflow();
    std::vector<vpDir> changed = place();
    if (lost) {
        Complain("too many changes at once; testing every directory");
        vpChangedUnknownDir(path_);
        vpRefreshAllDirectories(path_, vpRefreshIfChanged);
    }
    Changes changes = settle(std::move(changed));
    for (const vpDir& dir : reread_) retests_.add(dir, now);
    return changes;
}

PathFollower::Changes PathFollower::retest(TimePoint now) {
    ++counts_.retests;
    return settle(retests_.take(now));
}

PathFollower::Changes PathFollower::poll() {
    ++counts_.polls;
    markReturned();
    if (watches_ == nullptr) {
        vpRefreshAllDirectories(path_, vpRefreshIfChanged);
        return settle({});
    }
    watches_->retry();
    std::vector<vpDir> changed = place();
    for (const std::string& name : watches_->unwatched()) {
        for (const HeldDirectory* directory : held_.named(name)) {
            // A refresh goes beneath by itself.
            const HeldDirectory* const above = directory->above;
            if (above != nullptr && watches_->isUnwatched(above->name)) continue;
            vpRefreshDirectory(directory->dir, vpRefreshIfChanged);
        }
    }
    return settle(std::move(changed));
}

// A directory that comes back may have the time stamp that it had before, which tells nothing.
void PathFollower::markReturned() {
    for (const auto& [key, dir] : absent_) {
        if (vpPosixIsDirectory(path_, NameOfDir(dir).c_str())) vpSetDirChanged(dir);
    }
}

std::string PathFollower::whyPoll() const {
    if (watches_ == nullptr) return whyNoWatches_;
    switch (watches_->firstLack()) {
        case DirectoryWatches::Lack::kWatches:
            return "no inotify watches left; raise fs.inotify.max_user_watches";
        case DirectoryWatches::Lack::kEvents:
            return "the file system does not tell of all changes";
        case DirectoryWatches::Lack::kAccess:
            return "no permission to watch them";
        case DirectoryWatches::Lack::kNone:
            break;
    }
    return "";
}

std::string PathFollower::shownName(const vpDir& dir) {
    const HeldDirectory* const directory = held_.hold(dir);
    return directory != nullptr ? directory->shown : NameOfDir(dir);
}

// ---------------------------------------------------------------------------------------------
// Bringing the path up to date

// Watches what is new and what leads elsewhere than before; the directories that changed.
std::vector<vpDir> PathFollower::place() {
    std::vector<vpDir> changed;
    if (watches_ == nullptr) return changed;
    watches_->place();
    for (const std::string& name : watches_->takeChanged()) {
        for (const HeldDirectory* directory : held_.named(name)) changed.push_back(directory->dir);
    }
    return changed;
}

// Marks the directories and has them read again, in path order.
void PathFollower::refresh(const std::vector<vpDir>& changed) {
    std::vector<vpDir> tops;
    std::unordered_set<const void*> known;
    for (const vpDir& dir : changed) {
        if (!vpIsDirHandleValid(dir)) continue;
        vpSetDirChanged(dir);
        const vpDir top = vpGetPathDir(dir);
        if (known.insert(top.get()).second) tops.push_back(top);
    }
    std::sort(tops.begin(), tops.end(), ComesBefore);
    for (const vpDir& top : tops) vpRefreshDirectory(top, vpRefreshPending);
}

// Directories that a refresh finds are read before they are watched: they are read once more when
// their watches stand. Ends when nothing new is found.
PathFollower::Changes PathFollower::settle(std::vector<vpDir> changed) {
    do {
        refresh(changed);
        takeEvents();
        changed = place();
    } while (!changed.empty() || followCurrent());
    noted_.clear();
    return std::exchange(changes_, {});
}

void PathFollower::takeEvents() {
    for (const PathEvent& event : events_.take()) {
        if (event.type == vpEventDirReread) {
            takeReread(event.dir);
        } else if (event.type == vpEventDirAdded) {
            const HeldDirectory* const directory = held_.hold(event.dir);
            if (directory == nullptr || directory->above == nullptr) continue;
            note(ChangeKind::kAdded, directory->shown);
            reread_.push_back(event.dir);
            ++counts_.reads;
        } else if (event.type == vpEventCWDChangeEnd) {
            held_.holdCurrentAnew();
            note(ChangeKind::kCurrent, shownName(vpGetCWD(path_)));
        }
    }
}

void PathFollower::takeReread(const vpDir& dir) {
    HeldDirectory* const directory = held_.hold(dir);
    if (directory == nullptr) return;
    ++counts_.reads;
    const bool wasThere = directory->isThere;
    if (directory->above == nullptr) {
        directory->isThere = vpPosixIsDirectory(path_, NameOfDir(dir).c_str());
    }
    if (directory->isThere) {
        reread_.push_back(dir);
        absent_.erase(dir.get());
        note(wasThere ? ChangeKind::kReread : ChangeKind::kAdded, directory->shown);
    } else if (wasThere) {
        absent_.emplace(dir.get(), dir);
        note(ChangeKind::kRemoved, directory->shown);
    }
    for (const std::string& gone : held_.dropGone(*directory)) note(ChangeKind::kRemoved, gone);
}

// What was found new is read twice, and one name may stand for two directories of the path: such
// news are told once.
void PathFollower::note(ChangeKind kind, const std::string& name) {
    const auto [known, isNew] = noted_.try_emplace(name, kind);
    if (!isNew && (kind == ChangeKind::kReread || kind == known->second)) return;
    known->second = kind;
    changes_.push_back({kind, name});
}

// The path's current directory is what has its name now: when another directory took the place of
// the one in which the process is, it enters that. Answers whether it did.
bool PathFollower::followCurrent() {
    const std::string name = NameOfDir(vpGetCWD(path_));
    if (name.empty() || !vpPosixIsDirectory(path_, name.c_str())) return false;
    return !LeadToTheSame(name.c_str(), ".") && vpSetCWDName(path_, name.c_str()) == nullptr;
}
