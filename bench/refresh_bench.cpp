// Looking for changes, beside the same callbacks in a loop.
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#include "measures.h"
#include "support/generated_tree.h"
#include "support/host_calls.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

// A loaded path, and a step on it that can be timed again and again.
struct RefreshCase {
    explicit RefreshCase(const TreeShape& shape) : tree(shape) {
        TreeHost::add(tree);
        path = NewPath(TreeHost::functions());
        vpAddDirsString(path, tree.pathString().c_str(), vpAddAtEnd);
    }
    ~RefreshCase() { vpRemovePath(path); }
    RefreshCase(const RefreshCase&) = delete;
    RefreshCase& operator=(const RefreshCase&) = delete;

    GeneratedTree tree;
    vpPath path;
    std::function<void()> change;  // next to nothing: it is timed with the step
    std::function<void()> step;
    size_t repeats = 1;
    double units = 1;
};

Contender Library(std::string name, std::shared_ptr<RefreshCase> refresh) {
    return {std::move(name), [refresh] {
                const double spent = Nanoseconds([&] {
                    for (size_t i = 0; i < refresh->repeats; ++i) {
                        refresh->change();
                        refresh->step();
                    }
                });
                return spent / static_cast<double>(refresh->repeats) / refresh->units;
            }};
}

Contender Callbacks(const std::shared_ptr<RefreshCase>& refresh, size_t listings) {
    refresh->change();
    auto calls =
        std::make_shared<HostCalls>(Record(TreeHost::functions(), refresh->path, refresh->step));
    if (calls->count(HostCalls::kList) != listings)
        throw std::runtime_error("the refresh read other directories than changed");
    return {"callbacks", [refresh, calls] {
                const double spent = Nanoseconds([&] {
                    for (size_t i = 0; i < refresh->repeats; ++i) {
                        Replay(TreeHost::functions(), refresh->path, *calls);
                    }
                });
                return spent / static_cast<double>(refresh->repeats) / refresh->units;
            }};
}

std::shared_ptr<RefreshCase> WholePath(size_t directories, bool changesOne) {
    auto refresh = std::make_shared<RefreshCase>(TreeShape{.root = "refresh",
                                                           .directories = directories,
                                                           .filesEach = 10,
                                                           .privateDirectories = true});
    RefreshCase* const self = refresh.get();
    refresh->change = [self, changesOne] {
        if (changesOne)
            TreeHost::touch(self->tree.directories[self->tree.directories.size() / 2].name);
    };
    refresh->step = [self] { vpRefreshAllDirectories(self->path, vpRefreshIfChanged); };
    refresh->units = static_cast<double>(directories);
    return refresh;
}

// One directory that is read again and holds what it held.
std::shared_ptr<RefreshCase> Merge(size_t files) {
    auto refresh = std::make_shared<RefreshCase>(
        TreeShape{.root = "merge" + std::to_string(files), .directories = 1, .filesEach = files});
    RefreshCase* const self = refresh.get();
    const vpDir directory = vpFindDirFullName(self->path, self->tree.directories[0].name.c_str());
    refresh->change = [directory] { vpSetDirChanged(directory); };
    refresh->step = [directory] { vpRefreshDirectory(directory, vpRefreshPending); };
    refresh->units = static_cast<double>(files);
    refresh->repeats = std::max<size_t>(1, 10000 / files);
    return refresh;
}

void RegisterMerge(size_t files) {
    RegisterMeasure(
        {"refresh/merge/" + std::to_string(files), "ns/file", [files] {
             const auto merge = Merge(files);
             std::vector<Contender> contenders = {Library("library", merge), Callbacks(merge, 1)};
             if (files > 100) contenders.push_back(Library("at 100", Merge(100)));
             return contenders;
         }});
}

}  // namespace

void RegisterRefreshMeasures() {
    for (const size_t directories : {100U, 1000U, 10000U}) {
        const std::string size = std::to_string(directories);
        RegisterMeasure(
            {"refresh/unchanged/" + size, "ns/directory", [directories] {
                 const auto refresh = WholePath(directories, false);
                 return std::vector<Contender>{Library("library", refresh), Callbacks(refresh, 0)};
             }});
        RegisterMeasure(
            {"refresh/one_changed/" + size, "ns/directory", [directories] {
                 const auto refresh = WholePath(directories, true);
                 return std::vector<Contender>{Library("library", refresh), Callbacks(refresh, 1)};
             }});
    }
    RegisterMeasure({"refresh/frozen/10000", "ns/directory", [] {
                         const auto refresh = WholePath(10000, false);
                         for (const auto& directory : refresh->tree.directories) {
                             vpFreeze(vpFindDirFullName(refresh->path, directory.name.c_str()));
                         }
                         return std::vector<Contender>{
                             Library("library", refresh),
                             Library("not frozen", WholePath(10000, false))};
                     }});
    for (const size_t files : {100U, 1000U, 10000U, 100000U}) RegisterMerge(files);
}
