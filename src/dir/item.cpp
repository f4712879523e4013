#include "dir/item.h"

#include <cstring>
#include <new>

#include "dir/attach.h"
#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"

PathItemInfo::PathItemInfo(PathAllDirItemInfo* container, bool kindConfirmed) : parent(container) {
    if (kindConfirmed) set(kKindConfirmed);
    if (container != nullptr && container == container->top) set(kInPathDirectory);
}

std::string_view PathItemInfo::name() const { return nameRecord->spellingView(spellingIndex); }

PathDirItemInfo* PathItemInfo::topDir() const {
    if (parent != nullptr) return parent->top;
    PathAllDirItemInfo* const self = const_cast<PathItemInfo*>(this)->asDirectory();
    return self != nullptr ? self->top : nullptr;
}

PathAllDirItemInfo& PathItemInfo::holder() const {
    if (parent != nullptr) return *parent;
    // Of the items that are not detached, only directories of the path have no parent.
    return const_cast<PathAllDirItemInfo&>(static_cast<const PathAllDirItemInfo&>(*this));
}

PathMgr* PathItemInfo::path() const {
    const PathDirItemInfo* const top = topDir();
    return top != nullptr ? top->owner : nullptr;
}

namespace {

// Whether `item` may be the second of its name in its directory: looks at the few that were linked
// under the name last, as those of one directory are linked one after another.
bool MayBeTwin(const NameList& list, const PathItemInfo& item, uint32_t spellingIndex) {
    constexpr int kLookedAt = 8;
    const bool inPathDir = item.has(PathItemInfo::kInPathDirectory);
    const char* const extension = item.isFile() ? item.getExtension() : nullptr;
    int left = kLookedAt;
    for (const PathItemInfo* other = list.head(); other != nullptr; other = other->next) {
        const bool sameParent = other->parent == item.parent;
        if (!sameParent && (inPathDir || other->topDir() != item.topDir())) return false;
        if (left-- == 0) return true;
        if (!sameParent || other->spellingIndex != spellingIndex) continue;
        const char* const otherExtension = other->isFile() ? other->getExtension() : nullptr;
        if (CompareNames(extension, otherExtension, true) == 0) return true;
    }
    return false;
}

}  // namespace

void PathItemInfo::linkUnderName(PathMgr& owner, std::string_view text) {
    const NameTable::Interned interned = owner.nameTable.intern(text);
    ++interned.record->linkedItems;
    try {
        NameList& list = interned.record->listFor(category());
        if (parent != nullptr && MayBeTwin(list, *this, interned.spellingIndex)) {
            parent->setDirFlag(PathAllDirItemInfo::kMayHoldTwins);
        }
        list.pushFront(*this, owner.orderEpoch());
    } catch (...) {
        --interned.record->linkedItems;
        ReleaseIfEmpty(*interned.record);
        throw;
    }
    nameRecord = interned.record;
    spellingIndex = interned.spellingIndex;
    set(kLinked);
}

void PathItemInfo::unlinkFromName() {
    if (!has(kLinked)) return;
    if (nameRecord != nullptr) {
        PathMgr* const owner = path();
        // Cursors count references: without one no cursor can stand here.
        if (refCount != 0 && owner != nullptr) owner->cursors.itemUnlinked(*this);
        PathNameInfo& record = *nameRecord;
        record.list(category())->remove(*this);
        --record.linkedItems;
        nameRecord = nullptr;
        ReleaseIfEmpty(record);
    }
    clear(kLinked);
}

void PathItemInfo::disown() {
    clear(kOwned);
    release();
}

void PathItemInfo::release() {
    if (refCount == 0 && !has(kLinked) && !has(kOwned)) delete this;
}

PathFileItemInfo* PathFileItemInfo::Create(PathAllDirItemInfo& directory, std::string_view fileName,
                                           bool kindConfirmed, ClassdefState classdef) {
    // A dot that begins the name would hide the file; listings leave such names out.
    const size_t dot = fileName.rfind('.');
    const bool hasExtension = dot != std::string_view::npos && dot != 0;
    const std::string_view base = hasExtension ? fileName.substr(0, dot) : fileName;
    const std::string_view extension = hasExtension ? fileName.substr(dot + 1) : std::string_view();
    const size_t behind = extension.size() > kShortExtension ? extension.size() + 1 : 0;
    void* const place = AllocateOrFail(sizeof(PathFileItemInfo) + behind);
    std::unique_ptr<PathFileItemInfo> file(::new (place) PathFileItemInfo(
        directory, kindConfirmed, classdef, hasExtension ? extension.data() : nullptr,
        extension.size()));
    return Attach(std::move(file), base);
}

PathFileItemInfo::PathFileItemInfo(PathAllDirItemInfo& directory, bool kindConfirmed,
                                   ClassdefState classdef, const char* extension,
                                   size_t extensionLength)
    : PathItemInfo(&directory, kindConfirmed),
      classdefState(classdef),
      extensionForm_(extension == nullptr                 ? kNoExtension
                     : extensionLength <= kShortExtension ? kShort
                                                          : kLong),
      shortExtension_() {
    if (extension == nullptr) return;
    char* const text =
        extensionForm_ == kShort ? shortExtension_ : reinterpret_cast<char*>(this + 1);
    std::memcpy(text, extension, extensionLength);
    text[extensionLength] = '\0';
}

NameCategory PathFileItemInfo::category() const {
    if (has(kInPathDirectory)) return NameCategory::kFileInPathDir;
    return parent->dirKind == vpDirTypePrivate ? NameCategory::kFileInPrivateDir
                                               : NameCategory::kFileElsewhere;
}

const char* PathFileItemInfo::getExtension() const {
    switch (extensionForm_) {
        case kNoExtension:
            return nullptr;
        case kShort:
            return shortExtension_;
        case kLong:
            break;
    }
    return reinterpret_cast<const char*>(this + 1);
}

PathSubDirItemInfo* PathSubDirItemInfo::Create(PathAllDirItemInfo& directory, std::string_view name,
                                               bool kindConfirmed) {
    std::unique_ptr<PathSubDirItemInfo> subDir(new PathSubDirItemInfo(&directory, kindConfirmed));
    return Attach(std::move(subDir), name);
}

NameCategory PathSubDirItemInfo::category() const {
    return has(kInPathDirectory) ? NameCategory::kSubDirInPathDir : NameCategory::kSubDirElsewhere;
}

const char* PathSubDirItemInfo::getExtension() const { return std::strrchr(name().data(), '.'); }
