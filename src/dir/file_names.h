// Comparing names of items with names as they stand on disk.
#pragma once

#include <string_view>

class PathFileItemInfo;
class PathItemInfo;

// Whether `name` is exactly the item's: a file's with its extension, a special directory's without
// its mark.
bool HasName(const PathItemInfo& item, std::string_view name);
bool HasName(const PathFileItemInfo& file, std::string_view name);

// Whether a file answers to `query`: with a dot, name and extension must agree; without one the
// extension does not matter.
bool MatchesFileQuery(const PathFileItemInfo& file, std::string_view query, bool caseSensitive);
