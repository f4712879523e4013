#include "dir/path_dir_item.h"

#include <vpath/path.h>

#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/folded_name.h"
#include "pathname/text.h"

namespace {

// Whether the path counts the directory as one of the installed toolboxes.
bool LiesUnderToolboxRoot(const PathMgr& path, const char* fullName) {
    const char* const root = path.preFrozenRoot.get();
    if (root == nullptr) return false;
    return CompareNamePrefix(fullName, root, static_cast<unsigned>(hkStrlen(root)),
                             path.caseSensitive) == 0;
}

}  // namespace

PathDirItemInfo::PathDirItemInfo(PathMgr& path, std::string_view name, int kindOfDir)
    : PathAllDirItemInfo(nullptr, true, kindOfDir),
      owner(&path),
      fullNameLength(static_cast<uint32_t>(name.size())) {
    top = this;
    WriteText(reinterpret_cast<char*>(this + 1), name);
    if (kindOfDir == vpDirTypeNone) return;
    clear(kLinked);  // until it enters the path
    foldedNameHash = FoldedName(name).hash();
    underToolboxRoot = LiesUnderToolboxRoot(path, fullName());
}

template <class Item>
Item* PathDirItemInfo::Make(PathMgr& path, std::string_view name, int kindOfDir) {
    static_assert(sizeof(Item) == sizeof(PathDirItemInfo), "the name stands behind the object");
    HkBlock<void> place(AllocateOrFail(sizeof(Item) + name.size() + 1));
    Item* const item = ::new (place.get()) Item(path, name, kindOfDir);
    (void)place.release();  // the item's own from here on
    return item;
}

PathDirItemInfo* PathDirItemInfo::Create(PathMgr& path, std::string_view fullName) {
    return Make<PathDirItemInfo>(path, fullName, vpDirTypePath);
}

int PathDirItemInfo::kind() const {
    return slot == Slot::kCurrent ? vpDirTypeCurrent : vpDirTypePath;
}

const char* PathDirItemInfo::baseName() const {
    const std::string_view whole = fullNameView();
    const std::string_view last = LastComponent(whole);
    return last.empty() ? whole.data() : last.data();
}

void PathDirItemInfo::enterPath(Slot where) {
    linkUnderName(*owner, baseName());
    slot = where;
}

void PathDirItemInfo::leavePath() {
    clearContents();
    unlinkFromName();
    slot = Slot::kOffPath;
    loadState = kNeverRead;
    dirFlags = 0;
}

PathRelativeDirItemInfo* PathRelativeDirItemInfo::Create(PathMgr& path, std::string_view fullName) {
    return Make<PathRelativeDirItemInfo>(path, fullName, vpDirTypePath);
}

NullDirItemInfo* NullDirItemInfo::Create(PathMgr& path) {
    auto* const item = Make<NullDirItemInfo>(path, {}, vpDirTypeNone);
    item->set(kOwned);
    return item;
}
