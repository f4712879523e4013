// Directory names from outside in the form in which the library keeps them.
#pragma once

#include <string_view>

inline constexpr int kLongestDirName = 4096;

// Whether vpNormalizeDirName, list separators kept, would leave the name as it is.
bool IsNormalizedDirName(std::string_view name);

// vpNormalizeDirName for directories that are added or looked up: a failure goes to the error
// channel with the name. Answers the length; 0, and no string, after a failure. A string in
// `*outName`, which may be empty ("//"), is freed with vpFreeNormalizedDirName.
int NormalizeDirNameOrReport(const char* name, bool stripListSeparators, char** outName);

// Normalises the name of a search and answers how long its directory part is, the final '/'
// included: 0 when there is none, and the length of the rest in `*outLeafLen`. For a null or empty
// name 0 and no string. -1 and no string when the name cannot be normalised, which goes to the
// warning channel, and when nothing is left of it.
int SplitNormalizedDirName(const char* name, char** outName, int* outLeafLen);
