// What the model's directories hold, and when they are read.
#pragma once

#include <memory>
#include <set>

#include "model/disk.h"

struct Node : std::enable_shared_from_this<Node> {
    using Ptr = std::shared_ptr<Node>;
    enum Kind { kFile, kPackage, kClass, kPrivate, kPlain, kTop };  // kTop: stands on the path
    enum State { kNeverRead, kRead, kFrozen, kToBeTested, kChanged };

    Kind kind = kTop;
    std::string leaf, base, full;  // name on disk, as searches see it, with all above
    std::optional<std::string> extension;
    Node *parent = nullptr, *top = this;
    int depth = 0;    // steps from what holds it to the directory of the path
    long linked = 0;  // later items are larger
    bool alive = true, confirmed = true;
    State state = kNeverRead;
    long stamp = 0;
    bool stampIsNew = false, underRoot = false;
    std::vector<Ptr> kids[kTop];  // by kind; one private directory at most

    bool isSpecial() const { return kind == kPackage || kind == kClass || kind == kPrivate; }
    const Node& holder() const { return parent != nullptr ? *parent : *this; }
    int category() const {  // as searches number the places where a name can stand
        const bool inPath = depth == 0;
        const int places[] = {inPath ? 0 : parent->kind == kPrivate ? 1 : 2,
                              inPath ? 5 : 8,
                              inPath ? 6 : 9,
                              4,
                              3,
                              10};
        return places[kind];
    }
    std::vector<Ptr> specials() const {
        std::vector<Ptr> all;
        for (const Kind each : {kPackage, kClass, kPrivate})
            all.insert(all.end(), kids[each].begin(), kids[each].end());
        return all;
    }
};

class Contents : protected Disk {
  protected:
    using Disk::Disk;

    void tell(int event, const Node* dir) {
        const std::string what = std::to_string(event) + (dir != nullptr ? " " + dir->full : "");
        for (const std::string& listener : listeners) {
            if (listener != "-") note(listener + what);
        }
    }

    void kill(Node& node) {
        ++version;
        node.alive = false;
        clear(node);
    }
    void clear(Node& dir) {
        for (auto& list : dir.kids) {
            for (const Node::Ptr& kid : list) kill(*kid);
            list.clear();
        }
    }

    // A file that nobody has called one is asked about once; what became a directory is gone.
    bool confirm(Node& item) {
        if (item.kind != Node::kFile || item.confirmed) return true;
        if (dry) return !host.isDirectory(item.full);
        item.confirmed = !isDirectory(item.full);
        if (item.confirmed) return true;
        markChanged(*item.parent);
        kill(item);
        std::erase_if(item.parent->kids[Node::kFile],
                      [&](const Node::Ptr& kid) { return kid.get() == &item; });
        return false;
    }

    // Reads the directory for the first time, or again, into what it holds.
    void read(Node& dir, bool frozen, bool again = false) {
        const Node::State before = dir.state;
        if (!again) readStamp(dir);
        if (again && !dir.stampIsNew) hasChanged(dir);
        dir.state = before;
        dir.stampIsNew = false;
        std::set<Node*> stale;
        for (const auto& list : dir.kids) {
            for (const Node::Ptr& kid : list) stale.insert(kid.get());
        }
        const bool hidden = hidesCurrent && Same(dir.full, tops[0]->full, caseSensitive);
        for (const Entry& entry : hidden ? std::vector<Entry>() : listing(dir.full)) {
            const auto [kind, confirmed] = classify(dir, entry);
            Node* known = nullptr;
            // The one private directory is known by its kind, whatever its spelling has become.
            for (const Node::Ptr& kid : dir.kids[kind]) {
                const bool isIt = kid->leaf == entry.name || kind == Node::kPrivate;
                if (again && isIt) known = kid.get();
            }
            stale.erase(known);
            Node* const kid = known == nullptr ? make(dir, entry.name, kind, confirmed) : nullptr;
            if (kid == nullptr || !kid->isSpecial()) continue;
            read(*kid, frozen);
            tell(vpEventDirAdded, kid);
        }
        for (auto& list : dir.kids) {
            std::erase_if(list, [&](const Node::Ptr& kid) {
                const bool isGone = stale.count(kid.get()) != 0;
                if (isGone) kill(*kid);
                return isGone;
            });
        }
        if (again) tell(vpEventDirReread, &dir);
        dir.state = frozen ? Node::kFrozen : Node::kRead;
    }

    static bool markChanged(Node& dir) {
        const bool waiting = dir.state == Node::kToBeTested;
        if (waiting || dir.state == Node::kRead) dir.state = Node::kChanged;
        return waiting;
    }

    // False when what lies beneath is left alone too.
    bool refreshOne(Node& dir, int type) {
        const bool wasFrozen = dir.state == Node::kFrozen;
        if (dir.state != Node::kChanged) {
            if (type <= vpRefreshIfChanged && wasFrozen) return false;
            if (type <= vpRefreshIfChanged && !hasChanged(dir)) return true;
            if (type == vpRefreshUnlessFrozen && wasFrozen) return true;
            if (type > vpRefreshAlways) return true;
        }
        dir.state = Node::kChanged;
        read(dir, dir.top->underRoot, true);
        if (wasFrozen) dir.state = Node::kFrozen;
        return true;
    }
    void refresh(Node& dir, int type) {
        if (!refreshOne(dir, type)) return;
        for (const Node::Ptr& kid : dir.specials()) refresh(*kid, type);
    }

