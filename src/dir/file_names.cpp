#include "dir/file_names.h"

#include "dir/item.h"
#include "pathname/compare.h"
#include "pathname/text.h"

bool HasName(const PathItemInfo& item, std::string_view name) {
    if (item.isFile()) return HasName(static_cast<const PathFileItemInfo&>(item), name);
    return name == item.name();
}

bool HasName(const PathFileItemInfo& file, std::string_view name) {
    const std::string_view base = file.name();
    const char* const extension = file.getExtension();
    if (extension == nullptr) return name == base;
    return name.size() > base.size() && name.starts_with(base) && name[base.size()] == '.' &&
           name.substr(base.size() + 1) == extension;
}

bool MatchesFileQuery(const PathFileItemInfo& file, std::string_view query, bool caseSensitive) {
    const size_t dot = query.rfind('.');
    if (!SameName(file.name(), query.substr(0, dot), caseSensitive)) return false;
    return dot == std::string_view::npos ||
           SameName(TextOf(file.getExtension()), query.substr(dot + 1), caseSensitive);
}
