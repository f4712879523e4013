#include "cache/cache_mode.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include <hostkit/hostkit.h>
#include <vpath/pathname.h>

#include "cache/cache_format.h"
#include "path/host_hooks.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"
#include "pathname/components.h"

CacheMode cacheMode;

namespace {

bool IsCaseSensitive(const vpPath& path) {
    return path.get() == nullptr || path.get()->caseSensitive;
}

// Whether the cache could know of a name.
bool IsUnderPrefix(const vpPath& path, const char* name) {
    if (cacheMode.loaded == nullptr) return false;
    const HkString& prefix = cacheMode.loaded->prefix();
    const auto length = static_cast<unsigned>(prefix.size());
    if (CompareNamePrefix(name, prefix.c_str(), length, IsCaseSensitive(path)) == 0) return true;
    if (cacheMode.traceOn) {
        hkPrintf("\n    Did not match cache prefix %s (%d)    Failed.\n", prefix.c_str(),
                 static_cast<int>(length));
    }
    return false;
}

// The node of a directory, or null. The search from the last hit comes first, because directories
// are asked for in the order of the file: the next is most often the next node.
//
// The console is the host's, which may load another cache or end cache mode while it prints:
// nothing of the cache is held across that.
const CacheNode* LookUp(const vpPath& path, const char* name) {
    CacheMode& mode = cacheMode;
    if (mode.traceOn) hkPrintf("    Cache search for %s...", name);
    ++mode.dirLookupRequests;
    if (!IsUnderPrefix(path, name)) return nullptr;
    LoadedCache& cache = *mode.loaded;
    const std::span<const uint32_t> numbers =
        cache.index(IsCaseSensitive(path)).find(name + cache.prefix().size());
    const uint64_t comparesBefore = mode.compares;
    const auto searchFrom = [&](uint32_t from) {
        const CacheSearch search = SearchFrom(cache.tree(), numbers, from);
        mode.compares += search.compares;
        mode.lastHit = search.number;
        return search.number != CacheSearch::kNotFound;
    };
    const bool nearby = mode.lastHit != CacheSearch::kNotFound && searchFrom(mode.lastHit);
    if (!nearby && !searchFrom(0)) {
        if (mode.traceOn) hkPrintf("\n    Cache search failure,     Failed.\n");
        return nullptr;
    }
    ++mode.dirLookupHits;
    if (mode.traceOn) {
        hkPrintf("%s  Success, %d compares.\n", nearby ? "  Cache-Cached" : "",
                 Printable(mode.compares - comparesBefore));
    }
    if (mode.lastHit == CacheSearch::kNotFound) return nullptr;
    return &mode.loaded->tree().nodes()[mode.lastHit];
}

unsigned int ListingWord(char kind) {
    switch (kind) {
        case kCacheClassdef:
            return 0x8001;
        case kCacheNotClassdef:
            return 0x8002;
        case kCacheFile:
            return 0x8000;
        case kCacheSubDir:
        case kCacheDirectory:
            return 0x4000;
        default:
            return 0;
    }
}

// A node's contents as the listing callback answers them.
char* ListingOf(const CacheNode& node, unsigned int** words) {
    HkBlock<char> listing(static_cast<char*>(AllocateOrFail(node.contentsLength)));
    std::memcpy(listing.get(), node.contents, node.contentsLength);
    if (words != nullptr) {
        auto* const codes =
            static_cast<unsigned int*>(AllocateOrFail(node.kindsCount * sizeof(unsigned int)));
        std::transform(node.kinds, node.kinds + node.kindsCount, codes, ListingWord);
        *words = codes;
    }
    return listing.release();
}

char* CachedListing(vpPath path, const char* name, unsigned int** words) {
    const CacheMode& mode = cacheMode;
    if (mode.loaded != nullptr) {
        if (cacheMode.traceOn) hkPrintf("Looking for contents of %s...\n", name);
        if (IsUnderPrefix(path, name)) {
            if (const CacheNode* const node = LookUp(path, name)) return ListingOf(*node, words);
            if (mode.tellsStatus() || mode.verbose) {
                hkPrintf("%s not found in Toolbox Path Cache\n", name);
            }
        }
        if (cacheMode.traceOn) hkPrintf(" not in cache...");
    }
    return DefaultIOFunctions().listing(path, name, words);
}

bool HasExtension(const char* name) {
    const char* const dot = std::strrchr(name, '.');
    return dot != nullptr && std::strchr(dot, '/') == nullptr;
}

// What is told without the file system holds for all names: a special directory is taken by its
// name, a name with an extension under the prefix for a file.
bool CachedIsDirectory(vpPath path, const char* name) {
    if (cacheMode.loaded != nullptr) {
        if (IsUnderPrefix(path, name)) {
            if (HasExtension(name)) return false;
            if (cacheMode.traceOn) hkPrintf("Is %s a directory?...\n", name);
            if (LookUp(path, name) != nullptr) return true;
        }
        if (cacheMode.traceOn) hkPrintf("Is %s a directory?...\n", name);
        const char* const last = vpSeparatePathName(const_cast<char*>(name), nullptr);
        if (*last == '@' || IsPrivateName(last)) return true;
    }
    return DefaultIOFunctions().isDirectory(path, name);
}

vpDirAccessibility CachedAccessibility(vpPath path, const char* name) {
    if (cacheMode.loaded != nullptr) {
        if (cacheMode.traceOn) hkPrintf("Is %s accessible?...\n", name);
        if (CachedIsDirectory(path, name)) return vpDirAccessible;
        if (cacheMode.traceOn) hkPrintf("%s not in cache, using file system IsAccessible.\n", name);
    }
    return DefaultIOFunctions().accessibility(path, name);
}

// Nothing that exists changes while a path is in cache mode: its time is 0.
long CachedTimeStamp(vpPath path, const char* name) {
    if (cacheMode.loaded != nullptr) {
        if (CachedIsDirectory(path, name)) return 0;
        const HkString directory(DirectoryPart(name));
        if (CachedIsDirectory(path, directory.c_str())) return 0;
    }
    return DefaultIOFunctions().timeStamp(path, name);
}

}  // namespace

const CacheIndex& LoadedCache::index(bool caseSensitive) {
    std::optional<CacheIndex>& index = indexes_[caseSensitive ? 1 : 0];
    return index.has_value() ? *index : index.emplace(*tree_, caseSensitive);
}

int Printable(uint64_t count) {
    return static_cast<int>(std::min<uint64_t>(count, std::numeric_limits<int>::max()));
}

void InstallCachedCallbacks(const vpPath& path) {
    vpSetIOFcns(path, CachedListing, CachedAccessibility, nullptr, CachedIsDirectory,
                CachedTimeStamp);
}
