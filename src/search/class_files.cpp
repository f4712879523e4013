// Class files: which file defines a class. The library cannot read a file's text; it asks the host
// once for each file and remembers the answer in the file's item.
#include <algorithm>
#include <cstring>
#include <string_view>

#include <vpath/path.h>
#include <vpath/pathname.h>

#include "base/guard.h"
#include "dir/cursors.h"
#include "dir/file_names.h"
#include "dir/full_name.h"
#include "dir/name_record.h"
#include "dir/path_dir_item.h"
#include "path/find_directory.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/text.h"
#include "search/extension_list.h"

namespace {

using FileRef = ItemRef<PathFileItemInfo>;

vpIsClassFcn isClassFunction = nullptr;

bool HasClassFileExtension(const PathFileItemInfo& file, bool caseSensitive) {
    const char* const extension = file.getExtension();
    return extension != nullptr && (CompareNames(extension, "v", caseSensitive) == 0 ||
                                    CompareNames(extension, "p", caseSensitive) == 0);
}

// Whether the file defines a class; an undecided one is put to the host. Without a function to ask,
// the answer is no and nothing is remembered.
bool AskWhetherClass(const FileRef& file, const char* fullName) {
    if (isClassFunction == nullptr) return false;
    const bool isClass = isClassFunction(fullName);
    file->classdefState = isClass ? PathFileItemInfo::kClassdef : PathFileItemInfo::kNotClassdef;
    return isClass && file->has(PathItemInfo::kLinked);
}

// The same for a file that was reached as the one that may define a class: without the extension of
// a class file it never does.
bool DefinesClass(const PathMgr& path, const FileRef& file) {
    if (file->classdefState != PathFileItemInfo::kUnknown) {
        return file->classdefState == PathFileItemInfo::kClassdef;
    }
    if (!HasClassFileExtension(*file, path.caseSensitive)) {
        file->classdefState = PathFileItemInfo::kNotClassdef;
        return false;
    }
    return AskWhetherClass(file, FullName(*file).text());
}

// The search for the file that defines one class.
class ClassFileSearch {
  public:
    ClassFileSearch(PathMgr& path, const char** extensions)
        : path_(path), extensions_(extensions) {}

    // The file, or null.
    FileRef find(std::string_view className) {
        const size_t dot = className.rfind('.');
        FileRef file = dot == std::string_view::npos
                           ? findBare(className)
                           : findInPackages(className.substr(0, dot), className.substr(dot + 1));
        return path_.valid ? file : FileRef();
    }

  private:
    // A class directory or package in slot 0 is looked at through its path, not as a place for
    // classes of their own.
    bool isLeftOut(const PathItemInfo& item) const {
        const PathDirItemInfo* const current = path_.contents.directories.current();
        if (current == nullptr || item.topDir() != current) return false;
        return IsMark(*current->baseName());
    }

    bool isNamed(const PathItemInfo& item, std::string_view name) const {
        return SameName(item.name(), name, path_.caseSensitive);
    }

    // The place of a file's extension in the list, from 1; 0 when it is not there.
    size_t rankOf(const PathFileItemInfo& file) const {
        size_t rank = 0;
        for (size_t i = 0; extensions_ != nullptr && extensions_[i] != nullptr; ++i) {
            const char* const wanted = WithoutDot(extensions_[i]);
            const bool same = SameName(TextOf(file.getExtension()), wanted, path_.caseSensitive);
            if (same) rank = i + 1;
        }
        return rank;
    }

    // Calls `act` with each child of that list under the name.
    template <class Act>
    void forEachNamed(PathAllDirItemInfo& directory, ChildList list, std::string_view name,
                      Act act) const {
        const PathNameInfo* const record = path_.nameTable.lookup(name);
        if (record == nullptr) return;
        ChildIndex& index = directory.childIndex;
        for (size_t at = index.next(directory, record, list, 0); at != ChildIndex::kNone;
             at = index.next(directory, record, list, at + 1)) {
            PathItemInfo* const child = ChildAt(directory, list, at);
            if (child->has(PathItemInfo::kLinked) && isNamed(*child, name)) act(*child);
        }
    }

    PathAllDirItemInfo* childDir(PathAllDirItemInfo& directory, ChildList list,
                                 std::string_view name) const {
        PathAllDirItemInfo* found = nullptr;
        forEachNamed(directory, list, name, [&found](PathItemInfo& child) {
            if (found == nullptr) found = child.asDirectory();
        });
        return found;
    }

    // Of the files of that name in a directory, the one whose extension stands last in the list.
    PathFileItemInfo* bestFile(PathAllDirItemInfo& directory, std::string_view name) const {
        PathFileItemInfo* best = nullptr;
        size_t bestRank = 0;
        forEachNamed(directory, ChildList::kFiles, name, [&](PathItemInfo& child) {
            auto& file = static_cast<PathFileItemInfo&>(child);
            const size_t rank = rankOf(file);
            if (rank > bestRank) {
                best = &file;
                bestRank = rank;
            }
        });
        return best;
    }

    // The first item of a list that carries the name and is not left out.
    PathItemInfo* nextNamed(NameCursor& cursor, std::string_view name) const {
        PathItemInfo* item = cursor.next();
        while (item != nullptr && (!isNamed(*item, name) || isLeftOut(*item))) item = cursor.next();
        return item;
    }

