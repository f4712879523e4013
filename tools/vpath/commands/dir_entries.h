// What the library holds of one directory, kind by kind.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include <vpath/path.h>

#include "options/extension_array.h"

// "current", "path", "package", "class" or "private", by vpGetDirType.
const char* KindOf(const vpDir& dir);

// Calls back with the kind and the full name of each file that `extensions` accept, and of each
// package, class and private directory and plain subdirectory ("directory"), in this order; those
// of one kind in the order of the listing. Cost: the entries.
void ForEachEntry(const vpDir& dir, ExtensionArray extensions,
                  const std::function<void(const char* kind, const std::string& fullName)>& call);
