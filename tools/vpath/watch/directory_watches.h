// Tells which directories changed, by name: also when what the name leads to is moved, deleted or
// replaced, at any place above it or behind a symbolic link, and when it comes to be.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "watch/inotify.h"

// An absolute name in the form that the watches give and take: without doubled and final '/', so
// that the root's is empty.
std::string WatchedName(std::string_view absoluteName);

// The directories above a watched one are watched as well, and so is what the links on the way lead
// to, so that a change to any part of a name shows. Cost: O(log n) for each name, part of a name
// and event; when a part is replaced, all beneath it are looked at.
class DirectoryWatches {
  public:
    // Why changes of a directory may not be told of: no watches left, a file system without events,
    // no permission to watch it or what is above it.
    enum class Lack { kNone, kWatches, kEvents, kAccess };

    bool isOpen() const { return inotify_.isOpen(); }  // else errno says why not
    int fd() const { return inotify_.fd(); }

    // Watches a directory, whether it is there or not; from the next place() on.
    void add(const std::string& name);
    void remove(const std::string& name);

    // Takes in what has happened. Answers whether anything concerns the watched directories.
    bool read();

    // Whether events were lost since the last call. All names are then looked at by place().
    bool takeOverflow();

    // Watches whatever the names lead to now that may lead elsewhere than before. Changes from here
    // on are told of.
    void place();

    // The watched directories that changed, each once: what they hold, or where their names lead.
    // Those added since the last call are among them, since nobody told what happened before.
    std::vector<std::string> takeChanged();

    // Those whose changes may not be told of, to be looked at now and then, and the first reason
    // met. The place() after a retry() tries to watch them.
    std::vector<std::string> unwatched() const;
    bool hasUnwatched() const { return !unwatched_.empty(); }
    bool isUnwatched(const std::string& name) const;
    Lack firstLack() const { return firstLack_; }
    void retry();

    uint64_t eventCount() const { return eventCount_; }  // those that concerned the directories

  private:
    // A name that leads to a directory: a watched one, one above it, or what a link leads to.
    struct Node {
        const std::string* name = nullptr;  // its key
        Node* above = nullptr;              // null for the root
        Node* target = nullptr;             // when the name is that of a symbolic link
        std::unordered_set<Node*> links;    // whose target it is
        size_t below = 0;                   // nodes right beneath it
        int watch = -1;
        bool there = false;    // the name led to a directory when it was looked at last
        bool pending = true;   // to be looked at; then all nodes beneath it are pending too
        bool watched = false;  // by add()
        Lack lack = Lack::kNone;
    };
    using Nodes = std::map<std::string, Node, std::less<>>;

    void take(const InotifyEvent& event);
    bool takeNameEvent(const InotifyEvent& event, Node& directory);
    void keepQueueShort();
    void suspect(Node& first);
    void markPending(Node& node, std::vector<Node*>& more);
    Node& obtain(const std::string& name);
    void placeWithAllAbove(Node& node, int linksOnTheWay);
    void placeOne(Node& node, int linksOnTheWay);
    void setTarget(Node& node, int linksOnTheWay);
    void setWatch(Node& node, int watch);
    void noteLack(Node& node);
    bool showsComing(const Node& node) const;
    void eraseUnused(std::string name);

    Inotify inotify_;
    Nodes nodes_;
    std::unordered_map<int, std::unordered_set<Node*>> watches_;  // by number: who watches it
    std::vector<std::string> pending_;
    std::vector<std::string> maybeUnused_;
    std::unordered_set<std::string> changed_;
    std::unordered_set<Node*> unwatched_;  // watched ones that lack something
    Lack firstLack_ = Lack::kNone;
    int endedWatches_ = 0;  // since the queue was read
    bool overflowed_ = false;
    uint64_t eventCount_ = 0;
};