    void freeze(Node& dir) {
        const bool isKnown = dir.state == Node::kFrozen || dir.state == Node::kRead;
        if (!isKnown) refreshOne(dir, vpRefreshIfChanged);
        dir.state = Node::kFrozen;
        for (const Node::Ptr& kid : dir.specials()) freeze(*kid);
    }
    void unfreeze(Node& dir) {
        if (dir.state == Node::kFrozen) {
            dir.state = Node::kToBeTested;
            readStamp(dir);
        }
        for (const Node::Ptr& kid : dir.specials()) unfreeze(*kid);
    }

    // A relative directory leads elsewhere: all of it is read anew, and stays frozen where it was.
    void revalidate(Node& top) {
        if (isDirectory(top.full)) readStamp(top);
        top.stampIsNew = false;
        std::vector<Node::Ptr> frozen, all = {top.shared_from_this()};
        for (size_t at = 0; at < all.size(); ++at) {
            const std::vector<Node::Ptr> beneath = all[at]->specials();
            all.insert(all.end(), beneath.begin(), beneath.end());
            if (all[at]->state == Node::kFrozen) frozen.push_back(all[at]);
            all[at]->state = Node::kChanged;
        }
        refresh(top, vpRefreshIfChanged);
        for (const Node::Ptr& dir : frozen) dir->state = Node::kFrozen;
    }

    // What a cache file answers of a directory, in the order of the file.
    void writeCache(Node& dir) {
        std::vector<Entry>& entries = (*written)[dir.full];
        const bool isPackage = dir.kind == Node::kPackage;
        const Node::Kind first = isPackage ? Node::kPackage : Node::kClass;
        const Node::Kind second = isPackage ? Node::kClass : Node::kPackage;
        for (const auto kind : {first, second, Node::kPrivate, Node::kFile, Node::kPlain}) {
            const std::vector<Node::Ptr> kids = dir.kids[kind];
            for (const Node::Ptr& kid : kids) {
                if (kid->isSpecial()) writeCache(*kid);
                if (confirm(*kid))
                    entries.push_back({kid->leaf, kind == Node::kFile ? 0x8000U : 0x4000U});
            }
        }
    }

    long links = 0, version = 0;  // of items ever made; of all that searches go through
    std::vector<Node::Ptr> tops;  // the current directory first
    bool caseSensitive = true, hidesCurrent = false;
    std::vector<std::string> listeners;  // their marks; "-" where none is

  private:
    std::pair<Node::Kind, bool> classify(const Node& dir, const Entry& entry) {
        const bool isDir = (entry.word & 0x4000U) != 0;
        if (!isDir && (entry.word & 0x8000U) != 0) return {Node::kFile, true};
        if (!IsMarked(entry.name) && !IsPrivate(entry.name))
            return {isDir ? Node::kPlain : Node::kFile, isDir};
        if (!isDirectory(dir.full + "/" + entry.name)) return {Node::kFile, false};
        const Node::Kind marked = entry.name[0] == '@' ? Node::kClass : Node::kPackage;
        return {IsMarked(entry.name) ? marked : Node::kPrivate, true};
    }

    // A new child; null where the directory holds none of its kind.
    Node* make(Node& dir, const std::string& leaf, Node::Kind kind, bool confirmed) {
        const bool inPackage = dir.kind == Node::kPackage, inTop = dir.kind == Node::kTop;
        const bool takesMarked = inTop || inPackage;
        if (kind == Node::kPlain && !inTop) return nullptr;
        if (kind == Node::kPrivate && dir.kind == Node::kPrivate) return nullptr;
        if ((kind == Node::kClass || kind == Node::kPackage) && !takesMarked) return nullptr;
        const auto made = std::make_shared<Node>();
        made->kind = kind;
        made->leaf = leaf;
        made->base = kind == Node::kClass || kind == Node::kPackage ? leaf.substr(1) : leaf;
        made->full = dir.full + "/" + leaf;
        const size_t dot = leaf.rfind('.');
        if (kind == Node::kFile && dot != leaf.npos) {
            made->base = leaf.substr(0, dot);
            made->extension = leaf.substr(dot + 1);
        }
        made->confirmed = confirmed;
        made->parent = &dir;
        made->top = dir.top;
        made->depth = inTop ? 0 : dir.depth + 1;
        made->linked = ++links;
        if (kind == Node::kPrivate && !dir.kids[kind].empty()) {
            kill(*dir.kids[kind][0]);
            dir.kids[kind].clear();
        }
        dir.kids[kind].push_back(made);
        return made.get();
    }

    void readStamp(Node& dir) {
        dir.stamp = time(dir.full);
        if (dir.stamp >= host.now - 1) dir.stamp = host.now - 2;
    }

    bool hasChanged(Node& dir) {
        const long now = time(dir.full);
        const bool isOther = now != dir.stamp;
        if (!isOther && dir.state != Node::kChanged) {
            dir.state = Node::kRead;
            return false;
        }
        if (isOther && (now == host.now || now == host.now - 1)) return true;
        dir.stampIsNew = now != 0 && isOther;
        if (dir.stampIsNew) dir.stamp = now;
        dir.state = Node::kChanged;
        return true;
    }
};
