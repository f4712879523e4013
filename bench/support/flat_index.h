// The floor for look-ups: an index that can do nothing but look up.
//
// One open-addressing table, at most half full, over records in one block: a name is lower-cased
// and hashed eight bytes at a time, the slot holds the whole hash, the record's head stands in
// front of the file's name, and the full name is two copies. It cannot remove, refresh, order or
// enumerate anything. Names have no directory part and no extension of their own.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

class FlatIndex {
  public:
    explicit FlatIndex(size_t files);

    uint32_t addDirectory(std::string_view name);

    // Files come in order of precedence. A file that is added with a `scope` (not 0) is found under
    // that scope alone.
    void add(uint32_t directory, std::string_view file, uint32_t scope = 0);

    // Writes the full name of the first file of that base name with one of the extensions, and
    // answers the extension's position from 1; 0 when there is none.
    unsigned int find(const char* name, const char** extensions, char* fullName,
                      uint32_t scope = 0) const;

    size_t bytes() const;

  private:
    struct Slot {
        uint32_t hash;
        uint32_t record;  // place in text_; 0: free
    };
    struct Record {     // the file's name follows
        uint32_t next;  // of the same lower-cased name; 0: none
        uint32_t directory;
        uint32_t scope;
        uint16_t baseLength;
        uint16_t length;
    };
    struct Directory {
        uint32_t place;
        uint32_t length;
    };

    const char* nameOf(uint32_t record) const { return text_.data() + record + sizeof(Record); }
    Record recordAt(uint32_t record) const;
    uint32_t slotOf(const struct FlatKey& key, uint32_t scope) const;
    uint32_t appendRecord(const Record& record, std::string_view file);

    std::vector<Slot> slots_;
    std::vector<char> text_;
    std::vector<uint32_t> lastOfSlot_;  // building only: the end of each slot's chain
    std::vector<Directory> directories_;
    std::vector<char> directoryText_;
};
