// Class and package directories: walking them, and the dotted names by which code calls them.
#pragma once

#include <string>
#include <vector>

#include <vpath/path.h>

// The directory after `dir` among those on the path and the package directories inside them: start
// with the null directory, which also ends the walk. A directory comes before the packages that lie
// in it, those of one directory in the order of its listing. Cost of a whole walk: O(directories).
vpDir NextDirOrPackage(vpDir dir);

// The name of a class or package directory with those of the packages around it, as "geo.Shape".
std::string DottedName(const vpDir& dir);

// A dotted class name as a name to search for: "+geo/@Shape" for "geo.Shape". Empty when it cannot
// be one.
std::string ClassDirName(const std::string& className);

// The class directories of that class on the path, in path order.
std::vector<vpDir> ClassDirs(const vpPath& path, const std::string& className,
                             vpCaseSensitivity caseRule = vpCaseOfPath);

// Whether a class directory lies in as many packages as a dotted name spells out.
bool IsAsDeepAs(const vpDir& classDir, const std::string& className);
