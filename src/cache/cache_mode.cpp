#include "cache/cache_mode.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

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
        const std::shared_ptr<LoadedCache> whilePrinting = cacheMode.loaded;
        hkPrintf("\n    Did not match cache prefix %s (%d)", prefix.c_str(),
                 static_cast<int>(length));
        hkPrintf("    Failed.\n");
    }
    return false;
}

// What a look-up finds, with the cache that it was found in.
struct FoundNode {
    std::shared_ptr<LoadedCache> cache;
    uint32_t number = CacheSearch::kNotFound;

    explicit operator bool() const { return number != CacheSearch::kNotFound; }
    const CacheNode& operator*() const { return cache->tree().nodes()[number]; }
};

// The node of a directory, or none. The search from the last hit comes first, because directories
// are asked for in the order of the file: the next is most often the next node.
//
// The console is the host's, who may look up another directory, load another cache or end cache
// mode while it prints, or when memory runs out: what is found is kept apart from all that.
FoundNode LookUp(const vpPath& path, const char* name) {
    CacheMode& mode = cacheMode;
    if (mode.traceOn) hkPrintf("    Cache search for %s...", name);
    ++mode.dirLookupRequests;
    if (!IsUnderPrefix(path, name)) return {};
    FoundNode found{mode.loaded};
    const std::span<const uint32_t> numbers =
        found.cache->index(IsCaseSensitive(path)).find(name + found.cache->prefix().size());
    const bool isInUse = mode.loaded == found.cache;  // still; the last hit is of the one in use
    const uint64_t comparesBefore = mode.compares;
    const auto searchFrom = [&](uint32_t from) {
        const CacheSearch search = SearchFrom(found.cache->tree(), numbers, from);
        mode.compares += search.compares;
        found.number = search.number;
        if (isInUse) mode.lastHit = found.number;
        return search.number != CacheSearch::kNotFound;
    };
    const bool hasLastHit = isInUse && mode.lastHit != CacheSearch::kNotFound;
    const bool nearby = hasLastHit && searchFrom(mode.lastHit);
    if (!nearby && !searchFrom(0)) {
        if (mode.traceOn) {
            hkPrintf("\n    Cache search failure, ");
            hkPrintf("    Failed.\n");
        }
        return {};
    }
    ++mode.dirLookupHits;
    const int compares = Printable(mode.compares - comparesBefore);
    if (mode.traceOn) {
        if (nearby) hkPrintf("  Cache-Cached");
        hkPrintf("  Success, %d compares.\n", compares);
    }
    return found;
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
            if (const FoundNode node = LookUp(path, name)) return ListingOf(*node, words);
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
            if (LookUp(path, name)) return true;
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
    if (!index) {
        CacheIndex made(*tree_, caseSensitive);
        // When memory ran out the host was told, and may have looked up something itself.
        if (!index) index.emplace(std::move(made));
    }
    return *index;
}

int Printable(uint64_t count) {
    return static_cast<int>(std::min<uint64_t>(count, std::numeric_limits<int>::max()));
}

void InstallCachedCallbacks(const vpPath& path) {
    vpSetIOFcns(path, CachedListing, CachedAccessibility, nullptr, CachedIsDirectory,
                CachedTimeStamp);
}
