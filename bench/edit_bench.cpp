// Changing which directories are on a path, and in what order. The cost of one directory should
// not depend on how many there are, although all share their last component and a file name. So the
// baseline of each measure is the same work on a tenth of the directories.
#include <algorithm>
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

// One way to edit: `start` makes the path, `edit` is timed.
struct Edit {
    const char* name;
    vpPath (*start)(const EditCase&);
    void (*edit)(const EditCase&, const vpPath&);
};

vpPath Empty(const EditCase&) { return NewPath(TreeHost::functions()); }
vpPath Loaded(const EditCase& edit) { return edit.loadedPath(); }

constexpr Edit kEdits[] = {
    {"add_string", Empty,
     [](const EditCase& edit, const vpPath& path) {
         vpAddDirsString(path, edit.list.c_str(), vpAddAtEnd);
         EditCase::search(path, edit.names.front());
     }},
    {"add_one_by_one", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpAddDir(path, name.c_str(), vpAddAtEnd);
         EditCase::search(path, edit.names.front());
     }},
    {"add_in_front", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpAddDir(path, name.c_str(), vpAddAtBeginning);
         EditCase::search(path, edit.names.back());
     }},
    {"add_in_front_searching", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) {
             vpAddDir(path, name.c_str(), vpAddAtBeginning);
             EditCase::search(path, name);
         }
     }},
    {"add_at_end_searching", Empty,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) {
             vpAddDir(path, name.c_str(), vpAddAtEnd);
             EditCase::search(path, edit.names.front());
         }
     }},
    {"remove_from_front", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         for (const auto& name : edit.names) vpRemoveDir(vpFindDirFullName(path, name.c_str()));
     }},
    {"remove_from_end_searching", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         for (size_t i = edit.names.size(); --i > 0;) {
             vpRemoveDir(vpFindDirFullName(path, edit.names[i].c_str()));
             EditCase::search(path, edit.names.front());
         }
     }},
    {"reverse", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         vpReplacePath(path, edit.reversed.c_str());
         EditCase::search(path, edit.names.back());
     }},
    {"replace_by_itself", Loaded,
     [](const EditCase& edit, const vpPath& path) {
         vpReplacePath(path, edit.list.c_str());
         EditCase::search(path, edit.names.front());
     }},
};

Contender Editor(std::string name, const Edit& edit, const std::shared_ptr<EditCase>& editCase,
                 size_t repeats) {
    return {std::move(name), [&edit, editCase, repeats] {
                double spent = 0;
                for (size_t i = 0; i < repeats; ++i) {
                    const vpPath path = edit.start(*editCase);
                    spent += Nanoseconds([&] { edit.edit(*editCase, path); });
                    vpRemovePath(path);
                }
                return spent / static_cast<double>(repeats * editCase->names.size());
            }};
}

}  // namespace

void RegisterEditMeasures() {
    for (const Edit& edit : kEdits) {
        RegisterMeasure({std::string("edit/") + edit.name + "/10000", "ns/directory", [&edit] {
                             return std::vector<Contender>{
                                 Editor("library", edit, std::make_shared<EditCase>(10000), 1),
                                 Editor("at 1,000", edit, std::make_shared<EditCase>(1000), 5)};
                         }});
    }
}
