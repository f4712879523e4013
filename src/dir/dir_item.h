// Directories whose contents are held: those on a path (dir/path_dir_item.h) and the special ones
// inside them, `private`, class (@Name) and package (+name) directories.
#pragma once

#include "dir/child_index.h"
#include "dir/item.h"
#include "dir/name_record.h"

class PathClassDirItemInfo;
class PathPackageDirItemInfo;
class PathPrivateDirItemInfo;

class PathAllDirItemInfo : public PathItemInfo {
  public:
    enum LoadState : uint8_t {
        kNeverRead = 0,
        kRead = 1,        // up to date as far as known
        kFrozen = 2,      // never tested for changes, never read again by an ordinary refresh
        kToBeTested = 3,  // read; a refresh is to test it
        kChanged = 4,     // to be read again by the next refresh
    };
    enum DirFlags : uint8_t {
        kChangedWithNewStamp = 1,  // a change was detected together with its time stamp
        kReading = 2,              // a read or re-read is under way
        kMarkedWhileReading = 4,   // and was marked changed, which it stays unless it ends frozen
        kToBeReplaced = 8,         // vpReplacePath has not yet met the directory in the new path
        kToBeReadAgain = 16,       // as kMarkedWhileReading, though it end frozen
        kMayHoldTwins = 32,        // two children of a list may have the same name
    };

    ~PathAllDirItemInfo() override;

    const char* getExtension() const override;
    PathAllDirItemInfo* asDirectory() override { return this; }

    // The directory's kind as vpGetDirType answers it.
    virtual int kind() const { return dirKind; }

    bool isFrozen() const { return dirKind != 0 && loadState == kFrozen; }
    bool hasDirFlag(DirFlags flag) const { return (dirFlags & flag) != 0; }
    void setDirFlag(DirFlags flag) { dirFlags = static_cast<uint8_t>(dirFlags | flag); }
    void clearDirFlag(DirFlags flag) { dirFlags = static_cast<uint8_t>(dirFlags & ~flag); }

    // Marks a directory that was read as changed; what is marked while it is being read stays
    // marked after it. One that is frozen, or ends so, keeps its state. Answers whether it was
    // waiting to be tested.
    bool markChanged();

    // The last component of the name, without the mark of a class or package directory. Lives as
    // long as the item, also after it was detached.
    virtual const char* baseName() const;

    // Appends `item`, which has just been made for this directory, to the list that holds its kind.
    void adopt(PathFileItemInfo& item);
    void adopt(PathSubDirItemInfo& item);
    void adopt(PathClassDirItemInfo& item);
    void adopt(PathPackageDirItemInfo& item);
    void adopt(PathPrivateDirItemInfo& item);  // lets the one that was there go

    // Unlinks and lets go of everything beneath the directory. Neither depth nor breadth costs
    // stack.
    void clearContents();

    // Keeps the full name for the handles that remain, then unlinks the directory. Its contents
    // have been cleared.
    void detach();

    HkVector<PathPackageDirItemInfo*> packageDirs;  // all lists in listing order
    HkVector<PathClassDirItemInfo*> classDirs;
    PathPrivateDirItemInfo* privateDir = nullptr;
    HkVector<PathFileItemInfo*> files;
    HkVector<PathSubDirItemInfo*> subDirs;
    ChildIndex childIndex;         // by name; made when a search first asks this directory
    HkBlock<char> detachedName;    // the full name, once detached under a handle
    NameRecordRef detachedRecord;  // then keeps the text of the name
    uint32_t life = 0;             // counts how often the contents were cleared
    uint32_t siblingIndex = 0;     // place in the parent's list of package or class directories

    // What look-ups and refreshes read comes last, next to what they read of a PathDirItemInfo and
    // to its name: they miss the caches here.
    int64_t timeStamp = 0;           // the recorded modification time, whole seconds
    PathDirItemInfo* top = nullptr;  // null once detached
    uint32_t changeCount = 0;        // detected changes
    uint8_t dirKind;                 // a vpDirType; 1 is told from 2 by kind()
    uint8_t loadState = kNeverRead;
    uint8_t stampMode = 0;  // 1 after a stamp was read at load, 5 while it is being read
    uint8_t dirFlags = 0;

  protected:
    PathAllDirItemInfo(PathAllDirItemInfo* container, bool kindConfirmed, int kindOfDir);

  private:
    PathAllDirItemInfo* lastSpecialChild() const;
    void dropLastSpecialChild();
    void dropLeaves();
};

class PathPrivateDirItemInfo final : public PathAllDirItemInfo {
  public:
    static PathPrivateDirItemInfo* Create(PathAllDirItemInfo& directory, std::string_view name,
                                          bool kindConfirmed);
    NameCategory category() const override { return NameCategory::kPrivateDir; }

  private:
    using PathAllDirItemInfo::PathAllDirItemInfo;
};

class PathClassDirItemInfo final : public PathAllDirItemInfo {
  public:
    // `name` without its '@'.
    static PathClassDirItemInfo* Create(PathAllDirItemInfo& directory, std::string_view name,
                                        bool kindConfirmed);
    NameCategory category() const override;
    char mark() const override { return '@'; }

  private:
    using PathAllDirItemInfo::PathAllDirItemInfo;
};

class PathPackageDirItemInfo final : public PathAllDirItemInfo {
  public:
    // `name` without its '+'.
    static PathPackageDirItemInfo* Create(PathAllDirItemInfo& directory, std::string_view name,
                                          bool kindConfirmed);
    NameCategory category() const override;
    char mark() const override { return '+'; }

  private:
    using PathAllDirItemInfo::PathAllDirItemInfo;
};

// The next directory in the tree of special directories beneath `top`, preorder: package
// directories, class directories, private directory. Null at the end.
PathAllDirItemInfo* NextInTree(PathAllDirItemInfo& directory, const PathAllDirItemInfo& top);
