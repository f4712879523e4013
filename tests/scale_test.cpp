// Work on many directories and files. There is no clock here: a step that is quadratic runs into
// ctest's time limit, one that recurses into the end of the stack.
#include <hostkit/hostkit.h>

#include <cstring>

#include "support/path_test.h"

namespace {

constexpr int kMany = 10000;
constexpr int kVeryMany = 100000;

class Scale : public PathTest {
  protected:
    // All directories hold the same names, and the last component of those on the path is the same.
    static std::string numbered(int number) { return "/d/" + std::to_string(number) + "/src"; }
    void SetUp() override {
        host.add({"/cwd/same.v", "/cwd/@Cls/same.v"});
        for (int at = 0; at < 2 * kMany; ++at) {
            host.add({numbered(at) + "/same.v", numbered(at) + "/@Cls/same.v"});
        }
        host.recording = false;
        run("path -");
    }
    // Searches that end with their first match, one for each kind of list.
    void searchFirst(const std::string& expected) {
        char found[8192];
        for (const char kind : {'A', 'M', 'V'}) {
            vpSearch* search = MakeSearch(path, kind, "", kind == 'M' ? "@Cls/same" : "same");
            vpFindNextFile(search, nullptr, found);
            ASSERT_EQ(found, expected + (kind == 'M' ? "/@Cls/same.v" : "/same.v"));
            vpFindNextDir(search, nullptr);
            vpDestroySearch(&search);
        }
    }
    void expectLast(int number) {
        vpSearch* search = MakeSearch(path, 'O', "", "same");
        std::string found, next;
        while (!(next = NextHit(search)).empty()) found = next;
        vpDestroySearch(&search);
        EXPECT_EQ(found, "*:" + numbered(number) + "/same.v");
        CheckTable(path);
    }
    static std::string listOf(int from, int to, int step) {
        std::string list;
        for (int at = from; at != to; at += step) list += numbered(at) + ":";
        return list;
    }
};

TEST_F(Scale, DirectoriesAddedAndRemovedWithASearchBetween) {
    for (const int way : {0, 1, 2}) {  // at the end, at the beginning, at both in turn
        for (int at = 0; at < kMany; ++at) {
            const bool atEnd = way == 0 || (way == 2 && at % 2 == 0);
            vpAddDir(path, numbered(at).c_str(), atEnd ? vpAddAtEnd : vpAddAtBeginning);
            searchFirst("/cwd");
        }
        expectLast(way == 0 ? kMany - 1 : way == 1 ? 0 : kMany - 2);
        EXPECT_EQ(NameOf(dir(numbered(77) + "/@Cls")), numbered(77) + "/@Cls");
        for (int at = 0; at < kMany / 3; ++at) {  // from both ends, then what is left
            vpRemoveDir(dir(numbered(at)));
            vpRemoveDir(dir(numbered(kMany - 1 - at)));
            searchFirst("/cwd");
        }
        run("replace '' => yes ; count => 1 ; messages =>");
    }
}

TEST_F(Scale, Replacement) {
    const std::string up = listOf(0, kMany, 1), down = listOf(kMany - 1, -1, -1);
    const auto replace = [&](const std::string& list, int lastOne) {
        EXPECT_TRUE(vpReplacePath(path, list.c_str()));
        expectLast(lastOne);
    };
    replace(up, kMany - 1);
    replace(down, 0);
    replace(up, kMany - 1);
    replace(listOf(kMany, 2 * kMany, 1), 2 * kMany - 1);
    replace(down, 0);
    replace(listOf(0, kMany, 2), kMany - 2);
    for (int at = 0; at < kMany; ++at) {
        ASSERT_EQ(vpSetCWDName(path, numbered(kMany + at).c_str()), nullptr);
        searchFirst(numbered(kMany + at));
    }
    vpHideCWD(path, true);
    searchFirst(numbered(0));
}

// One directory with many entries. A merge finds them in another order, each third one gone.
class LargeDirectory : public PathTest {
  protected:
    void fillReadAndMerge(const char* query, const std::function<std::string(int)>& name) {
        host.recording = false;
        std::vector<std::string> names;
        for (int at = 0; at < kVeryMany; ++at) names.push_back("/d/" + name(at));
        host.add(names);
        step("path /d - 1");
        expectHits(query, kVeryMany);
        host.reset();
        for (int at = kVeryMany; --at >= 0;) {
            if (at % 3 != 0) host.add({"/d/" + name(at)});
        }
        vpRefreshDirectory(dir("/d"), vpRefreshAlways);
        expectHits(query, kVeryMany - kVeryMany / 3 - 1);
        CheckTable(path);
        host.reset();
        vpRefreshDirectory(dir("/d"), vpRefreshAlways);
        run("holds /d => | |");
    }
    void expectHits(const char* query, int expected) {
        vpSearch* search = MakeSearch(path, 'A', "", query);
        while (vpFindNextFile(search, nullptr, nullptr) != 0) --expected;
        vpDestroySearch(&search);
        EXPECT_EQ(expected, 0);
    }
};

TEST_F(LargeDirectory, OfManyNamesOrOne) {
    fillReadAndMerge("", [](int at) { return std::string("f").append(std::to_string(at)) + ".v"; });
    run("terminate");
    host.reset();
    fillReadAndMerge("name", [](int at) { return "name.e" + std::to_string(at); });
}

TEST_F(LargeDirectory, OfOneNameInManySpellings) {
    fillReadAndMerge("abcdefghijklmnopq", [](int at) {
        std::string name = "abcdefghijklmnopq";
        for (size_t bit = 0; bit < name.size(); ++bit) {
            if ((at >> bit & 1) != 0) name[bit] = static_cast<char>(name[bit] - 'a' + 'A');
        }
        return name;
    });
}

TEST_F(LargeDirectory, OfManySpecialDirectories) {
    fillReadAndMerge("", [](int at) {
        return (at % 2 == 0 ? "@C" : "+p") + std::to_string(at) + (at % 5 == 0 ? "/f" : "/same.v");
    });
}

// Packages inside packages without end, as a link that leads upwards gives: the longest name of a
// directory ends them.
TEST_F(LargeDirectory, OfEndlessDepth) {
    host.recording = false;
    run("tree /d/ ; path -");
    const vpListingFcn onePackage = [](vpPath, const char*, unsigned int** words) {
        *words = static_cast<unsigned*>(hkMalloc(sizeof(unsigned)));
        **words = 0x4000;
        return static_cast<char*>(std::memcpy(hkMalloc(4), "+a\0", 4));
    };
    const auto isShort = [](vpPath, const char* name) { return std::strlen(name) <= 4096; };
    vpSetIOFcns(path, onePackage, nullptr, nullptr, isShort, nullptr);
    step("add /d");
    std::string deepest = "/d";
    while (deepest.size() + 3 <= 4096) deepest += "/+a";
    EXPECT_EQ(NameOf(dir(deepest)), deepest);
    EXPECT_EQ(step("files A ''"), "*:" + deepest + "/+a");
    run("freeze /d ; unfreeze /d ; markall ; refreshall 1 ; remove /d");
}

}  // namespace
