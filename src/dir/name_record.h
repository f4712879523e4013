// Name records: what a path knows under one name, whatever its case.
//
// A record is a node of the path's name table (dir/name_table.h). It holds the spellings under
// which the name was ever seen, and up to eleven lists of items, one for each category. Most names
// stand in one category only: that list lies in the record, the others are made when a second one
// comes.
//
// Who keeps a record: the items linked in its lists, and the open searches that started from it
// (NameRecordRef). The last of them to let go removes it.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "base/memory.h"
#include "dir/item.h"
#include "dir/name_list.h"

class NameTable;

class PathNameInfo : public HkAllocated {
  public:
    // `key` is `spelling` lower-cased.
    static PathNameInfo* Create(NameTable& table, uint32_t hash, std::string_view key,
                                std::string_view spelling);
    static void Destroy(PathNameInfo* record);

    std::string_view key() const { return {text(), keyLength_}; }

    // The spellings in order of first appearance; each ends with a NUL.
    const char* spelling(uint32_t index) const;
    std::string_view spellingView(uint32_t index) const { return {spelling(index), keyLength_}; }
    uint32_t internSpelling(std::string_view text);

    // The list of a category, null while nothing was ever in it.
    NameList* list(NameCategory category) {
        if (more_ != nullptr && more_->lists != nullptr) {
            return &more_->lists.get()[static_cast<int>(category)];
        }
        return static_cast<uint32_t>(category) == soleCategory_ ? &sole_ : nullptr;
    }
    NameList& listFor(NameCategory category);  // makes it

    PathNameInfo* nextInChain = nullptr;
    const uint32_t hash;  // of the key

  private:
    // What few names have: a second category, a second spelling.
    struct More : HkAllocated {
        HkBlock<NameList> lists;  // one for each category
        HkVector<HkBlock<char>> texts;
        std::unordered_map<std::string_view, uint32_t, std::hash<std::string_view>, std::equal_to<>,
                           HkAllocator<std::pair<const std::string_view, uint32_t>>>
            indexes;
    };

    PathNameInfo(NameTable& owner, uint32_t hashOfKey, std::string_view key, bool spelledAsKey)
        : hash(hashOfKey),
          keyLength_(static_cast<uint32_t>(key.size())),
          table(&owner),
          pins(0),
          soleCategory_(0),
          firstSpellingIsKey_(spelledAsKey) {}
    ~PathNameInfo() = default;

    More& more();

    // Behind the object: the key and, when it differs, the first spelling, each with a NUL.
    char* text() { return reinterpret_cast<char*>(this + 1); }
    const char* text() const { return reinterpret_cast<const char*>(this + 1); }

    uint32_t keyLength_;
    NameList sole_;
    std::unique_ptr<More> more_;

  public:
    NameTable* table;          // null once taken out of it
    uint32_t linkedItems = 0;  // in all lists
    uint32_t pins : 27;        // NameRecordRefs

  private:
    uint32_t soleCategory_ : 4;
    uint32_t firstSpellingIsKey_ : 1;
};

// Keeps a record, though it be empty, for an open search.
class NameRecordRef {
  public:
    NameRecordRef() = default;
    explicit NameRecordRef(PathNameInfo* record);
    ~NameRecordRef();
    NameRecordRef(const NameRecordRef&) = delete;
    NameRecordRef& operator=(const NameRecordRef&) = delete;
    void reset(PathNameInfo* record);
    PathNameInfo* get() const { return record_; }

  private:
    PathNameInfo* record_ = nullptr;
};

// Takes the record out of its table and deletes it when nothing keeps it.
void ReleaseIfEmpty(PathNameInfo& record);
