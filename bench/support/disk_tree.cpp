#include "support/disk_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

DiskTree::DiskTree(const TreeShape& shape)
    : folder_(std::filesystem::temp_directory_path() / "vpath_bench_XXXXXX") {
    if (mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("no temporary directory");
    root = folder_ + "/opt/" + shape.root;
    const GeneratedTree tree(shape);
    for (const GeneratedTree::Directory& directory : tree.directories) {
        directories.push_back(folder_ + directory.name);
        std::filesystem::create_directories(directories.back());
        addFiles(directories.back(), directory.entries);
        if (!directory.privateFiles.empty()) {
            addFiles(directories.back() + "/private", directory.privateFiles);
        }
        // What has just been made is read again by the next refresh.
        const timespec longAgo[2] = {{1000, 0}, {1000, 0}};
        if (utimensat(AT_FDCWD, directories.back().c_str(), longAgo, 0) != 0) {
            throw std::runtime_error("cannot set the time of " + directories.back());
        }
    }
}

DiskTree::~DiskTree() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string DiskTree::pathString() const {
    std::string list;
    for (const std::string& directory : directories) {
        if (!list.empty()) list += ':';
        list += directory;
    }
    return list;
}

void DiskTree::addFiles(const std::string& directory, const std::vector<std::string>& names) {
    const int at = open(directory.c_str(), O_PATH | O_DIRECTORY);
    bool made = at >= 0;
    for (const std::string& name : names) {
        if (name == "private") {
            made = made && mkdirat(at, "private", 0700) == 0;
        } else if (mknodat(at, name.c_str(), S_IFREG | 0600, 0) == 0) {
            ++fileCount;
        } else {
            made = made && errno == EEXIST;  // a tree of one directory has its names twice there
        }
    }
    close(at);
    if (!made) throw std::runtime_error("cannot make files in " + directory);
}
