// The names to which the files of a path answer, and those files.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <vpath/path.h>

#include "options/extension_array.h"

struct NameOnPath {
    std::string name;  // without extension, as searches spell it: "foo", "+geo/area", "@Shape/area"
    size_t places;     // how many files and class directories have it, at most
};

// Each name once, in the order in which it first comes on the path: of files that lie directly in
// directories of the path, in their package and class directories. Private files, which do not
// compete with others, are left out. `ignoreCase`: names that differ in case are one, spelled as
// the first of them. Cost: the files.
std::vector<NameOnPath> NamesOnPath(const vpPath& path, const ExtensionArray& extensions,
                                    bool ignoreCase);

// The full names of the files that answer to such a name, in order of precedence; each once,
// though its directory may be on the path twice. `limit`: no more than that.
std::vector<std::string> FilesOf(const vpPath& path, const std::string& name,
                                 ExtensionArray extensions, vpCaseSensitivity caseRule,
                                 size_t limit = SIZE_MAX);
