// A tree of real files in a directory of its own, removed at the end.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

class TempTree {
  public:
    TempTree() {
        char name[] = "/tmp/vpath_test.XXXXXX";
        EXPECT_NE(mkdtemp(name), nullptr);
        root_ = name;
        chmod(name, 0755);
    }
    ~TempTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    // Names below the root: "dir/", "dir/file", "link -> target". What is above comes to be too.
    void add(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            const size_t arrow = name.find(" -> ");
            const std::filesystem::path path = at(name.substr(0, arrow));
            std::filesystem::create_directories(path.parent_path());
            if (arrow != std::string::npos) {
                std::filesystem::create_symlink(name.substr(arrow + 4), path);
            } else if (name.back() != '/') {
                std::ofstream(path).put('\n');
            }
        }
    }
    std::string at(const std::string& name) const { return root_ + "/" + name; }
    const std::string& root() const { return root_; }

  private:
    std::string root_;
};
