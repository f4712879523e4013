// Changing which directories are on a path, and in what order. The cost of one directory should
// not depend on how many there are, although all share their last component and a file name. So the
// baseline of each measure is the same work on a tenth of the directories.
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <vpath/search.h>

#include "measures.h"
#include "support/host_calls.h"
#include "support/list_path.h"
#include "support/rounds.h"
#include "support/tree_host.h"

namespace {

struct EditCase {
    explicit EditCase(size_t count) {
        for (size_t i = 0; i < count; ++i) {
            names.push_back("/opt/edit/unit_" + std::to_string(i) + "/src");
            TreeHost::addDirectory(names.back(), {"shared.v"});
            list += (i == 0 ? "" : ":") + names.back();
        }
        for (size_t i = count; i-- > 0;) reversed += names[i] + (i == 0 ? "" : ":");
    }

    vpPath loadedPath() const {
        const vpPath path = NewPath(TreeHost::functions());
        vpAddDirsString(path, list.c_str(), vpAddAtEnd);
        search(path, names.front());
        return path;
    }

    // A look-up of the name that all directories hold, which has to be found in `directory`.
    static void search(const vpPath& path, const std::string& directory) {
        char file[512];
        const unsigned int found =
            vpFindFirstFileInAll(path, "shared", nullptr, vpReadCheckSkip, nullptr, file);
        if (found == 0 || directory + "/shared.v" != file) {
            throw std::runtime_error("\"shared\" is not found where it comes first");
        }
    }

    std::vector<std::string> names;
    std::string list, reversed;
};

// One way to edit: `start` makes the path, `edit` is timed; `inList` does to a list what it does to
// the order of the path.
struct Edit {
    const char* name;
    vpPath (*start)(const EditCase&);
    void (*edit)(const EditCase&, const vpPath&);
    void (*inList)(const EditCase&, ListPath&);
};

vpPath Empty(const EditCase&) { return NewPath(TreeHost::functions()); }
vpPath Loaded(const EditCase& edit) { return edit.loadedPath(); }

void AddBack(const EditCase& edit, ListPath& path) {
    for (const std::string& name : edit.names) path.addBack(name);
}
void AddFront(const EditCase& edit, ListPath& path) {
    for (const std::string& name : edit.names) path.addFront(name);
}
void RemoveFromFront(const EditCase& edit, ListPath& path) {
    for (const std::string& name : edit.names) path.remove(name);
}
void RemoveFromEnd(const EditCase& edit, ListPath& path) {
    for (size_t i = edit.names.size(); --i > 0;) path.remove(edit.names[i]);
}
void MoveInOrder(const EditCase& edit, ListPath& path) {
    for (const std::string& name : edit.names) path.moveToBack(name);
}
void MoveInReverse(const EditCase& edit, ListPath& path) {
    for (size_t i = edit.names.size(); i-- > 0;) path.moveToBack(edit.names[i]);
}

constexpr Edit kEdits[] = {
    {"add_string", Empty,
     [](const EditCase& edit, const vpPath& path) {
         vpAddDirsString(path, edit.list.c_str(), vpAddAtEnd);
         EditCase::search(path, edit.names.front());
     },
     AddBack},
    {"add_one_by_one", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpAddDir(path, name.c_str(), vpAddAtEnd);
         EditCase::search(path, edit.names.front());
     },
     AddBack},
    {"add_in_front", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpAddDir(path, name.c_str(), vpAddAtBeginning);
         EditCase::search(path, edit.names.back());
     },
     AddFront},
    {"add_in_front_searching", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) {
             vpAddDir(path, name.c_str(), vpAddAtBeginning);
             EditCase::search(path, name);
         }
     },
     AddFront},
    {"add_at_end_searching", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) {
             vpAddDir(path, name.c_str(), vpAddAtEnd);
             EditCase::search(path, edit.names.front());
         }
     },
     AddBack},
    {"remove_from_front", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpRemoveDir(vpFindDirFullName(path, name.c_str()));
     },
     RemoveFromFront},
    {"remove_from_end_searching", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         for (size_t i = edit.names.size(); --i > 0;) {
             vpRemoveDir(vpFindDirFullName(path, edit.names[i].c_str()));
             EditCase::search(path, edit.names.front());
         }
     },
     RemoveFromEnd},
    {"reverse", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         vpReplacePath(path, edit.reversed.c_str());
         EditCase::search(path, edit.names.back());
     },
     MoveInReverse},
    {"replace_by_itself", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         vpReplacePath(path, edit.list.c_str());
         EditCase::search(path, edit.names.front());
     },
     MoveInOrder},
};

// Each round is a fresh process: what others have left of the heap does not count.
Contender InFreshProcess(std::string name, size_t directories,
                         const std::function<double(const EditCase&)>& once) {
    return {std::move(name), [directories, once] {
                return InChild([&]() -> std::vector<double> {
                    const size_t repeats = 10000 / directories;
                    const EditCase edit(directories);
                    double spent = 0;
                    for (size_t i = 0; i < repeats; ++i) spent += once(edit);
                    return {spent / static_cast<double>(repeats * directories)};
                })[0];
            }};
}

Contender Library(std::string name, const Edit& edit, size_t directories) {
    return InFreshProcess(std::move(name), directories, [&edit](const EditCase& editCase) {
        const vpPath path = edit.start(editCase);
        const double spent = Nanoseconds([&] { edit.edit(editCase, path); });
        vpRemovePath(path);
        return spent;
    });
}

Contender List(std::string name, const Edit& edit, size_t directories) {
    return InFreshProcess(std::move(name), directories, [&edit](const EditCase& editCase) {
        ListPath path(TreeHost::functions());
        if (edit.start == Loaded) AddBack(editCase, path);
        return Nanoseconds([&] { edit.inList(editCase, path); });
    });
}

}  // namespace

void RegisterEditMeasures() {
    for (const Edit& edit : kEdits) {
        RegisterMeasure({std::string("edit/") + edit.name + "/10000", "ns/directory", [&edit] {
                             return std::vector<Contender>{
                                 Library("library", edit, 10000), Library("at 1,000", edit, 1000),
                                 List("list", edit, 10000), List("list at 1,000", edit, 1000)};
                         }});
    }
}
