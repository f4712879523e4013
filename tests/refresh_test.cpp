#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include <hostkit/hostkit.h>

#include "support/path_test.h"

namespace {

class Refresh : public PathTest {};

// The stamp is older than the listing, so that what changes under way is seen the next time, even
// when the clock has moved on before the listing is done.
TEST_F(Refresh, ChangesInTheMiddleOfAListing) {
    run("tree /a/f ; path -");
    for (const std::string reading : {"add /a", "refresh /a 2", "mark /a ; refresh /a 4"}) {
        host.now += 10;
        host.onListed = [&](const std::string&) {
            host.add({"/a/" + std::to_string(host.now)});
            host.setTime("/a", host.now);
            host.now += 10;
        };
        run(reading.c_str());
        host.onListed = nullptr;
        run("refresh /a 1 => /a ; refresh /a 1 =>");
    }
    run("holds /a => f 1010 1030 1050 | |");
}

TEST_F(Refresh, OddTypesAndTimes) {
    run(R"(
tree /a/@C/ ; path /a ; refresh /a 9 => ; time /a 20 ; refresh /a 9 => ; mark /a ; refresh /a 9 => /a
freeze /a ; refresh /a 9 => ; unfreeze /a ; time /a 5 ; refresh /a 0 => /a
# No time at all is one that is not recorded.
time /a 0 ; refresh /a 1 => /a ; refresh /a 1 => /a)");
}

// The count of a directory's changes, which stamps carry, and how often its time is asked for.
TEST_F(Refresh, ChangesAreCounted) {
    const struct {
        const char* before;
        int type;
        uint64_t count;
        const char* calls;
    } rows[] = {{"now 30", 4, 1, ""},
                {"time /a 20", 1, 2, "time /a|list /a"},
                {"time /a 20", 3, 3, "time /a|list /a"},
                {"time /a 30", 1, 3, "time /a|time /a|list /a"},
                {"time /a 0", 1, 5, "time /a|time /a|list /a"},
                {"freeze /a ; unfreeze /a ; forget", 4, 1, ""}};
    const auto changes = [this](const char* name) {
        vpTimeStamp_tag stamp{};
        vpGetTimeStampFromDir(dir(name), "/cwd", &stamp);
        return stamp.generation;
    };
    run("tree /a/ /cwd/rel/ /two/ ; path /a:rel");
    for (const auto& row : rows) {
        run(row.before);
        vpRefreshDirectory(dir("/a"), static_cast<vpDirRefreshType>(row.type));
        EXPECT_EQ(host.takeCalls(), row.calls);
        EXPECT_EQ(changes("/a"), row.count) << row.calls;
        forget();
    }
    // Relative directories begin anew with the current directory, whether they are there or not.
    run("time rel 20 ; refresh rel 1 => rel ; time rel 25 ; refresh rel 1 => rel");
    EXPECT_GT(changes("rel"), 2U);
    run("cwd /two =>");
    EXPECT_EQ(changes("rel"), 2U);
}

TEST_F(Refresh, ASearchBeginsAnewInWhatWasEmptied) {
    run("tree /cwd/g /cwd/h ; path - ; open D:/cwd '' ; next => *:/cwd/g ; next => *:/cwd/h");
    run("hide 1 ; hide 0 ; refresh /cwd 1 => /cwd ; next => *:/cwd/g");
}

TEST_F(Refresh, MarksAndWhomTheyReach) {
    run("tree /a/@C/private/f /a/+p/ /b/ ; path /a:/b");
    // clang-format off
    const std::string rows[][2] = {
        {"/a", "/a"}, {"/a/@C", "/a/@C"}, {"/a/@New", "/a"}, {"/a/+p/@New/private", "/a/+p"},
        {"/a/+new/@New/private", "/a"}, {"/b/private", "/b"}, {"/b/PRIVATE", ""}, {"/a/c", ""},
        {"/none/@C", ""}, {"private", ""}, {"/a/@", ""}, {"/a/+", ""},
        {"/a//@New", "/a"}, {"/a/+p//private", "/a/+p"}, {"/a//@New//private", "/a"}};
    // clang-format on
    for (const auto& [name, listed] : rows) {
        EXPECT_EQ(step("mark " + name), "no") << name;
        EXPECT_EQ(step("refreshall 4"), listed) << name;
        const vpDir marked = vpSetFullnameChanged(path, (name + "/file.v").c_str());
        EXPECT_TRUE(vpIsSameDir(marked, dir(name))) << name;
        EXPECT_EQ(step("refreshall 4"), listed) << name;
    }
    EXPECT_TRUE(vpIsSameDir(vpSetFullnameChanged(path, nullptr), vpGetNullDir(path)));
    run("mark NULL => no");
}

// A mark made while a directory is read stays, but on one that ends frozen.
TEST_F(Refresh, MarksWhileADirectoryIsRead) {
    run("tree /a/@C/ /lib/a/@C/ ; path - /lib");
    host.onCall = [this](const std::string& event) {
        if (event.starts_with("5 /")) vpSetAllChanged(path);
    };
    run("add /a ; add /lib/a ; refresh /lib/a 3");
    host.onCall = nullptr;
    run("frozen /lib/a => yes ; refreshall 4 => /cwd /a /a/@C");
}

// A directory that has not changed, and had nothing in it until the host was asked about it.
TEST_F(Refresh, GoesOnWithWhatTheHostPutThere) {
    run("tree /a/ ; path /a ; now 30 ; calls");
    bool isFirst = true;
    host.onCall = [&](const std::string& call) {
        if (call != "time /a" || !std::exchange(isFirst, false)) return;
        host.add({"/a/@C/"});
        vpRefreshDirectory(dir("/a"), vpRefreshAlways);
        forget();
    };
    vpRefreshAllDirectories(path, vpRefreshIfChanged);
    EXPECT_EQ(host.takeCalls(), "time /a/@C");
}

// What a listing names twice is one child, known before or not.
TEST_F(Refresh, NamesListedTwice) {
    run("tree /a/f /a/d/ /a/+p/ /a/@C/ ; path /a");
    host.directoryAnswers = {{"/a/+q", true}, {"/a/@D", true}, {"/a/private", true}};
    const auto list = [](vpPath on, const char* name, unsigned int** words) {
        if (std::strcmp(name, "/a") != 0) return FakeHost::list(on, name, words);
        static constexpr char kNames[] =
            "f\0f\0g\0f\0g\0d\0d\0e\0d\0e\0+p\0+q\0+p\0@C\0@C\0@D\0@C\0@D\0private\0private\0";
        auto* const listing = static_cast<char*>(hkMalloc(sizeof kNames));
        std::copy(std::begin(kNames), std::end(kNames), listing);
        *words = static_cast<unsigned int*>(hkMalloc(20 * sizeof(unsigned int)));
        for (int i = 0; i < 20; ++i) (*words)[i] = i < 5 ? 0x8000 : 0x4000;
        return listing;
    };
    vpSetIOFcns(path, list, FakeHost::accessibility, FakeHost::isReadable, FakeHost::isDir,
                FakeHost::modificationTime);
    run(R"(refresh /a 3 ; holds /a => f g | d e | +p +q @C @D private
refresh /a 3 => /a/+p /a/+q /a/@C /a/@D /a/private ; remove /a ; add /a
holds /a => f f g f g | d d e d e | +p +q +p @C @C @D @C @D private
refresh /a 3 ; holds /a => f g | d e | +p +q @C @D private)");
}

TEST_F(Refresh, TimeStampsOfFiles) {
    run("tree /a/f.v /lib/f.v ; path /a:/lib /lib ; time /a/f.v 77");
    const vpDir a = dir("/a"), lib = dir("/lib");
    vpTimeStamp_tag *one = vpCreateTimeStamp(), *two = vpCreateTimeStamp();
    const auto is = [](const vpTimeStamp_tag* stamp, int64_t time, uint64_t generation) {
        return stamp->time == time && stamp->generation == generation;
    };
    const auto changed = [&](int update) {
        return vpHasFileChanged(a, "/a/f.v", two, static_cast<vpTimeStampUpdate>(update));
    };
    EXPECT_TRUE(is(one, -1, 0));
    EXPECT_TRUE(vpGetTimeStamp(path, "/a/f.v", one) && is(one, 77, 1));
    run("calls => time /a/f.v ; refresh /a 1 =>");  // no change, and the count goes on
    EXPECT_TRUE(vpGetTimeStampFromDir(a, "/lib/f.v", two) && is(two, 10, 2)) << "any name will do";
    EXPECT_TRUE(vpIsFileTimeStampDifferent(one, two));
    vpCopyTimeStamp(two, one);
    EXPECT_TRUE(is(two, 77, 1) && !changed(0));
    two->generation = 5;
    EXPECT_FALSE(vpIsFileTimeStampDifferent(one, two));
    run("time /a/f.v 78");
    EXPECT_TRUE(changed(1) && changed(7) && changed(0) && is(two, 78, 5) && !changed(0));
    EXPECT_FALSE(vpHasFileChanged(lib, "/a/f.v", one, vpUpdateTimeStamp)) << "frozen";
    EXPECT_TRUE(vpHasFileChanged(vpGetNullDir(path), "/a/f.v", one, vpTimeStampUpdate{1}));
    EXPECT_TRUE(!vpGetTimeStampFromDir(vpDir(), "/a/f.v", one) && is(one, 77, 1)) << "untouched";
    EXPECT_TRUE(!vpGetTimeStamp(path, "/lib/f.v", one) && is(one, -1, 0)) << "frozen";
    EXPECT_TRUE(!vpGetTimeStamp(path, "/a/none.v", two) && is(two, -1, 0));
    vpDestroyTimeStamp(one);
    vpDestroyTimeStamp(two);
    TheLedger().failAt = 1;
    EXPECT_EQ(vpCreateTimeStamp(), nullptr);
    EXPECT_EQ(vpNonNotifiedRemoteCWDRefreshPolicy(path, static_cast<vpRefreshPolicy>(0)), 1);
    EXPECT_EQ(vpNonNotifiedRemotePathRefreshPolicy(vpPath(), static_cast<vpRefreshPolicy>(5)), 1);
}

}  // namespace
