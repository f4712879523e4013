// Directory trees from a seeded generator: the same on every machine and in every run.
//
// File names are one to three English words, some in mixed case, 12 characters long on average;
// every base name but the common ones stands in two directories, so that half of the names are
// distinct. Five out of six files end in ".v", the others in ".p".
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

// Stand in every directory that holds at least that many files.
inline constexpr const char* kCommonNames[] = {"Contents", "startup", "demo_all", "info",
                                               "isequal"};

struct TreeShape {
    std::string root;  // "/opt/ROOT": trees of different shape need different ones
    size_t directories;
    size_t filesEach = 100;
    bool privateDirectories = false;  // in each directory whose number is a multiple of ten
};

struct GeneratedTree {
    struct Directory {
        std::string name;  // full
        std::vector<std::string> entries;
        std::vector<std::string> privateFiles;  // of its `private` directory; empty: it has none
    };

    explicit GeneratedTree(const TreeShape& shape);

    std::string pathString() const;  // all directories, separated by ':'
    size_t fileCount() const;        // those in private directories included

    std::vector<Directory> directories;
    std::vector<std::string> baseNames;    // each in two directories
    std::vector<std::string> absentNames;  // of the same kind, in none; as many, 65,536 at most
};
