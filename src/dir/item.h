// Items: what the library knows about the contents of the directories on a path.
//
// Every file, plain subdirectory and directory is one item. Items are reached in two ways:
// downwards through the child lists of each directory, and sideways, by name, through the lists of
// a name record (dir/name_record.h).
//
// Who keeps an item: its owner (the directory that lists it, or the path for its directories, flag
// kOwned), the name list that it is linked into (kLinked), and everyone who counts a reference
// (handles, cursors, readers). The last of the three to let go deletes it. An item that is not
// linked is gone as far as any answer is concerned: its handles are dead, searches pass it over.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/memory.h"

class PathAllDirItemInfo;
class PathDirItemInfo;
class PathMgr;
class PathNameInfo;

// The lists of a name record, one for each place where a name can stand. The numbers are the bits
// of the category masks of searches.
enum class NameCategory : uint8_t {
    kFileInPathDir = 0,
    kFileInPrivateDir = 1,
    kFileElsewhere = 2,  // in a class or package directory
    kSubDirInPathDir = 3,
    kPrivateDir = 4,
    kPackageInPathDir = 5,
    kClassInPathDir = 6,
    kSubDirElsewhere = 7,
    kPackageElsewhere = 8,
    kClassElsewhere = 9,
    kPathDir = 10,
};
inline constexpr int kNameCategories = 11;

class PathItemInfo : public HkAllocated {
  public:
    enum Flags : uint8_t {
        kLinked = 1,           // alive, and in a list of its name record when it has a name
        kInPathDirectory = 2,  // lies directly in a directory of the path
        kStale = 4,            // not yet named again by the listing that is being merged
        kKindConfirmed = 8,    // the kind is known from the host, not from the name alone
        kOwned = 16,           // its owner's list holds it
        kUnordered = 32,       // linked at the front of its name list since that was last ordered
    };
    static constexpr uint32_t kNoSpelling = 0xFFFFFFFF;

    PathItemInfo(const PathItemInfo&) = delete;
    PathItemInfo& operator=(const PathItemInfo&) = delete;
    virtual ~PathItemInfo() = default;

    // The list of the name record that this item belongs to.
    virtual NameCategory category() const = 0;

    // The character that stands before the name on disk ('@', '+'), or 0.
    virtual char mark() const { return '\0'; }

    // A file's extension without its dot, empty when the name ends in a dot; a directory's from the
    // last dot of its name, dot included. Null when there is none.
    virtual const char* getExtension() const = 0;

    virtual bool isFile() const { return false; }
    virtual bool isPlainSubDir() const { return false; }
    virtual PathAllDirItemInfo* asDirectory() { return nullptr; }

    // The exact spelling: a file's without extension, a special directory's without its mark. Only
    // for items that have a name record.
    std::string_view name() const;  // ends with a NUL

    bool has(Flags flag) const { return (itemFlags & flag) != 0; }
    void set(Flags flag) { itemFlags = static_cast<uint8_t>(itemFlags | flag); }
    void clear(Flags flag) { itemFlags = static_cast<uint8_t>(itemFlags & ~flag); }

    // The directory of the path beneath which the item lies, itself for one; null once detached.
    PathDirItemInfo* topDir() const;
    PathMgr* path() const;

    // The directory that holds the item; a directory of the path holds itself. Not once detached.
    PathAllDirItemInfo& holder() const;

    // Interns `text` in the path's name table and links the item at the front of its name list.
    void linkUnderName(PathMgr& owner, std::string_view text);

    // Takes the item out of its name list; the name record goes with its last item. Open cursors
    // that stand on the item step back. The item itself stays as long as it is owned or counted.
    void unlinkFromName();

    // Drops the owner's hold.
    void disown();

    // Deletes the item when nothing keeps it.
    void release();

    PathItemInfo* next = nullptr;  // neighbours in the name list; see dir/name_list.h
    PathItemInfo* prev = nullptr;
    PathAllDirItemInfo* parent = nullptr;  // null for a directory of the path, and once detached
    PathNameInfo* nameRecord = nullptr;    // null while not linked by name
    uint32_t refCount = 0;
    uint32_t spellingIndex = kNoSpelling;
    uint8_t itemFlags = kLinked;

  protected:
    PathItemInfo(PathAllDirItemInfo* container, bool kindConfirmed);
};

class PathFileItemInfo final : public PathItemInfo {
  public:
    // What the host said of the file, or 0 while nobody has asked.
    enum ClassdefState : uint8_t { kUnknown = 0, kClassdef = 1, kNotClassdef = 2 };

    // Makes, names and links the file `fileName` of `directory`.
    static PathFileItemInfo* Create(PathAllDirItemInfo& directory, std::string_view fileName,
                                    bool kindConfirmed, ClassdefState classdef);

    NameCategory category() const override;
    const char* getExtension() const override;
    bool isFile() const override { return true; }

    ClassdefState classdefState;

  private:
    // A short extension, which may be empty, is kept here, a long one behind the object.
    static constexpr size_t kShortExtension = 4;
    enum ExtensionForm : uint8_t { kNoExtension, kShort, kLong };

    PathFileItemInfo(PathAllDirItemInfo& directory, bool kindConfirmed, ClassdefState classdef,
                     const char* extension, size_t extensionLength);

    ExtensionForm extensionForm_;
    char shortExtension_[kShortExtension + 1];
};

// An ordinary subdirectory is only a name: its contents are never read.
class PathSubDirItemInfo final : public PathItemInfo {
  public:
    static PathSubDirItemInfo* Create(PathAllDirItemInfo& directory, std::string_view name,
                                      bool kindConfirmed);
    NameCategory category() const override;
    const char* getExtension() const override;
    bool isPlainSubDir() const override { return true; }

  private:
    using PathItemInfo::PathItemInfo;
};
