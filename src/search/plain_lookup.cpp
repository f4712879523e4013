#include "search/plain_lookup.h"

#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/folded_name.h"

namespace {

// A name that needs no normalising and says nothing of directories.
struct PlainName {
    std::string_view base;
    const char* extension = nullptr;  // null without one; never empty

    bool take(const char* name) {
        if (name == nullptr || SaysMore(*name)) return false;
        const char* dot = nullptr;
        const char* end = name + 1;
        for (; *end != '\0'; ++end) {
            if (*end == '/') return false;
            if (*end == '.') dot = end;
        }
        if (end - name >= kLongest) return false;
        base = {name, dot != nullptr ? dot : end};
        if (dot != nullptr && dot[1] != '\0') extension = dot + 1;
        return true;
    }

  private:
    static bool SaysMore(char first) {
        return first == '\0' || first == '~' || first == '/' || IsMark(first);
    }

    static constexpr std::ptrdiff_t kLongest = 128;
};

// Whether files of the name can come before those of its first list.
bool MayBePreceded(PathNameInfo& record, const SearchRequest& request) {
    return request.scope == SearchScope::kVisible &&
           (request.start.privateDir != nullptr || IsClassName(record));
}

}  // namespace

PlainLookup LookUpPlainName(const SearchRequest& request) {
    PlainName name;
    if (!name.take(request.name)) return {PlainAnswer::kUnknown};
    PathMgr& path = request.path;
    PathNameInfo* const record = path.nameTable.lookup(name.base);
    if (record == nullptr) return {PlainAnswer::kNothing};
    NameList* const list = record->list(FirstPlaceOf(request.scope));
    if (list == nullptr || MayBePreceded(*record, request)) return {PlainAnswer::kUnknown};

    const bool caseSensitive = request.caseSensitive();
    const ExtensionList extensions(request.extensions, /*keep=*/false);
    for (PathItemInfo* item = list->first(path.orderEpoch()); item != nullptr; item = item->next) {
        if (!SameName(item->name(), name.base, caseSensitive)) continue;
        if (!item->has(PathItemInfo::kKindConfirmed)) break;
        auto* const file = static_cast<PathFileItemInfo*>(item);
        const unsigned int result =
            extensions.accept(file->getExtension(), name.extension, caseSensitive);
        if (result != 0) return {PlainAnswer::kFile, file, result};
    }
    return {PlainAnswer::kUnknown};
}
