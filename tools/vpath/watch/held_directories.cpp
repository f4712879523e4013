#include "watch/held_directories.h"

#include <algorithm>
#include <utility>

#include <vpath/search.h>

#include "loading/path_names.h"
#include "watch/directory_watches.h"

namespace {

bool IsNone(const vpDir& dir) { return vpGetDirType(dir) == vpDirTypeNone; }

// Calls `act` with each special directory right inside.
template <class Act>
void ForEachSpecial(const vpDir& dir, Act act) {
    for (vpDir at = dir; !IsNone(at = vpGetPackageDirs(dir, at));) act(at);
    for (vpDir at = dir; !IsNone(at = vpGetMethodDirs(dir, at));) act(at);
    const vpDir inner = vpGetPrivateDir(dir);
    if (!IsNone(inner)) act(inner);
}

}  // namespace

HeldDirectories::HeldDirectories(const vpPath& path, OnName onNew, OnName onGone)
    : path_(path), onNew_(std::move(onNew)), onGone_(std::move(onGone)) {}

void HeldDirectories::holdAll() {
    const vpDir current = vpGetCWD(path_);
    currentName_ = NameOfDir(current);
    for (vpDir dir = vpGetNullDir(path_); !IsNone(dir = vpGetNextPathDir(dir));) holdTree(dir);
    current_ = IsNone(current) ? nullptr : hold(current);
}

void HeldDirectories::holdTree(const vpDir& dir) {
    std::vector<vpDir> work{dir};
    while (!work.empty()) {
        const vpDir at = work.back();
        work.pop_back();
        hold(at);
        ForEachSpecial(at, [&](const vpDir& special) { work.push_back(special); });
    }
}

HeldDirectory* HeldDirectories::hold(const vpDir& dir) {
    std::vector<vpDir> unknown;
    HeldDirectory* above = nullptr;
    for (vpDir at = dir; above == nullptr && !IsNone(at); at = vpGetParentDir(at)) {
        const auto known = held_.find(at.get());
        if (known != held_.end()) {
            above = known->second.get();
        } else {
            unknown.push_back(at);
        }
    }
    for (auto at = unknown.rbegin(); at != unknown.rend(); ++at) above = &make(*at, above);
    return above;
}

HeldDirectory& HeldDirectories::make(const vpDir& dir, HeldDirectory* above) {
    auto made = std::make_unique<HeldDirectory>();
    HeldDirectory& directory = *made;
    const std::string name = NameOfDir(dir);
    directory.dir = dir;
    directory.name = absolute(name);
    if (above != nullptr) {
        directory.shown = JoinNames(above->shown, LastComponent(name));
        directory.above = above;
        above->below.push_back(&directory);
    } else {
        directory.shown = FullDirName(name).value_or(directory.name);
    }
    held_.emplace(dir.get(), std::move(made));
    const bool isFirst = byName_.count(directory.name) == 0;
    byName_.emplace(directory.name, &directory);
    if (isFirst) onNew_(directory.name);
    return directory;
}

std::vector<std::string> HeldDirectories::dropGone(HeldDirectory& directory) {
    const auto firstGone =
        std::stable_partition(directory.below.begin(), directory.below.end(),
                              [](const HeldDirectory* at) { return vpIsDirHandleValid(at->dir); });
    const std::vector<HeldDirectory*> gone(firstGone, directory.below.end());
    directory.below.erase(firstGone, directory.below.end());
    std::vector<std::string> shown;
    for (HeldDirectory* at : gone) {
        const std::vector<std::string> names = drop(*at);
        shown.insert(shown.end(), names.begin(), names.end());
    }
    return shown;
}

// Lets a directory, which no other refers to any more, and all beneath it go.
std::vector<std::string> HeldDirectories::drop(HeldDirectory& top) {
    std::vector<std::string> shown;
    std::vector<HeldDirectory*> work{&top};
    while (!work.empty()) {
        HeldDirectory& directory = *work.back();
        work.pop_back();
        work.insert(work.end(), directory.below.begin(), directory.below.end());
        shown.push_back(directory.shown);

        const auto [first, last] = byName_.equal_range(directory.name);
        const bool wasLast = std::next(first) == last;
        byName_.erase(std::find_if(first, last,
                                   [&](const auto& entry) { return entry.second == &directory; }));
        if (wasLast) onGone_(directory.name);
        held_.erase(directory.dir.get());
    }
    return shown;
}

void HeldDirectories::holdCurrentAnew() {
    if (current_ != nullptr) drop(*current_);
    const vpDir current = vpGetCWD(path_);
    currentName_ = NameOfDir(current);
    holdTree(current);
    current_ = hold(current);
    for (vpDir dir = current; !IsNone(dir = vpGetNextPathDir(dir));) {
        if (vpIsAbsoluteDir(dir)) continue;
        HeldDirectory* const known = hold(dir);
        const bool wasThere = known->isThere;
        drop(*known);
        holdTree(dir);
        hold(dir)->isThere = wasThere;
    }
}

std::vector<HeldDirectory*> HeldDirectories::named(const std::string& name) const {
    std::vector<HeldDirectory*> found;
    const auto [first, last] = byName_.equal_range(name);
    for (auto at = first; at != last; ++at) found.push_back(at->second);
    return found;
}

// The current directory's name holds no links, so that ".." at the start may be taken from it: the
// name then does not depend on what it leaves again.
std::string HeldDirectories::absolute(const std::string& name) const {
    if (name.starts_with('/')) return WatchedName(name);
    std::string start = currentName_.empty() ? "/" : currentName_;
    std::string_view rest = name;
    while (rest.starts_with("../") || rest.starts_with("./") || rest == ".." || rest == ".") {
        if (rest.starts_with("..")) start.resize(start.rfind('/'));
        rest.remove_prefix(std::min(rest.find_first_of('/'), rest.size() - 1) + 1);
        if (start.empty()) start += '/';
    }
    return WatchedName(JoinNames(start, std::string(rest)));
}
