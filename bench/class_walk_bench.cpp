// Walking class directories, a class at a time, beside the same walk over fewer.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <vpath/search.h>

#include "measures.h"
#include "support/host_calls.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

constexpr size_t kFewClasses = 1000;
constexpr size_t kStepsPerRound = 100000;

// `classes` class directories, `each` in a directory of the path.
struct ClassTree {
    ClassTree(const std::string& root, size_t count, size_t each, bool sameName) : classes(count) {
        std::string list;
        for (size_t first = 0; first < count; first += each) {
            const std::string name = root + "/d" + std::to_string(first);
            std::vector<std::string> entries;
            for (size_t i = first; i < first + each; ++i) {
                const std::string number = sameName ? std::string() : std::to_string(i);
                entries.push_back("@Class" + number);
                TreeHost::addDirectory(name + "/" + entries.back(), {"Class" + number + ".v"});
            }
            TreeHost::addDirectory(name, entries);
            list += (list.empty() ? "" : ":") + name;
        }
        path = NewPath(TreeHost::functions());
        vpAddDirsString(path, list.c_str(), vpAddAtEnd);
    }
    ~ClassTree() { vpRemovePath(path); }
    ClassTree(const ClassTree&) = delete;
    ClassTree& operator=(const ClassTree&) = delete;

    size_t classes;
    vpPath path;
};

// One kind of walk: how its directories lie, and how to step.
struct Walk {
    const char* name;
    bool inOneDirectory;
    bool sameName;
    vpDir (*start)(const ClassTree& tree);
    vpDir (*next)(const vpDir& start, const vpDir& previous);
};

vpDir FromNullDir(const ClassTree& tree) { return vpGetNullDir(tree.path); }

vpDir FromFirstDirectory(const ClassTree& tree) { return vpGetNextPathDir(vpGetCWD(tree.path)); }

const Walk kWalks[] = {
    {"all", false, false, FromNullDir,
     [](const vpDir&, const vpDir& previous) { return vpGetNextMethodDir(previous); }},
    {"of_one_class", false, true, FromNullDir,
     [](const vpDir&, const vpDir& previous) {
         return vpGetNextMethodClassDir(previous, "Class");
     }},
    {"of_one_directory", true, false, FromFirstDirectory,
     [](const vpDir& start, const vpDir& previous) { return vpGetMethodDirs(start, previous); }},
};

Contender Walker(std::string name, const Walk& walk, size_t classes) {
    const std::string root = std::string("/opt/walk_") + walk.name + std::to_string(classes);
    const size_t each = walk.inOneDirectory ? classes : walk.sameName ? 1 : 100;
    const auto tree = std::make_shared<ClassTree>(root, classes, each, walk.sameName);
    const size_t repeats = kStepsPerRound / classes;
    return {std::move(name), [tree, &walk, repeats] {
                size_t seen = 0;
                const double spent = Nanoseconds([&] {
                    for (size_t i = 0; i < repeats; ++i) {
                        const vpDir start = walk.start(*tree);
                        for (vpDir at = walk.next(start, start); vpGetDirType(at) != vpDirTypeNone;
                             at = walk.next(start, at)) {
                            ++seen;
                        }
                    }
                });
                if (seen != tree->classes * repeats) {
                    throw std::runtime_error("the walk missed classes");
                }
                return spent / static_cast<double>(seen);
            }};
}

}  // namespace

void RegisterClassWalkMeasures() {
    for (const Walk& walk : kWalks) {
        for (const size_t classes : {kFewClasses, kStepsPerRound}) {
            RegisterMeasure({std::string("class_walk/") + walk.name + "/" + std::to_string(classes),
                             "ns/class", [&walk, classes] {
                                 std::vector<Contender> contenders = {
                                     Walker("library", walk, classes)};
                                 if (classes != kFewClasses) {
                                     contenders.push_back(Walker("at 1000", walk, kFewClasses));
                                 }
                                 return contenders;
                             }});
        }
    }
}
