#include "watch/directory_watches.h"

#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

#include "watch/file_systems.h"

namespace {

// Changes of the names in a directory, and of what it is itself. Nothing that reading it causes.
constexpr uint32_t kNames = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr uint32_t kItself = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t kGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

// Far fewer than the events that the kernel keeps.
constexpr int kMostEndedWatches = 1000;

// Follows as many symbolic links one after another as the kernel does.
constexpr int kMostLinks = 40;

std::string SystemName(const std::string& name) { return name.empty() ? "/" : name; }

std::optional<std::string> LinkText(const std::string& name) {
    char text[PATH_MAX];
    const ssize_t size = readlink(name.c_str(), text, sizeof text);
    if (size < 0) return std::nullopt;
    return std::string(text, static_cast<size_t>(size));
}

bool IsBeneath(const std::string& name, const std::string& above) {
    return name.size() > above.size() && name[above.size()] == '/' &&
           name.compare(0, above.size(), above) == 0;
}

}  // namespace

std::string WatchedName(std::string_view absoluteName) {
    std::string name;
    for (const char c : absoluteName) {
        if (c != '/' || name.empty() || name.back() != '/') name += c;
    }
    if (!name.empty() && name.back() == '/') name.pop_back();
    return name;
}

void DirectoryWatches::add(const std::string& name) {
    Node& node = obtain(name);
    node.watched = true;
    changed_.insert(name);
    suspect(node);
}

void DirectoryWatches::remove(const std::string& name) {
    const auto found = nodes_.find(name);
    if (found == nodes_.end()) return;
    found->second.watched = false;
    unwatched_.erase(&found->second);
    changed_.erase(found->first);
    eraseUnused(found->first);
    keepQueueShort();
}

// Finds or makes the node of a name and those above it.
DirectoryWatches::Node& DirectoryWatches::obtain(const std::string& name) {
    std::string_view above = name;
    auto found = nodes_.find(above);
    while (found == nodes_.end() && !above.empty()) {
        above = above.substr(0, above.rfind('/'));
        found = nodes_.find(above);
    }
    if (found == nodes_.end()) {
        found = nodes_.try_emplace("").first;
        found->second.name = &found->first;
        pending_.push_back(found->first);
    }
    while (found->first.size() < name.size()) {
        Node& parent = found->second;
        const size_t end = std::min(name.find('/', found->first.size() + 1), name.size());
        found = nodes_.try_emplace(name.substr(0, end)).first;
        found->second.name = &found->first;
        found->second.above = &parent;
        ++parent.below;
        pending_.push_back(found->first);
    }
    return found->second;
}

// ---------------------------------------------------------------------------------------------
// What happened

bool DirectoryWatches::read() {
    inotify_.read([this](const InotifyEvent& event) { take(event); });
    return overflowed_ || !pending_.empty() || !changed_.empty();
}

void DirectoryWatches::take(const InotifyEvent& event) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        overflowed_ = true;
        suspect(obtain(""));
        return;
    }
    const auto found = watches_.find(event.watch);
    if (found == watches_.end()) return;  // of a watch that was removed
    bool concerns = false;
    for (Node* node : found->second) {
        if ((event.mask & kGone) != 0) {
            if ((event.mask & IN_IGNORED) != 0) node->watch = -1;
            suspect(*node);
            concerns = true;
        } else if (!event.name.empty()) {
            concerns |= takeNameEvent(event, *node);
        } else if (node->watched) {
            changed_.insert(*node->name);
            concerns = true;
        }
    }
    if ((event.mask & IN_IGNORED) != 0) watches_.erase(found);
    if (concerns) ++eventCount_;
}

// Answers whether the name in the directory is of any concern.
bool DirectoryWatches::takeNameEvent(const InotifyEvent& event, Node& directory) {
    bool concerns = false;
    // Attributes matter to directories that could not be watched.
    const bool attributes = (event.mask & IN_ATTRIB) != 0;
    const auto child = nodes_.find(*directory.name + "/" + std::string(event.name));
    if (child != nodes_.end() && (!attributes || child->second.watch < 0)) {
        suspect(child->second);
        concerns = true;
    }
    // Hidden files are in no listing.
    if (directory.watched && !attributes && event.name.front() != '.') {
        changed_.insert(*directory.name);
        concerns = true;
    }
    return concerns;
}

// The end of each watch is an event too: thousands at once would make the queue overflow.
void DirectoryWatches::keepQueueShort() {
    if (endedWatches_ < kMostEndedWatches) return;
    endedWatches_ = 0;
    read();
}

bool DirectoryWatches::takeOverflow() { return std::exchange(overflowed_, false); }

// Has the name looked at, with all beneath it and all that is reached through it.
void DirectoryWatches::suspect(Node& first) {
    std::vector<Node*> work{&first};
    while (!work.empty()) {
        Node& node = *work.back();
        work.pop_back();
        if (node.pending) continue;
        markPending(node, work);
        auto at = nodes_.lower_bound(*node.name + "/");
        while (at != nodes_.end() && IsBeneath(at->first, *node.name)) {
            if (at->second.pending) {
                at = nodes_.lower_bound(at->first + static_cast<char>('/' + 1));
            } else {
                markPending(at->second, work);
                ++at;
            }
        }
    }
}

void DirectoryWatches::markPending(Node& node, std::vector<Node*>& more) {
    node.pending = true;
    pending_.push_back(*node.name);
    more.insert(more.end(), node.links.begin(), node.links.end());
}

std::vector<std::string> DirectoryWatches::takeChanged() {
    std::vector<std::string> changed(changed_.begin(), changed_.end());
    changed_.clear();
    return changed;
}

