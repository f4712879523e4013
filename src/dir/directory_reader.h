// Reading a directory for the first time: its listing becomes items.
#pragma once

#include "dir/item_ref.h"
#include "dir/listing_reader.h"

class PathAllDirItemInfo;

// A read or re-read of one directory under way. Callbacks and listeners may do anything meanwhile,
// also clear the directory or remove its path: what is read goes on only while `current()`.
class ReadInProgress {
  public:
    explicit ReadInProgress(PathAllDirItemInfo& directory);
    ReadInProgress(ReadInProgress&&) noexcept = default;
    ReadInProgress& operator=(ReadInProgress&&) noexcept = default;
    ~ReadInProgress() = default;

    PathAllDirItemInfo& directory() const { return *directory_; }
    bool current() const;

    // The read is over: whole, or broken off by an exception, which leaves the directory as read so
    // far and marked changed.
    void finish(uint8_t loadState);
    void breakOff();

  private:
    ItemRef<PathAllDirItemInfo> directory_;
    uint32_t life_;
};

// Makes the item of an entry; null when the directory does not keep entries of that kind. A new
// special directory has not been read yet.
PathItemInfo* MakeChild(PathAllDirItemInfo& directory, const ListingEntry& entry);

// Reads a directory and every special directory in it, depth first. `frozen`: they end frozen.
void ReadDirectory(PathAllDirItemInfo& directory, bool frozen);
