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
        if (all_ != nullptr) return &all_.get()[static_cast<int>(category)];
        return category == soleCategory_ ? &sole_ : nullptr;
    }
    NameList& listFor(NameCategory category);  // makes it

    uint32_t linkedItems = 0;  // in all lists
    uint32_t pins = 0;         // NameRecordRefs
    const uint32_t hash;       // of the key
    PathNameInfo* nextInChain = nullptr;
    NameTable* table;  // null once taken out of it

  private:
    struct FurtherSpellings : HkAllocated {
        HkVector<HkBlock<char>> texts;
        std::unordered_map<std::string_view, uint32_t, std::hash<std::string_view>, std::equal_to<>,
                           HkAllocator<std::pair<const std::string_view, uint32_t>>>
            indexes;
    };

    PathNameInfo(NameTable& owner, uint32_t hashOfKey) : hash(hashOfKey), table(&owner) {}
    ~PathNameInfo() = default;

    // Behind the object: the key and, when it differs, the first spelling, each with a NUL.
    char* text() { return reinterpret_cast<char*>(this + 1); }
    const char* text() const { return reinterpret_cast<const char*>(this + 1); }

    NameList sole_;
    HkBlock<NameList> all_;
    std::unique_ptr<FurtherSpellings> further_;
    uint32_t keyLength_ = 0;
    NameCategory soleCategory_ = NameCategory::kFileInPathDir;
    bool firstSpellingIsKey_ = true;
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
