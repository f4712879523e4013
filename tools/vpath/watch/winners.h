// What names stand for, remembered.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <vpath/path.h>

#include "options/extension_array.h"
#include "options/path_options.h"

struct WinnerChange {
    std::string name;
    std::string before;  // full names of files; empty: none
    std::string now;
};

// Looks names up as `vpath which` does.
class Winners {
  public:
    using DirNamer = std::function<std::string(const vpDir& dir)>;

    // `nameOfDir` says how directories are shown. `options` are kept.
    Winners(const vpPath& path, const PathOptions& options, const std::vector<std::string>& names,
            DirNamer nameOfDir);

    // Looks all names up. Answers those that stand for another file than the last time, which was
    // none at first.
    std::vector<WinnerChange> update();

    // All as of the last update, as changes from none.
    std::vector<WinnerChange> all() const;

  private:
    struct Winner {
        std::string name;
        std::string file;
    };

    std::string find(const std::string& name);

    const vpPath path_;
    const DirNamer nameOfDir_;
    std::vector<Winner> winners_;
    ExtensionArray extensions_;
};
