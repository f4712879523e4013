// Directories of a path: the added ones, the current directory, and the null directory.
#pragma once

#include <limits>

#include "dir/dir_item.h"

class PathDirItemInfo : public PathAllDirItemInfo {
  public:
    enum class Slot : uint8_t { kOffPath, kCurrent, kOnPath };

    // Order of the current directory, before every other; the others follow from 0 both ways.
    static constexpr int64_t kOrderOfCurrent = std::numeric_limits<int64_t>::min();

    // `fullName` is not empty. The item is not linked before enterPath.
    static PathDirItemInfo* Create(PathMgr& path, std::string_view fullName);

    NameCategory category() const override { return NameCategory::kPathDir; }
    int kind() const override;
    const char* baseName() const override;

    // Stands behind the object; empty for the null directory.
    const char* fullName() const { return reinterpret_cast<const char*>(this + 1); }
    std::string_view fullNameView() const { return {fullName(), fullNameLength}; }

    bool onPath() const { return slot != Slot::kOffPath; }

    // Whether the name was relative when the directory was added: it then follows the current
    // directory. The current directory itself never does.
    virtual bool isRelative() const { return false; }

    // Links the item under its last name component as a directory in `where`, alive.
    void enterPath(Slot where);

    // Gives up the contents, leaves the name table and the path; handles are dead from now on. The
    // item can enter again.
    void leavePath();

    PathDirItemInfo* nextOnPath = nullptr;  // see path/path_order.h
    const void* ahead = nullptr;            // for the walks of dir/refresh.cpp; never followed
    PathMgr* owner;                         // null once the path was removed
    const uint32_t fullNameLength;
    uint32_t foldedNameHash = 0;  // of the lower-cased full name
    int64_t order = 0;            // path order: ascending
    PathDirItemInfo* prevOnPath = nullptr;
    Slot slot = Slot::kOffPath;
    bool underToolboxRoot = false;

  protected:
    PathDirItemInfo(PathMgr& path, std::string_view name, int kindOfDir);

    template <class Item>
    static Item* Make(PathMgr& path, std::string_view name, int kindOfDir);
};

class PathRelativeDirItemInfo final : public PathDirItemInfo {
  public:
    static PathRelativeDirItemInfo* Create(PathMgr& path, std::string_view fullName);
    bool isRelative() const override { return true; }

  private:
    friend class PathDirItemInfo;
    using PathDirItemInfo::PathDirItemInfo;
};

// What look-ups answer when there is no directory: one for each path, without a name or contents.
class NullDirItemInfo final : public PathDirItemInfo {
  public:
    static NullDirItemInfo* Create(PathMgr& path);
    int kind() const override { return 0; }

  private:
    friend class PathDirItemInfo;
    using PathDirItemInfo::PathDirItemInfo;
};
