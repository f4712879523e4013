// A generated tree as real files, empty ones, in a temporary directory that goes with the object.
#pragma once

#include <string>
#include <vector>

#include "support/generated_tree.h"

class DiskTree {
  public:
    // Cost: some microseconds a file. Throws std::runtime_error when the files cannot be made.
    explicit DiskTree(const TreeShape& shape);
    ~DiskTree();
    DiskTree(const DiskTree&) = delete;
    DiskTree& operator=(const DiskTree&) = delete;

    std::vector<std::string> directories;  // full names, in the order of the tree's
    size_t fileCount = 0;
    std::string root;                // of the installation: its toolbox folder holds them
    std::string pathString() const;  // all directories, separated by ':'

  private:
    void addFiles(const std::string& directory, const std::vector<std::string>& names);

    std::string folder_;
};
