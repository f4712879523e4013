#include "dir/cursors.h"

#include <algorithm>

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

NameCursor::NameCursor(PathMgr& path, PathNameInfo& record)
    : Cursor(path.cursors), path_(path), record_(record), category_() {}

void NameCursor::start(NameCategory category) {
    category_ = category;
    at_.reset();
}

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
    const auto entries = directory_->childIndex.find(*directory_, record);
    const auto from = std::partition_point(entries.begin(), entries.end(), [this](const auto& e) {
        return e.list != list_ ? e.list < list_ : e.index < place_;
    });
    for (auto entry = from; entry != entries.end() && entry->list == list_; ++entry) {
        place_ = entry->index + size_t{1};
        PathItemInfo* const child = ChildAt(*directory_, list_, entry->index);
        if (child->has(PathItemInfo::kLinked) && child->nameRecord == record) return child;
    }
    return nullptr;
}

size_t* ChildCursor::placeIn(const PathAllDirItemInfo& directory, ChildList list) {
    return directory_.get() == &directory && list_ == list ? &place_ : nullptr;
}
