// Adding directories to a new path and reading them, beside the callbacks alone. Each round is a
// fresh process.
#include <memory>
#include <string>

#include "measures.h"
#include "support/flat_index.h"
#include "support/generated_tree.h"
#include "support/host_calls.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

struct LoadCase {
    explicit LoadCase(size_t directories)
        : tree(TreeShape{.root = "load" + std::to_string(directories),
                         .directories = directories,
                         .privateDirectories = true}),
          list(tree.pathString()) {
        TreeHost::add(tree);
        const vpPath path = NewPath(TreeHost::functions());
        calls = Record(TreeHost::functions(), path, [&] { load(path); });
        vpRemovePath(path);
    }

    void load(const vpPath& path) const { vpAddDirsString(path, list.c_str(), vpAddAtEnd); }

    GeneratedTree tree;
    std::string list;
    HostCalls calls;
};

double PerFile(const LoadCase& loadCase, const std::function<void(const vpPath&)>& work) {
    return InChild([&]() -> std::vector<double> {
        const vpPath path = NewPath(TreeHost::functions());
        return {Nanoseconds([&] { work(path); }) / static_cast<double>(loadCase.tree.fileCount())};
    })[0];
}

Contender Library(std::string name, std::shared_ptr<LoadCase> loadCase) {
    return {std::move(name), [loadCase] {
                return PerFile(*loadCase, [&](const vpPath& path) { loadCase->load(path); });
            }};
}

// The names alone, into an index that has their number from the start.
Contender Flat(std::string name, std::shared_ptr<LoadCase> loadCase) {
    return {std::move(name), [loadCase] {
                return PerFile(*loadCase, [&](const vpPath&) {
                    FlatIndex flat(loadCase->tree.baseNames.size());
                    for (const GeneratedTree::Directory& directory : loadCase->tree.directories) {
                        const uint32_t number = flat.addDirectory(directory.name);
                        for (const std::string& entry : directory.entries) flat.add(number, entry);
                    }
                });
            }};
}

void RegisterLoad(size_t directories) {
    RegisterMeasure({"load/" + std::to_string(directories), "ns/file",
                     [directories] {
                         const auto loadCase = std::make_shared<LoadCase>(directories);
                         std::vector<Contender> contenders = {
                             Library("library", loadCase),
                             {"callbacks",
                              [loadCase] {
                                  return PerFile(*loadCase, [&](const vpPath& path) {
                                      Replay(TreeHost::functions(), path, loadCase->calls);
                                  });
                              }},
                         };
                         if (directories > 1000) {
                             const auto small = std::make_shared<LoadCase>(1000);
                             contenders.push_back(Library("at 1,000", small));
                             contenders.push_back(Flat("flat", loadCase));
                             contenders.push_back(Flat("flat at 1,000", small));
                         }
                         return contenders;
                     },
                     directories > 10000 ? size_t{3} : size_t{7}});
}

}  // namespace

void RegisterLoadMeasures() {
    for (const size_t directories : {10U, 100U, 1000U, 10000U, 100000U}) RegisterLoad(directories);
}
