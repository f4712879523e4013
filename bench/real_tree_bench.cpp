// The ready-made POSIX host on this machine's own files, beside a bare walk that makes the same
// system calls. The trees are in the page cache after the first round.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <vpath/search.h>

#include "measures.h"
#include "support/host_calls.h"
#include "support/posix_host.h"
#include "support/rounds.h"

namespace {

constexpr const char* kRoots[] = {"/usr/include", "/usr/share"};

struct RealTree {
    RealTree() {
        for (const char* root : kRoots) addTree(root);
        if (list.empty()) throw std::runtime_error("neither /usr/include nor /usr/share is here");
        std::shuffle(files.begin(), files.end(), std::mt19937(3));
    }

    vpPath loadedPath() const {
        const vpPath path = NewPath(kPosixHost);
        load(path);
        return path;
    }
    void load(const vpPath& path) const { vpAddDirsString(path, list.c_str(), vpAddAtEnd); }

    size_t directories = 0;
    std::vector<std::string> files;  // names without directory
    std::string list;

  private:
    // Directories that the library reads by itself, and hidden ones, are no part of the path.
    void addTree(const char* root) {
        namespace fs = std::filesystem;
        std::error_code error;
        auto walk = fs::recursive_directory_iterator(root, error);
        if (error) return;
        addDirectory(root);
        for (; walk != fs::recursive_directory_iterator(); walk.increment(error)) {
            if (error) return;
            const std::string name = walk->path().filename();
            const bool special = name[0] == '.' || name[0] == '@' || name[0] == '+';
            if (!walk->is_directory(error)) {
                if (!special && walk->is_regular_file(error)) files.push_back(name);
            } else if (!walk->is_symlink(error)) {
                if (special || name == "private" || name.find_first_of(":;") != name.npos) {
                    walk.disable_recursion_pending();
                } else {
                    addDirectory(walk->path());
                }
            }
        }
    }

    void addDirectory(const std::string& name) {
        if (!list.empty()) list += ':';
        list += name;
        ++directories;
    }
};

std::shared_ptr<RealTree> Tree() {
    static const auto tree = std::make_shared<RealTree>();
    return tree;
}

std::vector<Contender> Load() {
    const auto tree = Tree();
    const vpPath path = NewPath(kPosixHost);
    const auto calls =
        std::make_shared<HostCalls>(Record(kPosixHost, path, [&] { tree->load(path); }));
    vpRemovePath(path);
    return {{"library",
             [tree] {
                 return InFreshProcess([&](const vpPath& fresh) { tree->load(fresh); },
                                       tree->files.size());
             }},
            {"callbacks", [tree, calls] {
                 return InFreshProcess(
                     [&](const vpPath& fresh) { Replay(kPosixHost, fresh, *calls); },
                     tree->files.size());
             }}};
}

std::vector<Contender> Refresh() {
    const auto tree = Tree();
    const vpPath path = tree->loadedPath();
    const auto refresh = [path] { vpRefreshAllDirectories(path, vpRefreshIfChanged); };
    const auto calls = std::make_shared<HostCalls>(Record(kPosixHost, path, refresh));
    const auto units = static_cast<double>(tree->directories);
    return {{"library", [=] { return Nanoseconds(refresh) / units; }},
            {"callbacks",
             [=] { return Nanoseconds([&] { Replay(kPosixHost, path, *calls); }) / units; }}};
}

// Verified look-ups of files that are there, and the readability tests alone.
std::vector<Contender> Lookup() {
    const auto tree = Tree();
    const vpPath path = tree->loadedPath();
    const auto lookups = [tree, path] {
        char fullName[8192];
        for (size_t i = 0; i < std::min<size_t>(tree->files.size(), 8192); ++i) {
            if (vpFindFirstFileInAll(path, tree->files[i].c_str(), nullptr, vpReadCheckVerify,
                                     nullptr, fullName) == 0) {
                throw std::runtime_error("not found: " + tree->files[i]);
            }
        }
    };
    const auto units = static_cast<double>(std::min<size_t>(tree->files.size(), 8192));
    const auto calls = std::make_shared<HostCalls>(Record(kPosixHost, path, lookups));
    return {{"library", [=] { return Nanoseconds(lookups) / units; }},
            {"callbacks",
             [=] { return Nanoseconds([&] { Replay(kPosixHost, path, *calls); }) / units; }}};
}

}  // namespace

void RegisterRealTreeMeasures() {
    RegisterMeasure({"real_tree/load", "ns/file", Load});
    RegisterMeasure({"real_tree/refresh", "ns/directory", Refresh});
    RegisterMeasure({"real_tree/lookup_verified", "ns", Lookup});
}