// ---------------------------------------------------------------------------------------------
// Where names lead

void DirectoryWatches::place() {
    while (!pending_.empty()) {
        std::vector<std::string> names = std::exchange(pending_, {});
        std::sort(names.begin(), names.end());  // each after those above it
        for (const std::string& name : names) {
            const auto found = nodes_.find(name);
            if (found != nodes_.end()) placeWithAllAbove(found->second, 0);
            keepQueueShort();
        }
    }
    for (std::string& name : std::exchange(maybeUnused_, {})) eraseUnused(std::move(name));
}

// Each part of a name is watched before the next is looked at: what changes meanwhile is told of.
void DirectoryWatches::placeWithAllAbove(Node& node, int linksOnTheWay) {
    std::vector<Node*> parts;
    for (Node* at = &node; at != nullptr && at->pending; at = at->above) parts.push_back(at);
    for (auto at = parts.rbegin(); at != parts.rend(); ++at) placeOne(**at, linksOnTheWay);
}

void DirectoryWatches::placeOne(Node& node, int linksOnTheWay) {
    if (!node.pending) return;  // a link on the way led here
    node.pending = false;
    setTarget(node, linksOnTheWay);

    const std::string name = SystemName(*node.name);
    const int watch = inotify_.add(name, kNames | kItself | (node.watched ? IN_ATTRIB : 0U));
    const int failure = watch < 0 ? errno : 0;
    const bool noneLeft = failure == ENOSPC || failure == ENOMEM;
    const bool wasThere = std::exchange(
        node.there, failure == 0 || noneLeft || failure == EACCES || failure == ENAMETOOLONG);
    const bool leadsElsewhere = watch != node.watch || node.there != wasThere;
    setWatch(node, watch);
    node.lack = Lack::kNone;
    if (noneLeft) {
        node.lack = Lack::kWatches;
    } else if (watch < 0) {
        if (node.there || !showsComing(node)) node.lack = Lack::kAccess;
    } else if (node.watched && !TellsOfChanges(name)) {
        node.lack = Lack::kEvents;
    }
    if (!node.watched) return;
    if (leadsElsewhere) changed_.insert(*node.name);
    if (failure == EACCES && node.above != nullptr && node.above->watch >= 0) {
        inotify_.add(SystemName(*node.above->name), IN_ATTRIB);  // permission may be given
    }
    noteLack(node);
}

// Looks where the name leads when it is that of a symbolic link, and has that watched first.
void DirectoryWatches::setTarget(Node& node, int linksOnTheWay) {
    const auto text = LinkText(SystemName(*node.name));
    Node* target = nullptr;
    if (text && linksOnTheWay < kMostLinks) {
        const bool absolute = text->starts_with('/');
        target = &obtain(WatchedName(absolute ? *text : *node.above->name + "/" + *text));
        placeWithAllAbove(*target, linksOnTheWay + 1);
    }
    if (target == node.target) return;
    if (node.target != nullptr) {
        node.target->links.erase(&node);
        maybeUnused_.push_back(*node.target->name);
    }
    node.target = target;
    if (target != nullptr) target->links.insert(&node);
}

void DirectoryWatches::setWatch(Node& node, int watch) {
    if (watch == node.watch) return;
    const auto old = watches_.find(node.watch);
    if (old != watches_.end()) {
        old->second.erase(&node);
        if (old->second.empty()) {
            inotify_.remove(old->first);
            ++endedWatches_;
            watches_.erase(old);
        }
    }
    node.watch = watch;
    if (watch >= 0) watches_[watch].insert(&node);
}

void DirectoryWatches::noteLack(Node& node) {
    if (node.lack == Lack::kNone) {
        unwatched_.erase(&node);
        return;
    }
    unwatched_.insert(&node);
    if (firstLack_ == Lack::kNone) firstLack_ = node.lack;
}

// Whether it would be told when a directory comes to be there.
bool DirectoryWatches::showsComing(const Node& node) const {
    const Node* at = node.above;
    while (at != nullptr && !at->there) at = at->above;
    return at != nullptr && at->watch >= 0;
}

// Lets the node go unless it is needed, and those that were needed only for it.
void DirectoryWatches::eraseUnused(std::string name) {
    std::vector<std::string> names{std::move(name)};
    while (!names.empty()) {
        const auto found = nodes_.find(names.back());
        names.pop_back();
        if (found == nodes_.end()) continue;
        Node& node = found->second;
        if (node.watched || node.below != 0 || !node.links.empty()) continue;
        setWatch(node, -1);
        if (node.target != nullptr) {
            node.target->links.erase(&node);
            names.push_back(*node.target->name);
        }
        if (node.above != nullptr) {
            --node.above->below;
            names.push_back(*node.above->name);
        }
        nodes_.erase(found);
    }
}

// ---------------------------------------------------------------------------------------------
// Without watches

std::vector<std::string> DirectoryWatches::unwatched() const {
    std::vector<std::string> names;
    names.reserve(unwatched_.size());
    for (const Node* node : unwatched_) names.push_back(*node->name);
    std::sort(names.begin(), names.end());
    return names;
}

bool DirectoryWatches::isUnwatched(const std::string& name) const {
    const auto found = nodes_.find(name);
    return found != nodes_.end() && found->second.watched && found->second.lack != Lack::kNone;
}

void DirectoryWatches::retry() {
    for (Node* node : unwatched_) {
        if (node->lack == Lack::kEvents) continue;
        const auto needsRetry = [](const Node& at) {
            return !at.there || at.lack == Lack::kWatches;
        };
        Node* first = node;
        while (first->above != nullptr && needsRetry(*first->above)) first = first->above;
        suspect(*first);
    }
}
