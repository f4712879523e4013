// What most tests start from: a fake host with one path on it, and scripts that work on both.
//
// A script has one command a line, or several between " ; ". What stands after "=>" is the whole
// answer that a command must give:
//
//     tree /a/f.v /a/@C/ ; path /a     the host's tree; a path with directories and a listener
//     files V:/a f v,p => 1:/a/f.v     all hits of a visible search from /a
//     find /a /b => 2/a 0              kinds and names; 0 for the null directory
//     events => 5 /a                   since it was last asked
//
// A number before a hit is the search's result, '*' 0xFFFFFFFF. '' is an empty argument, NULL a
// null one, '-' no directory. After each command the path's structures are checked.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <vpath/search.h>

#include "support/fake_host.h"

// A failure for each fault in the structures of a path.
void CheckTable(const vpPath& path);

std::string OnPath(const vpPath& path);  // the names along the path, joined by blanks

// Which of the retrieving calls to use.
enum Want { kFiles, kUnspecified, kSubdirectories, kDirs };

// One step of a search: "1:/a/f.v", or "" at its end. Fails when directory and name do not agree.
std::string NextHit(vpSearch* search, Want want = kFiles);

// All that is left, joined by blanks; ends the search. "null" for a null search.
std::string HitsOf(vpSearch* search, Want want = kFiles);

// Creates by the first letter of what the calls are named after: All, Visible (from a directory),
// PathOnly ('O'), Private, Dir, Dirname ('N'), Method, DirnameVisible ('W'), FilenameVisible ('F').
// With the path's own case rule the calls without "Iterator" are used.
vpSearch* MakeSearch(const vpPath& path, char kind, const char* from, const char* name,
                     const char** exts = nullptr, vpReadCheck check = vpReadCheckSkip,
                     vpCaseSensitivity rule = vpCaseOfPath);

class PathTest : public testing::Test {
  public:
    void run(const char* script);
    std::string step(const std::string& command);  // its answer
    vpDir dir(const std::string& name) { return vpFindDirFullName(path, name.c_str()); }
    void forget();  // empties the host's record
    ~PathTest() override {
        for (vpSearch*& search : parked_) vpDestroySearch(&search);
        vpDestroySearch(&search_);
    }

    FakeHost host;
    vpPath path;

  private:
    struct Asked {
        explicit Asked(const std::vector<std::string>& words);  // keeps pointers to them

        char kind;
        std::string from;
        const char* name;
        std::vector<std::string> texts;
        std::vector<const char*> exts;
        vpReadCheck check = vpReadCheckSkip;
        vpCaseSensitivity rule = vpCaseOfPath;
    };
    vpSearch* makeSearch(const std::vector<std::string>& words);
    std::string firstHit(const std::vector<std::string>& words);
    std::string contents(const std::string& name);

    vpSearch* search_ = nullptr;
    vpSearch* parked_[3] = {};  // "swap N" changes the open search for one of these
    std::map<std::string, vpDir> kept_;
    std::map<std::string, vpRegisteredInterest> interests_;
};
