// Cursors: where open searches stand in the lists of items. The path knows them all, so that they
// step aside when an item under them is unlinked and keep count when a directory's list is
// compacted. Without an open search none of this costs anything.
#pragma once

#include <algorithm>
#include <cstddef>

#include "dir/child_index.h"
#include "dir/item_ref.h"

class PathAllDirItemInfo;
class PathItemInfo;
class PathMgr;
class PathNameInfo;
enum class NameCategory : uint8_t;

class Cursor;

// The open cursors of one path.
class CursorList {
  public:
    bool empty() const { return first_ == nullptr; }
    void itemUnlinked(PathItemInfo& item);

    // Every child of the directory has gone.
    void contentsCleared(const PathAllDirItemInfo& directory);

    // `removed(i)` says whether the child at place i goes. Called before the children move.
    template <class Removed>
    void childrenRemoved(const PathAllDirItemInfo& directory, ChildList list, Removed removed);

  private:
    friend class Cursor;
    Cursor* first_ = nullptr;
};

class Cursor {
  public:
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

  protected:
    explicit Cursor(CursorList& list);
    ~Cursor();

  private:
    friend class CursorList;
    virtual void itemUnlinked(PathItemInfo&) {}
    // Where the cursor stands in that list, or null when it stands elsewhere.
    virtual size_t* placeIn(const PathAllDirItemInfo&, ChildList) { return nullptr; }

    CursorList& list_;
    Cursor* next_;
    Cursor* prev_ = nullptr;
};

// A place in the lists of a name record.
class NameCursor : public Cursor {
  public:
    NameCursor(PathMgr& path, PathNameInfo& record);

    void start(NameCategory category);    // before the first item of that list
    void startAfter(PathItemInfo& item);  // of the list that was started
    PathItemInfo* next();                 // in path order; null at the end

  private:
    void itemUnlinked(PathItemInfo& item) override;

    PathMgr& path_;
    PathNameInfo& record_;
    NameCategory category_;
    ItemRef<PathItemInfo> at_;  // the item last answered; null before the first
};

// A place in one of the lists of a directory.
class ChildCursor : public Cursor {
  public:
    explicit ChildCursor(PathMgr& path);

    void start(PathAllDirItemInfo& directory, ChildList list);
    PathItemInfo* next();                            // every live child
    PathItemInfo* next(const PathNameInfo* record);  // those under `record`
    PathAllDirItemInfo* directory() const { return directory_.get(); }

  private:
    size_t* placeIn(const PathAllDirItemInfo& directory, ChildList list) override;

    ItemRef<PathAllDirItemInfo> directory_;
    ChildList list_ = ChildList::kFiles;
    size_t place_ = 0;  // the next child's
};

template <class Removed>
void CursorList::childrenRemoved(const PathAllDirItemInfo& directory, ChildList list,
                                 Removed removed) {
    for (Cursor* cursor = first_; cursor != nullptr; cursor = cursor->next_) {
        size_t* const place = cursor->placeIn(directory, list);
        if (place == nullptr) continue;
        const size_t end = std::min(*place, ChildCount(directory, list));
        size_t before = 0;
        for (size_t i = 0; i < end; ++i) before += removed(i) ? 1 : 0;
        *place -= before;
    }
}
