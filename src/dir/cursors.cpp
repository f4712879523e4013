#include "dir/cursors.h"

#include "dir/dir_item.h"
#include "dir/name_record.h"
#include "path/path_mgr.h"

Cursor::Cursor(CursorList& list) : list_(list), next_(list.first_) {
    if (next_ != nullptr) next_->prev_ = this;
    list.first_ = this;
}

Cursor::~Cursor() {
    (prev_ != nullptr ? prev_->next_ : list_.first_) = next_;
    if (next_ != nullptr) next_->prev_ = prev_;
}

void CursorList::itemUnlinked(PathItemInfo& item) {
    for (Cursor* cursor = first_; cursor != nullptr; cursor = cursor->next_) {
        cursor->itemUnlinked(item);
    }
}

void CursorList::contentsCleared(const PathAllDirItemInfo& directory) {
    for (Cursor* cursor = first_; cursor != nullptr; cursor = cursor->next_) {
        for (uint8_t list = 0; list < kChildLists; ++list) {
            size_t* const place = cursor->placeIn(directory, static_cast<ChildList>(list));
            if (place != nullptr) *place = 0;
        }
    }
}

NameCursor::NameCursor(PathMgr& path, PathNameInfo& record)
    : Cursor(path.cursors), path_(path), record_(record), category_() {}

void NameCursor::start(NameCategory category) {
    category_ = category;
    at_.reset();
}

void NameCursor::startAfter(PathItemInfo& item) { at_.reset(&item); }

PathItemInfo* NameCursor::next() {
    NameList* const list = record_.list(category_);
    if (list == nullptr) return nullptr;
    PathItemInfo* const first = list->first(path_.orderEpoch());
    PathItemInfo* const following = at_ ? at_->next : first;
    if (following != nullptr) at_.reset(following);
    return following;
}

void NameCursor::itemUnlinked(PathItemInfo& item) {
    if (at_.get() == &item) at_.reset(record_.list(category_)->before(item));
}

ChildCursor::ChildCursor(PathMgr& path) : Cursor(path.cursors) {}

void ChildCursor::start(PathAllDirItemInfo& directory, ChildList list) {
    directory_.reset(&directory);
    list_ = list;
    place_ = 0;
}

PathItemInfo* ChildCursor::next() {
    while (place_ < ChildCount(*directory_, list_)) {
        PathItemInfo* const child = ChildAt(*directory_, list_, place_++);
        if (child->has(PathItemInfo::kLinked)) return child;
    }
    return nullptr;
}

PathItemInfo* ChildCursor::next(const PathNameInfo* record) {
    ChildIndex& index = directory_->childIndex;
    size_t place = index.next(*directory_, record, list_, place_);
    for (; place != ChildIndex::kNone; place = index.next(*directory_, record, list_, place_)) {
        place_ = place + 1;
        PathItemInfo* const child = ChildAt(*directory_, list_, place);
        if (child->has(PathItemInfo::kLinked) && child->nameRecord == record) return child;
    }
    return nullptr;
}

size_t* ChildCursor::placeIn(const PathAllDirItemInfo& directory, ChildList list) {
    return directory_.get() == &directory && list_ == list ? &place_ : nullptr;
}