    FileRef findBare(std::string_view name) {
        const NameRecordRef record(path_.nameTable.lookup(name));
        if (record.get() == nullptr) return {};
        FileRef plain(plainCandidate(*record.get(), name));
        FileRef inClassDir(classDirCandidate(*record.get(), name));
        if (inClassDir && DefinesClass(path_, inClassDir) && comesFirst(inClassDir, plain)) {
            return inClassDir;
        }
        const bool found = plain && plain->has(PathItemInfo::kLinked) && DefinesClass(path_, plain);
        return found ? plain : FileRef();
    }

    // Whether a class directory's file wins over the plain file: only from a directory that stands
    // earlier on the path.
    bool comesFirst(const FileRef& inClassDir, const FileRef& plain) const {
        if (!plain || !plain->has(PathItemInfo::kLinked)) return true;
        return inClassDir->topDir()->order < plain->topDir()->order;
    }

    // Only the first directory that has files of the name is looked at.
    PathFileItemInfo* plainCandidate(PathNameInfo& record, std::string_view name) const {
        NameCursor cursor(path_, record);
        cursor.start(NameCategory::kFileInPathDir);
        PathItemInfo* const first = nextNamed(cursor, name);
        return first != nullptr ? bestFile(*first->parent, name) : nullptr;
    }

    // The first class directory with a file of its own name counts.
    PathFileItemInfo* classDirCandidate(PathNameInfo& record, std::string_view name) const {
        NameCursor cursor(path_, record);
        cursor.start(NameCategory::kClassInPathDir);
        while (PathItemInfo* const classDir = nextNamed(cursor, name)) {
            PathFileItemInfo* const file = bestFile(*classDir->asDirectory(), name);
            if (file != nullptr) return file;
        }
        return nullptr;
    }

    FileRef findInPackages(std::string_view packages, std::string_view name) {
        if (path_.nameTable.lookup(name) == nullptr) return {};
        const std::string_view topName = packages.substr(0, packages.find('.'));
        const NameRecordRef record(path_.nameTable.lookup(topName));
        if (record.get() == nullptr) return {};
        const std::string_view below = packages.substr(topName.size());
        NameCursor cursor(path_, *record.get());
        cursor.start(NameCategory::kPackageInPathDir);
        while (PathItemInfo* const top = nextNamed(cursor, topName)) {
            FileRef file(packageCandidate(*top->asDirectory(), below, name));
            if (file && DefinesClass(path_, file)) return file;
        }
        return {};
    }

    // The file of the class in the package that `below`, as ".sub.subsub", leads to from `top`.
    PathFileItemInfo* packageCandidate(PathAllDirItemInfo& top, std::string_view below,
                                       std::string_view name) const {
        PathAllDirItemInfo* package = &top;
        while (package != nullptr && !below.empty()) {
            below.remove_prefix(1);
            const std::string_view part = below.substr(0, below.find('.'));
            package = childDir(*package, ChildList::kPackages, part);
            below.remove_prefix(part.size());
        }
        if (package == nullptr) return nullptr;
        PathAllDirItemInfo* const classDir = childDir(*package, ChildList::kClasses, name);
        return bestFile(classDir != nullptr ? *classDir : *package, name);
    }

    PathMgr& path_;
    const char** extensions_;
};

FileRef FindClassFile(PathMgr& path, const char* className, const char** extensions) {
    if (className == nullptr) return {};
    return ClassFileSearch(path, extensions).find(className);
}

bool IsClassdef(PathMgr& path, const char* fileName) {
    PathAllDirItemInfo* const directory = FindDirectoryOfFileSilently(path, fileName);
    if (directory == nullptr) return false;
    const std::string_view whole(fileName);
    const std::string_view name = whole.substr(whole.rfind('/') + 1);
    const auto named = std::find_if(directory->files.begin(), directory->files.end(),
                                    [&](const PathFileItemInfo* file) {
                                        return file->has(PathItemInfo::kLinked) &&
                                               MatchesFileQuery(*file, name, path.caseSensitive);
                                    });
    if (named == directory->files.end()) return false;
    const FileRef file(*named);
    if (file->classdefState != PathFileItemInfo::kUnknown) {
        return file->classdefState == PathFileItemInfo::kClassdef;
    }
    return HasClassFileExtension(*file, path.caseSensitive) && AskWhetherClass(file, fileName);
}

// Writes the file's full name, completed when it is relative; empty when that cannot be done.
void WriteClassFile(const PathFileItemInfo& file, char* dst, size_t size) {
    const FullName fullName(file);
    if (!vpIsAbsolutePath(fullName.text())) {
        if (vpFullPath(dst, fullName.text(), size) == nullptr) *dst = '\0';
        return;
    }
    WriteText(dst, fullName.view().substr(0, size - 1));
}

}  // namespace

void vpSetIsClassFcn(vpIsClassFcn isClass) { isClassFunction = isClass; }

bool vpIsFileClassdef(vpPath path, const char* fileName) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr || fileName == nullptr) return false;
    return Guarded(false, [&] { return IsClassdef(*live, fileName); });
}

int vpDoesClassFileExist(vpPath path, const char* className, const char** exts) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return 0;
    return Guarded(0, [&] { return FindClassFile(*live, className, exts) ? 1 : 0; });
}

bool vpGetClassFile(vpPath path, const char* className, char* dst, int dstSize, const char** exts) {
    const bool writes = dst != nullptr && dstSize > 0;
    if (writes) *dst = '\0';
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return false;
    return Guarded(false, [&] {
        const FileRef file = FindClassFile(*live, className, exts);
        if (!file) return false;
        if (writes) WriteClassFile(*file, dst, static_cast<size_t>(dstSize));
        return true;
    });
}
