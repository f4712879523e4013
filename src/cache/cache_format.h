// The letters and bounds of the toolbox path cache file, which the writer and the reader share.
// docs/cache-format.md describes the file.
#pragma once

#include <cstddef>

// The letter of an element says what kind of item it names.
inline constexpr char kCacheSubDir = 'd';
inline constexpr char kCacheFile = 'F';
inline constexpr char kCacheClassdef = 'C';
inline constexpr char kCacheNotClassdef = 'N';
inline constexpr char kCacheUnknown = 'U';
inline constexpr char kCacheDirectory = 'D';  // holds elements; an item of the one around it too

// Bytes of the longest name that a file may hold.
inline constexpr size_t kLongestCacheName = 4352;

// The name of the node that holds the outermost directories. A look-up can find it, as any node.
inline constexpr const char* kCacheRootName = "CachePath";
