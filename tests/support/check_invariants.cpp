#include "support/check_invariants.h"

#include <set>

#include "dir/full_name.h"
#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"

namespace {

class Checker {
  public:
    explicit Checker(PathMgr& path) : path_(path) {}

    std::string run() {
        walkPath();
        walkTable();
        for (const PathItemInfo* item : linked_) {
            if (listed_.count(item) == 0) complain("in a directory but in no list", *item);
        }
        return wrong_;
    }

  private:
    void complain(const std::string& what, const PathItemInfo& item) {
        wrong_ += what + ": " + FullName(item).text() + "\n";
    }

    void expect(bool holds, const char* what, const PathItemInfo& item) {
        if (!holds) complain(what, item);
    }

    void walkPath() {
        const PathOrder& order = path_.contents.directories;
        size_t count = 0;
        int64_t last = PathDirItemInfo::kOrderOfCurrent;
        for (PathDirItemInfo* top = order.first(); top != nullptr; top = order.nextAfter(*top)) {
            const bool current = top->slot == PathDirItemInfo::Slot::kCurrent;
            if (!current) ++count;
            expect(current == (top == order.current()), "wrong slot", *top);
            expect(current || top->order > last, "out of path order", *top);
            expect(top->topDir() == top && top->parent == nullptr, "is not its own top", *top);
            last = top->order;
            linked_.insert(top);
            for (PathAllDirItemInfo* at = top; at != nullptr; at = NextInTree(*at, *top)) {
                checkDirectory(*at);
            }
        }
        if (count + 1 != order.count()) wrong_ += "count of directories is wrong\n";
    }

    void checkDirectory(PathAllDirItemInfo& directory) {
        for (uint8_t l = 0; l < kChildLists; ++l) {
            const auto list = static_cast<ChildList>(l);
            for (size_t i = 0; i < ChildCount(directory, list); ++i) {
                checkChild(directory, *ChildAt(directory, list, i), list, i);
            }
        }
    }

    void checkChild(PathAllDirItemInfo& directory, PathItemInfo& child, ChildList list, size_t i) {
        expect(child.parent == &directory, "has another parent", child);
        expect(child.has(PathItemInfo::kOwned), "is not owned", child);
        const bool inPathDir = directory.dirKind == vpDirTypePath;
        expect(child.has(PathItemInfo::kInPathDirectory) == inPathDir, "wrong place flag", child);
        if (PathAllDirItemInfo* const special = child.asDirectory()) {
            expect(special->top == directory.top, "has another top", child);
            expect(list == ChildList::kPrivate || special->siblingIndex == i, "wrong sibling index",
                   child);
        }
        // A file that became a directory stays in its list, unlinked, until the next re-read.
        if (child.has(PathItemInfo::kLinked)) linked_.insert(&child);
    }

    void walkTable() {
        const NameTable& table = path_.nameTable;
        uint32_t records = 0;
        for (uint32_t i = 0; i < table.bucketCount(); ++i) {
            for (PathNameInfo* record = table.bucket(i); record != nullptr;
                 record = record->nextInChain) {
                ++records;
                if (record->hash % table.bucketCount() != i) wrong_ += "record in wrong bucket\n";
                checkRecord(*record);
            }
        }
        if (records != table.size()) wrong_ += "count of records is wrong\n";
    }

    void checkRecord(PathNameInfo& record) {
        uint32_t items = 0;
        for (int c = 0; c < kNameCategories; ++c) {
            const auto category = static_cast<NameCategory>(c);
            NameList* const list = record.list(category);
            if (list == nullptr || list->empty()) continue;
            checkBackLinks(*list->head());
            const PathItemInfo* previous = nullptr;
            for (PathItemInfo* item = list->first(path_.orderEpoch()); item != nullptr;
                 item = item->next) {
                ++items;
                expect(listed_.insert(item).second, "is in two lists", *item);
                expect(linked_.count(item) != 0, "listed but in no directory", *item);
                expect(item->category() == category, "in the wrong list", *item);
                expect(item->nameRecord == &record, "has another record", *item);
                expect(!item->has(PathItemInfo::kUnordered), "unordered after ordering", *item);
                expect(previous == nullptr || previous->topDir()->order <= item->topDir()->order,
                       "list out of path order", *item);
                previous = item;
            }
            checkBackLinks(*list->head());
        }
        if (items != record.linkedItems) wrong_ += "count of items of a record is wrong\n";
        if (items == 0 && record.pins == 0) wrong_ += "empty record\n";
    }

    void checkBackLinks(const PathItemInfo& head) {
        const PathItemInfo* last = &head;
        for (; last->next != nullptr; last = last->next) {
            expect(last->next->prev == last, "wrong back link", *last->next);
        }
        expect(head.prev == last, "head does not know the tail", head);
    }

    PathMgr& path_;
    std::set<const PathItemInfo*> linked_;
    std::set<const PathItemInfo*> listed_;
    std::string wrong_;
};

}  // namespace

std::string CheckInvariants(PathMgr& path) { return path.valid ? Checker(path).run() : ""; }
