#include "loading/stats.h"

#include <cstdio>
#include <string>
#include <unordered_set>

#include <hostkit/hostkit.h>
#include <vpath/search.h>

#include "loading/path_names.h"
#include "loading/toolbox_cache.h"

namespace {

struct Contents {
    size_t pathDirectories = 0;
    size_t specialDirectories = 0;  // private, class and package directories
    size_t files = 0;
    size_t names = 0;
};

// A file's name as searches look it up.
std::string SearchName(const std::string& fullName) {
    std::string name = StemOf(fullName);
    hkLowerCase(name.data());
    return name;
}

Contents ContentsOf(const vpPath& path) {
    Contents contents;
    vpDir dir = vpGetNullDir(path);
    while (vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone) ++contents.pathDirectories;

    vpSearch* search = vpCreateAllSearch(path, nullptr, nullptr, vpReadCheckSkip);
    char fullName[kNameRoom];
    std::unordered_set<std::string> names;
    while (vpFindNextFile(search, nullptr, fullName) != 0) {
        ++contents.files;
        names.insert(SearchName(fullName));
    }
    contents.names = names.size();
    vpDestroySearch(&search);

    search = vpCreateAllSearch(path, nullptr, nullptr, vpReadCheckSkip);
    while (vpFindNextDir(search, &dir) != 0) {
        if (vpGetDirType(dir) >= vpDirTypePackage) ++contents.specialDirectories;
    }
    vpDestroySearch(&search);
    return contents;
}

struct CallKind {
    const char* field;
    const char* words;
    uint64_t CallCounts::*count;
};
constexpr CallKind kCallKinds[] = {
    {"listing", "listing", &CallCounts::listings},
    {"accessibility", "accessibility", &CallCounts::accessibility},
    {"readability", "readability", &CallCounts::readability},
    {"is_directory", "is-directory", &CallCounts::isDirectory},
    {"time_stamp", "time stamp", &CallCounts::timeStamps},
    {"change_directory", "change-directory", &CallCounts::changeDirectory},
};

// The calls from `before` to `now`, as fields and in words.
struct Calls {
    Value::Object fields;
    std::string words;

    Calls(const CallCounts& now, const CallCounts& before) {
        for (const CallKind& kind : kCallKinds) {
            const uint64_t count = now.*kind.count - before.*kind.count;
            fields.push_back({kind.field, count});
            words += (words.empty() ? "" : ", ") + std::to_string(count) + " " + kind.words;
        }
    }
};

}  // namespace

Record StatsRecord(const LoadedPath& loaded) {
    const Calls toLoad(loaded.loadCalls, {});
    const Calls toAnswer(HostCalls(), loaded.loadCalls);  // counting the contents may ask more
    const CacheStatistics cache =
        loaded.fromCache ? RevertFromCache(loaded.path) : CacheStatistics();
    const Contents contents = ContentsOf(loaded.path);
    const double milliseconds = loaded.loadSeconds * 1000;
    char loadTime[40];
    std::snprintf(loadTime, sizeof loadTime, "%.1f", milliseconds);

    Record record("stats");
    record.field("directories", contents.pathDirectories)
        .field("special_directories", contents.specialDirectories)
        .field("files", contents.files)
        .field("distinct_names", contents.names)
        .field("callbacks_to_load", toLoad.fields)
        .field("callbacks_to_answer", toAnswer.fields)
        .field("load_milliseconds", milliseconds)
        .field("bytes_held", loaded.loadedBytes);
    std::string cacheLine;
    if (loaded.fromCache) {
        record.field("cache", Value::Object{{"requests", cache.requests},
                                            {"hits", cache.hits},
                                            {"comparisons", cache.comparisons},
                                            {"callbacks_saved", cache.hits}});
        cacheLine = "cache: " + std::to_string(cache.requests) + " requests, " +
                    std::to_string(cache.hits) + " hits, " + std::to_string(cache.comparisons) +
                    " comparisons; callbacks saved: " + std::to_string(cache.hits) + "\n";
    }
    return record.text("directories: " + std::to_string(contents.pathDirectories) +
                       " on the path, " + std::to_string(contents.specialDirectories) +
                       " special ones inside them\n" + "files: " + std::to_string(contents.files) +
                       "\n" + "distinct names: " + std::to_string(contents.names) + "\n" +
                       "callbacks to load: " + toLoad.words + "\n" + "callbacks to answer: " +
                       toAnswer.words + "\n" + cacheLine + "load time: " + loadTime + " ms\n" +
                       "bytes held: " + std::to_string(loaded.loadedBytes));
}
