// The directories that a path holds, as their follower knows them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <vpath/path.h>

// A directory on the path or a special one inside it.
struct HeldDirectory {
    vpDir dir;
    std::string name;   // as DirectoryWatches takes it; a relative one is completed as it stands
    std::string shown;  // as commands print it, without "." and ".."
    HeldDirectory* above = nullptr;  // that holds a special directory
    std::vector<HeldDirectory*> below;
    bool isThere = true;  // for one on the path: it may be gone for a while
};

class HeldDirectories {
  public:
    using OnName = std::function<void(const std::string& name)>;

    // Called with each name that gets its first directory, and each that loses its last: the
    // current directory may be on the path a second time.
    HeldDirectories(const vpPath& path, OnName onNew, OnName onGone);

    // Takes in all directories of the path. Cost: all of them.
    void holdAll();

    // The directory, taken in when it is not yet. Null when it has left the path.
    HeldDirectory* hold(const vpDir& dir);

    // Lets those right beneath go that have left the path, with all beneath them. Answers the shown
    // names of all of them, each after those above it.
    std::vector<std::string> dropGone(HeldDirectory& directory);

    // Takes the current directory in anew, and those that follow it. Cost: the path.
    void holdCurrentAnew();

    // Those of a name.
    std::vector<HeldDirectory*> named(const std::string& name) const;

    size_t size() const { return held_.size(); }

  private:
    HeldDirectory& make(const vpDir& dir, HeldDirectory* above);
    void holdTree(const vpDir& dir);
    std::vector<std::string> drop(HeldDirectory& top);
    std::string absolute(const std::string& name) const;

    const vpPath path_;
    const OnName onNew_;
    const OnName onGone_;
    std::string currentName_;
    HeldDirectory* current_ = nullptr;
    std::unordered_map<const void*, std::unique_ptr<HeldDirectory>>
        held_;  // by what `dir` points at
    std::unordered_multimap<std::string, HeldDirectory*> byName_;
};
