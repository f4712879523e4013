// The options that say which path a command works on. They are the same for every command.
#pragma once

#include <string>
#include <vector>

#include "options/extension_array.h"

namespace CLI {
class App;
}

struct PathSource {
    enum Kind { kList, kListFile, kTree };
    Kind kind;
    std::string text;  // a path string, the name of a file of them, the directory above the tree
};

struct PathOptions {
    std::vector<PathSource> sources;  // in the order written; else see UseDefaultPath
    bool sourcesAreDefault = false;   // from VPATH
    std::string currentDirectory;     // empty: the process's
    std::string cacheFile;            // to answer from; empty: none
    std::string root;                 // the installation whose toolbox folder the cache knows
    std::vector<std::string> extensions;
    bool anyExtension = true;
    bool ignoreCase = false;
    bool stats = false;

    ExtensionArray extensionArray() const {
        return anyExtension ? ExtensionArray() : ExtensionArray(extensions);
    }
};

// The options write to `options`, which must outlive the parse.
void AddPathOptions(CLI::App& app, PathOptions& options);

// --ext alone, which is one of them.
void AddExtensionOption(CLI::App& app, PathOptions& options);

// After the parse: where no option said which directories are on the path, those of the list in
// the environment variable VPATH are.
void UseDefaultPath(PathOptions& options);
