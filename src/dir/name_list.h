// One list of a name record: the items of one category under one name, in path order.
//
// Ordering is lazy. A new item is put in front and counted as unordered; the list is put in order
// when it is next read. The unordered front is sorted on its own and merged in from whichever end
// is nearer, so that adding n directories that all hold a name costs O(n log n) in all, at either
// end of the path and with a search between any two of them. When directories that stay on a path
// change places the whole list is sorted again (`epoch`).
//
// The list is doubly linked through PathItemInfo::next and prev; the head's prev is the tail, the
// tail's next is null.
#pragma once

#include <cstdint>

class PathItemInfo;

class NameList {
  public:
    // The list as it stands, ordered or not.
    PathItemInfo* head() const { return head_; }
    bool empty() const { return head_ == nullptr; }

    // The first item in path order; `epoch` is the path's (PathMgr::orderEpoch).
    PathItemInfo* first(uint32_t epoch) {
        if (unordered_ != 0 || epoch_ != epoch) order(epoch);
        return head_;
    }

    void pushFront(PathItemInfo& item, uint32_t epoch);  // O(1)
    void remove(PathItemInfo& item);                     // O(1)

    // The item before `item`, null when it is the first.
    PathItemInfo* before(const PathItemInfo& item) const;

  private:
    void order(uint32_t epoch);
    void sortAll();
    void mergeFront(PathItemInfo* front);

    PathItemInfo* head_ = nullptr;
    uint32_t unordered_ = 0;  // how many items at the front carry kUnordered
    uint32_t epoch_ = 0;      // the path's epoch when the list was last in order
};
