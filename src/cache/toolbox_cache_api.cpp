// The exported calls on the toolbox path cache.
#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include <hostkit/hostkit.h>
#include <vpath/path.h>

#include "base/guard.h"
#include "cache/cache_mode.h"
#include "cache/cache_parser.h"
#include "cache/cache_writer.h"
#include "path/handle_check.h"

namespace {

constexpr size_t kLongestPrefix = 4096;

// The time that a load takes, as the host utility library records it.
class LoadTiming {
  public:
    LoadTiming() {
        hkWallClock(&start_);
        startTick_ = hkPERFtic(1);
        hkIncrementTicDepth();
    }

    // The seconds since the beginning; fewer than none when midnight lies between.
    double stop() {
        hkMarkTime("cachepath", startTick_, hkPERFtic(1));
        hkDecrementTicDepth();
        hkWallClockTime end;
        hkWallClock(&end);
        return (end.hours - start_.hours) * 3600.0 + (end.minutes - start_.minutes) * 60.0 +
               (end.seconds - start_.seconds);
    }

  private:
    hkWallClockTime start_;
    hkTick startTick_;
};

const char* TextOrEmpty(const char* name) { return name != nullptr ? name : ""; }

CacheTreePtr ReadNamedCacheFile(const char* name) {
    const int file = name != nullptr ? open(name, O_RDONLY | O_CLOEXEC) : -1;
    if (file < 0) {
        if (cacheMode.tellsStatus()) {
            hkPrintf("Unable to open Toolbox Path Cache file: %s\n", TextOrEmpty(name));
        }
        return nullptr;
    }
    CacheTreePtr tree;
    Attempt([&] { tree = ReadCacheFile(file); });
    close(file);
    return tree;
}

// The cache of a file for names under `rootDir`, or null.
std::shared_ptr<LoadedCache> Load(const vpPath& path, const char* fileName, const char* rootDir) {
    CacheTreePtr tree = ReadNamedCacheFile(fileName);
    if (tree == nullptr || LivePath(path) == nullptr || rootDir == nullptr) return nullptr;
    HkString prefix(rootDir);
    prefix += "/toolbox/";
    if (prefix.size() > kLongestPrefix) return nullptr;
    return std::allocate_shared<LoadedCache>(HkAllocator<LoadedCache>(), std::move(tree),
                                             std::move(prefix));
}

// Puts `loaded`, which may be null, in the place of the cache in use.
void Use(std::shared_ptr<LoadedCache> loaded) {
    cacheMode.loaded = std::move(loaded);
    cacheMode.lastHit = CacheSearch::kNotFound;
}

void UseCacheFile(const vpPath& path, const char* cacheFile, const char* rootDir, bool verbose) {
    CacheMode& mode = cacheMode;
    mode.lastHit = CacheSearch::kNotFound;
    mode.dirLookupRequests = mode.dirLookupHits = mode.compares = 0;
    if (mode.disabled) {
        if (mode.tellsStatus()) hkPrintf("Request to use Toolbox Cache received and ignored.\n");
        return;
    }
    mode.verbose = verbose;
    if (mode.tellsStatus()) {
        hkPrintf("Attempting to load Toolbox Path Cache %s\n", TextOrEmpty(cacheFile));
    }
    LoadTiming timing;
    std::shared_ptr<LoadedCache> loaded;
    Attempt([&] { loaded = Load(path, cacheFile, rootDir); });
    const double seconds = timing.stop();
    if (loaded == nullptr) {
        hkPrintf("Error occurred loading: %s\nCache file ignored.\n", TextOrEmpty(cacheFile));
        return;
    }
    if (mode.tellsStatus() || verbose) {
        hkPrintf("  Toolbox Path Cache read in %.2f seconds.\n", seconds);
    }
    if (mode.tellsStatus()) {
        hkPrintf("Toolbox Path Cache contains %d directories.\n",
                 Printable(loaded->tree().directoryCount()));
        hkPrintf("Request to use Toolbox Cache received or confirmed.\n");
        hkPrintf("Toolbox Path Prefix is %s\n", loaded->prefix().c_str());
    }
    Use(std::move(loaded));
    InstallCachedCallbacks(path);
}

void TellLookUps() {
    const CacheMode& mode = cacheMode;
    hkPrintf(
        "Toolbox Path Cache resetting...\n\tTotalDirLookupRequests = %d\n"
        "\tTotalDirLookupHits = %d\n\tNumCompares = %d\n",
        Printable(mode.dirLookupRequests), Printable(mode.dirLookupHits), Printable(mode.compares));
}

}  // namespace

void vpUseToolboxCache(vpPath path, const char* cacheFile, const char* rootDir, bool verbose) {
    Guarded([&] { UseCacheFile(path, cacheFile, rootDir, verbose); });
}

bool vpInToolboxCacheMode() { return cacheMode.loaded != nullptr; }

void vpDisableToolboxCache() { cacheMode.disabled = true; }

void vpRevertFromToolboxCache(vpPath path) {
    vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr);
    Use(nullptr);
    if (cacheMode.tellsStatus()) Guarded(TellLookUps);
}

void vpEnableToolboxCacheDiagnosticStatusReport(bool on) { cacheMode.statusOn = on; }

void vpEnableToolboxCacheDiagnosticTrace(bool on) { cacheMode.traceOn = on; }

bool vpWritePathToCacheFile(vpPath path, const char* fileName) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr || fileName == nullptr) return false;
    return Guarded(false, [&] { return WriteCacheFile(*live, fileName); });
}
