#include "dir/name_list.h"

#include <utility>

#include "dir/item.h"
#include "dir/path_dir_item.h"

namespace {

int64_t OrderOf(const PathItemInfo& item) { return item.topDir()->order; }

// Merges two ascending chains (linked by next alone); items of `a` come before their equals in `b`.
PathItemInfo* MergeChains(PathItemInfo* a, PathItemInfo* b) {
    PathItemInfo* head = nullptr;
    PathItemInfo** end = &head;
    while (a != nullptr && b != nullptr) {
        PathItemInfo*& from = OrderOf(*b) < OrderOf(*a) ? b : a;
        *end = from;
        end = &from->next;
        from = from->next;
    }
    *end = a != nullptr ? a : b;
    return head;
}

// Stable merge sort of a chain, bottom up: bins[i] holds a sorted chain of 2^i items that stand
// before all later ones.
PathItemInfo* SortChain(PathItemInfo* chain) {
    constexpr int kBins = 40;
    PathItemInfo* bins[kBins] = {};
    while (chain != nullptr) {
        PathItemInfo* run = chain;
        chain = chain->next;
        run->next = nullptr;
        int bin = 0;
        for (; bins[bin] != nullptr; ++bin) {
            run = MergeChains(bins[bin], run);
            bins[bin] = nullptr;
        }
        bins[bin] = run;
    }
    PathItemInfo* sorted = nullptr;
    for (PathItemInfo* bin : bins) {
        if (bin != nullptr) sorted = MergeChains(bin, sorted);
    }
    return sorted;
}

bool IsAscending(const PathItemInfo* chain) {
    for (; chain->next != nullptr; chain = chain->next) {
        if (OrderOf(*chain->next) < OrderOf(*chain)) return false;
    }
    return true;
}

// Restores the prev links behind `first`; answers the last item.
PathItemInfo* LinkBack(PathItemInfo* first) {
    PathItemInfo* last = first;
    for (; last->next != nullptr; last = last->next) last->next->prev = last;
    return last;
}

void Join(PathItemInfo& left, PathItemInfo& right) {
    left.next = &right;
    right.prev = &left;
}

}  // namespace

void NameList::pushFront(PathItemInfo& item, uint32_t epoch) {
    item.next = head_;
    if (head_ == nullptr) {
        item.prev = &item;
        epoch_ = epoch;
    } else {
        item.prev = head_->prev;
        head_->prev = &item;
        item.set(PathItemInfo::kUnordered);
        ++unordered_;
    }
    head_ = &item;
}

void NameList::remove(PathItemInfo& item) {
    if (item.has(PathItemInfo::kUnordered)) {
        item.clear(PathItemInfo::kUnordered);
        --unordered_;
    }
    if (&item == head_) {
        head_ = item.next;
    } else {
        item.prev->next = item.next;
    }
    if (item.next != nullptr) {
        item.next->prev = item.prev;
    } else if (head_ != nullptr) {
        head_->prev = item.prev;  // the tail went
    }
    item.next = nullptr;
    item.prev = nullptr;
}

PathItemInfo* NameList::before(const PathItemInfo& item) const {
    return &item == head_ ? nullptr : item.prev;
}

void NameList::order(uint32_t epoch) {
    const bool moved = std::exchange(epoch_, epoch) != epoch;
    PathItemInfo* const tail = head_ != nullptr ? head_->prev : nullptr;
    PathItemInfo* rest = head_;
    PathItemInfo* frontTail = nullptr;
    for (; unordered_ != 0 && rest != nullptr; --unordered_) {
        rest->clear(PathItemInfo::kUnordered);
        frontTail = rest;
        rest = rest->next;
    }
    if (moved) {
        sortAll();
    } else if (frontTail != nullptr) {
        frontTail->next = nullptr;
        PathItemInfo* const front = std::exchange(head_, rest);
        if (rest != nullptr) rest->prev = tail;
        mergeFront(SortChain(front));
    }
}

void NameList::sortAll() {
    if (head_ == nullptr || IsAscending(head_)) return;
    head_ = SortChain(head_);
    head_->prev = LinkBack(head_);
}

// Merges the sorted chain `front` into the list, which is in order. The search for its place starts
// from both ends at once: new items mostly belong at one of them.
void NameList::mergeFront(PathItemInfo* front) {
    PathItemInfo* const frontTail = LinkBack(front);
    if (head_ == nullptr) {
        head_ = front;
        head_->prev = frontTail;
        return;
    }
    const int64_t least = OrderOf(*front);
    const int64_t greatest = OrderOf(*frontTail);
    // Where the chain would go in one piece: before the first item that is not less than its
    // greatest, or after the last item that is less than its least.
    PathItemInfo* fromHead = head_;
    PathItemInfo* fromTail = head_->prev;
    while (OrderOf(*fromHead) < greatest && OrderOf(*fromTail) >= least &&
           fromHead != head_->prev && fromTail != head_) {
        fromHead = fromHead->next;
        fromTail = fromTail->prev;
    }
    PathItemInfo* const tail = head_->prev;
    if (OrderOf(*fromTail) < least) {  // all of it lies behind fromTail: merge with what follows
        PathItemInfo* const follows = fromTail->next;
        PathItemInfo* const merged = follows == nullptr ? front : MergeChains(front, follows);
        Join(*fromTail, *merged);
        head_->prev = LinkBack(merged);
        return;
    }
    // Otherwise everything from fromHead on, when it is not less, stays; merge with what precedes.
    PathItemInfo* stays = OrderOf(*fromHead) >= greatest ? fromHead : nullptr;
    if (stays == head_) {
        Join(*frontTail, *head_);
        head_ = front;
        head_->prev = tail;
        return;
    }
    if (stays != nullptr) stays->prev->next = nullptr;
    head_->prev = nullptr;
    head_ = MergeChains(front, head_);
    PathItemInfo* const last = LinkBack(head_);
    if (stays != nullptr) {
        Join(*last, *stays);
        head_->prev = tail;
    } else {
        head_->prev = last;
    }
}
