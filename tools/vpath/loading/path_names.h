#pragma once

#include <climits>
#include <optional>
#include <string>

#include <vpath/path.h>

// Room for any full name that the library answers over real directories: they could be listed, so
// their names are shorter than PATH_MAX, and what they hold adds a separator and one component.
constexpr size_t kNameRoom = PATH_MAX + NAME_MAX + 2;

// The full name of a directory as the user wrote it: '~' expanded, without a final '/', and a
// relative name completed with the process's current directory. Nothing when there is no such
// relative name or it is too long.
std::optional<std::string> FullDirName(const std::string& name);

// The full name of a directory as the library holds it.
std::string NameOfDir(const vpDir& dir);

// The directory of the path that the user means by a name, its special directories included; the
// null directory when there is none. Directories that were added under a relative name answer to
// their full names too. Cost: the relative directories, when it is none of the others.
vpDir FindDir(const vpPath& path, const std::string& name);

// The full name of a directory of the path, completed when it was added under a relative name.
std::string FullNameOf(const vpDir& dir);
// A name in a directory; the directory in the name of a file; the last component of a name, and
// that without its extension.
std::string JoinNames(const std::string& dir, const std::string& name);
std::string DirOfFile(const std::string& fileName);
std::string LastComponent(const std::string& name);
std::string StemOf(const std::string& fileName);

// The full name of a file that a search answered, completed when its directory was added under a
// relative name.
std::string FullFileName(const char* found);
