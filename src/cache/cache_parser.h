// Reading a cache file. Every failure is told on the console with the line where it was met.
#pragma once

#include "cache/cache_source.h"
#include "cache/cache_tree.h"

// Skips the header, up to its '>', without a look at what it says.
bool ReadCacheHeader(CacheSource& source);

// Reads the elements of the root, which is open in `tree`, and all that is nested in them; the root
// is closed then. Depth costs memory, not stack. False, silently, at an end of the file where an
// element might begin.
bool ParseCacheElement(CacheSource& source, CacheTreeBuilder& tree);

// The tree of an open file, or null.
CacheTreePtr ReadCacheFile(int file);
