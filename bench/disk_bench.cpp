// The ready-made POSIX host on a generated tree of real files, beside the same system calls without
// the library. The trees are in the page cache after the first round.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <forward_list>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "measures.h"
#include "support/disk_tree.h"
#include "support/host_calls.h"
#include "support/posix_host.h"
#include "support/rounds.h"

namespace {

// The last one of each shape is kept until another is wanted: making a million files takes long.
std::shared_ptr<DiskTree> TreeOf(size_t directories, size_t filesEach = 100) {
    static std::shared_ptr<DiskTree> last;
    static size_t lastDirectories, lastFiles;
    if (last == nullptr || lastDirectories != directories || lastFiles != filesEach) {
        last.reset();
        last = std::make_shared<DiskTree>(TreeShape{.root = "disk",
                                                    .directories = directories,
                                                    .filesEach = filesEach,
                                                    .privateDirectories = false});
        lastDirectories = directories;
        lastFiles = filesEach;
    }
    return last;
}

// A cache file of the tree, beside its root.
std::string WriteCache(const DiskTree& tree, const std::string& list) {
    std::string name = tree.root + "/cache";
    Install(kPosixHost);
    const vpPath path = vpCreatePathWithPreFrozen(0, "frozen", (tree.root + "/toolbox").c_str(),
                                                  vpCaseDefault, false);
    vpAddDirsString(path, list.c_str(), vpAddAtEnd);
    const bool written = vpWritePathToCacheFile(path, name.c_str());
    vpRemovePath(path);
    if (!written) throw std::runtime_error("no cache file");
    return name;
}

std::vector<Contender> Load(size_t directories, bool fromCache) {
    const auto tree = TreeOf(directories);
    const auto list = std::make_shared<std::string>(tree->pathString());
    const std::string cache = fromCache ? WriteCache(*tree, *list) : "";
    const auto load = [=](const vpPath& path) {
        if (fromCache) vpUseToolboxCache(path, cache.c_str(), tree->root.c_str(), false);
        vpAddDirsString(path, list->c_str(), vpAddAtEnd);
    };
    const auto calls = std::make_shared<HostCalls>();
    for (const std::string& directory : tree->directories) {
        calls->add(HostCalls::kAccessibility, directory);
        calls->add(HostCalls::kModificationTime, directory);
        calls->add(HostCalls::kList, directory);
    }
    return {{"library", [=] { return InFreshProcess(load, tree->fileCount); }},
            {"callbacks", [=] {
                 return InFreshProcess(
                     [&](const vpPath& path) { Replay(kPosixHost, path, *calls); },
                     tree->fileCount);
             }}};
}

struct Loaded {
    explicit Loaded(std::shared_ptr<DiskTree> files)
        : tree(std::move(files)), path(NewPath(kPosixHost)) {
        vpAddDirsString(path, tree->pathString().c_str(), vpAddAtEnd);
    }
    ~Loaded() { vpRemovePath(path); }
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

    std::shared_ptr<DiskTree> tree;
    vpPath path;
};

// Names in a list of blocks, among blocks for the files of each: how they lie for whoever keeps the
// directories of a path together with what is in them.
class ScatteredNames {
  public:
    ScatteredNames(const std::vector<std::string>& names, size_t filesEach) {
        for (const std::string& name : names) {
            names_.push_front(name);
            for (size_t i = 0; i < filesEach; ++i) files_.push_front({});
        }
        names_.reverse();
    }
    template <class Act>
    void forEach(Act act) const {
        for (const std::string& name : names_) act(name.c_str());
    }

  private:
    struct File {
        char bytes[88];
    };
    std::forward_list<std::string> names_;
    std::forward_list<File> files_;
};

// One time-stamp call for each directory, and the listings of those that changed.
std::vector<Contender> Refresh(size_t directories, bool changesOne) {
    const auto loaded = std::make_shared<Loaded>(TreeOf(directories));
    const auto calls = std::make_shared<HostCalls>();
    const std::vector<std::string>& names = loaded->tree->directories;
    const std::string& changed = names[names.size() / 2];
    for (const std::string& name : names) {
        calls->add(HostCalls::kModificationTime, name);
        if (changesOne && &name == &changed) calls->add(HostCalls::kList, name);
    }
    const auto scattered = std::make_shared<ScatteredNames>(names, 100);
    const auto change = [=, count = std::make_shared<time_t>(1000)] {
        if (!changesOne) return;
        const timespec times[2] = {{++*count, 0}, {*count, 0}};  // long past, so that it is trusted
        if (utimensat(AT_FDCWD, changed.c_str(), times, 0) != 0) throw std::runtime_error("utime");
    };
    vpRefreshAllDirectories(loaded->path, vpRefreshAlways);
    const auto units = static_cast<double>(directories);
    return {
        {"library",
         [=] {
             change();
             return Nanoseconds(
                        [&] { vpRefreshAllDirectories(loaded->path, vpRefreshIfChanged); }) /
                    units;
         }},
        {"callbacks",
         [=] { return Nanoseconds([&] { Replay(kPosixHost, loaded->path, *calls); }) / units; }},
        {"scattered", [=] {
             return Nanoseconds([&] {
                        scattered->forEach([&](const char* name) {
                            benchmark::DoNotOptimize(
                                kPosixHost.modificationTime(loaded->path, name));
                        });
                    }) /
                    units;
         }}};
}

// A directory that is read again and holds what it held, beside its listing.
std::vector<Contender> Merge(size_t files) {
    const auto loaded = std::make_shared<Loaded>(TreeOf(1, files));
    const vpDir directory = vpFindDirFullName(loaded->path, loaded->tree->directories[0].c_str());
    const auto calls = std::make_shared<HostCalls>();
    calls->add(HostCalls::kModificationTime, loaded->tree->directories[0]);
    calls->add(HostCalls::kList, loaded->tree->directories[0]);
    const size_t repeats = std::max<size_t>(1, 1000 / files);
    const auto units = static_cast<double>(repeats * loaded->tree->fileCount);
    const auto perFile = [units](double spent) { return spent / units; };
    return {{"library",
             [=] {
                 return perFile(Nanoseconds([&] {
                     for (size_t i = 0; i < repeats; ++i) {
                         vpSetDirChanged(directory);
                         vpRefreshDirectory(directory, vpRefreshPending);
                     }
                 }));
             }},
            {"callbacks", [=] {
                 return perFile(Nanoseconds([&] {
                     for (size_t i = 0; i < repeats; ++i) Replay(kPosixHost, loaded->path, *calls);
                 }));
             }}};
}

}  // namespace

void RegisterDiskMeasures() {
    for (const size_t files : {100U, 10000U, 100000U}) {
        RegisterMeasure(
            {"disk/merge/" + std::to_string(files), "ns/file", [files] { return Merge(files); }});
    }
    for (const size_t directories : {1000U, 10000U}) {
        const std::string size = std::to_string(directories);
        RegisterMeasure(
            {"disk/load/" + size, "ns/file", [directories] { return Load(directories, false); }});
        RegisterMeasure({"disk/load_from_cache/" + size, "ns/file",
                         [directories] { return Load(directories, true); }});
        RegisterMeasure({"disk/unchanged/" + size, "ns/directory",
                         [directories] { return Refresh(directories, false); }});
        RegisterMeasure({"disk/one_changed/" + size, "ns/directory",
                         [directories] { return Refresh(directories, true); }});
    }
}
