// Random commands for a path and the disk under it, weighted so that what is interesting comes
// often: changes within the resolution of time stamps, directories that go and come back, special
// ones, names that many share, and searches that stay open meanwhile.
#pragma once

#include <deque>
#include <functional>
#include <map>

#include "support/path_test.h"

class Steps {
  public:
    // `below` answers a number below the given one; `directories` tells the names of those that are
    // known to the path, what is on the path first.
    Steps(const FakeHost& host, std::function<size_t(size_t)> below,
          std::function<std::vector<std::string>()> directories);
    std::string next();

    // What a text of the grammar stands for, this time.
    std::string expand(const std::string& text);

    // Whether what the command is about is there: a script may have lost the lines that made it.
    static bool IsPossible(const FakeHost& host, bool hasPath, const std::string& command);

  private:
    std::string one(const std::vector<std::string>& choices) {
        return choices[below_(choices.size())];
    }
    std::string symbol(char name);
    std::string onDisk(bool isDirectory);

    const FakeHost& host_;
    std::function<size_t(size_t)> below_;
    std::function<std::vector<std::string>()> directories_;
    std::map<char, std::vector<std::string>> instead_;  // of what the grammar says
    std::deque<std::string> pending_;
};
