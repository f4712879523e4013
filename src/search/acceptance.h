// Whether a candidate lies where the name searched for says.
#pragma once

#include <string_view>

class PathAllDirItemInfo;
class SearchName;

// Whether what `holder` holds is within the reach of a name with that many separators: a name
// reaches into special directories only as deep as it spells out.
bool IsWithinReach(const PathAllDirItemInfo& holder, int separatorCount);

// Whether the candidate's full pathname carries the name's mark ('@' or '+') in its place.
bool CarriesMark(std::string_view fullName, const SearchName& name);

// Whether the candidate's directory ends in the name's directory part. Marks that the name leaves
// out are passed over.
bool LiesInDirectoryPart(std::string_view fullName, const SearchName& name, bool caseSensitive);
