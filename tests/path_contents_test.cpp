#include "support/path_test.h"

namespace {

class PathContents : public PathTest {};

TEST_F(PathContents, OnlySuitableDirectoriesAreAdded) {
    run("tree /\xff\xfe/ /x/\x01/ ; path - ; tryadd /\xff\xfe => /\xff\xfe ; tryadd /x/\x01 => "
        "/x/\x01");
    run(R"(
tree /a/@c/sub/ /x/PRIVATE/ /x/@/ /x/+/ /x/privates/ /f rel/ /no/ /odd/ /odder/
access /no 3 ; access /odd 0 ; access /odder 2 ; access /oddest 5 ; forget
tryadd /no => warning: Directory permission denied: /no ; tryadd /odd => warning: Directory access failure: /odd
tryadd /odder => warning: Directory access failure: /odder
tryadd /oddest => warning: Directory access failure: /oddest
calls => access /no|access /odd|access /odder|access /oddest
# Judged by the last component alone.
tryadd /a/@c/sub => /a/@c/sub ; tryadd /x/PRIVATE => /x/PRIVATE ; tryadd /x/privates => /x/privates
tryadd /x/@ => /x/@ ; tryadd /x/+ => /x/+ ; tryadd / => / ; tryadd rel => rel ; tryadd /cwd => /cwd
tryadd / => warning: Duplicate directory name: /
find / rel /x/@ /f => 2/ 2rel 2/x/@ 0
# Names are normalised and follow the case rule.
removepath ; tree /A/ /x/Private/ ; path /a - 1
tryadd '' => ; tryadd NULL => ; tryadd // => ; tryadd :; => ; calls =>
tryadd /A => warning: Duplicate directory name: /A
tryadd /x/Private => warning: Private directories not allowed in VESPRA path: /x/Private
replace /A => yes ; sensitive 1 ; tryadd /A//:;: => /A
on => /cwd /a /A ; find /a/ /a: => 2/a 0)");
    const std::string longest = "/" + std::string(4095, 'n'), tooLong = longest + "n";
    host.add({longest + "/", tooLong + "/"});
    EXPECT_EQ(step("tryadd " + longest), longest);
    EXPECT_EQ(step("find " + longest), "2" + longest);
    EXPECT_EQ(step("tryadd " + tooLong), "error: Directory name too long: " + tooLong);
    EXPECT_EQ(step("find " + tooLong), "0");
    EXPECT_EQ(host.takeMessages(), "error: Directory name too long: " + tooLong);
}

TEST_F(PathContents, ListsAreSplitAndAnswerWhatComesFirst) {
    const std::string tooLong(4097, 'l'), longest(4096, 'l');
    const std::string none = "Name is nonexistent or not a directory: ";
    const struct {
        std::string list, atEnd, atBeginning, message;  // the path that comes of it, and the answer
    } rows[] = {
        // clang-format off
        {"/a/:/a:/b", "/a /b=/a", "/b /a=/b", "Duplicate directory name: /a"},
        {"/a;:", "/a=/a", "/a=", ""},
        {"/a:" + tooLong + ":/b", "/a=/a", "/a=/a", "Directory name too long: " + tooLong + ":/b"},
        {tooLong, "=", "=", "Directory name too long: " + tooLong},
        {longest + ":/b", "/b=", "/b=/b", none + longest},
        // clang-format on
    };
    for (const auto& row : rows) {
        for (const bool atEnd : {true, false}) {
            run("terminate ; tree /a/ /b/ /c/ ; path -");
            const std::string answer = step((atEnd ? "list " : "listfirst ") + row.list);
            EXPECT_EQ(OnPath(path) + "=" + answer, (row.atEnd == "=" ? "/cwd" : "/cwd ") +
                                                       (atEnd ? row.atEnd : row.atBeginning));
            EXPECT_EQ(host.takeMessages(), (row.message.empty() ? "" : "warning: ") + row.message);
        }
    }
    const char* names[] = {"/a", nullptr, "/c"};
    EXPECT_EQ(NameOf(vpAddDirsArray(path, names, 3, vpAddAtBeginning)), "/c");
    EXPECT_EQ(NameOf(vpAddDirsArray(path, names + 1, 1, vpAddAtEnd)), "");
    run("on => /cwd /c /a /b ; list '' => ; count => 4");
}

TEST_F(PathContents, WhatRemovingAndReplacingKeep) {
    run(R"(
tree /a/f /b/f /c/f ; path /a:/b:/c ; keep A /a ; remove /a ; access /a 3
tryadd /a => warning: Directory permission denied: /a ; kept A => dead /a ; on => /cwd /b /c)");
    const vpDir cwd = vpGetCWD(path), b = dir("/b");
    EXPECT_TRUE(vpIsSameDir(vpSelectDirFirstOnPath(b, cwd), cwd) &&
                vpIsSameDir(vpSelectDirFirstOnPath(cwd, b), cwd));
    EXPECT_FALSE(vpSetFreezeAllAddedDirectories(path, true));
    run("remove /b");
    EXPECT_EQ(NameOf(vpGetNextPathDir(b)), "") << "not on the path any more";
    run(R"(
add /b ; frozen /b => no ; access /a 1 ; replace //:/a:/b => no ; replace :/a::/b/;/a:/c => yes ; same A /a => yes
messages => warning: Duplicate directory name: /a ; files A f => *:/a/f *:/b/f *:/c/f)");
    // One that stops keeps what it did not reach, and searches follow the order that comes of it.
    const std::string rest = std::string(4097, 'l') + ":/new";
    EXPECT_EQ(step("replace /a:" + rest), "no");
    EXPECT_EQ(host.takeMessages(), "warning: Directory name too long: " + rest);
    run("on => /cwd /b /c /a ; files A f => *:/b/f *:/c/f *:/a/f");
}

TEST_F(PathContents, DirectoriesAreFoundByFullName) {
    run(R"(
tree /cwd/@C/ /a/private/ /a/@C/private/ /a/+p/@D/Private/ /a/+p/+q/ /b/@C/ /x/a/private/ rel/+p/ /a/s/
path /a:/b:/x/a:rel ; find /a/// /cwd rel => 2/a 1/cwd 2rel
find a /x /cwd/rel NULL /a/s /a/@ => 0 0 0 0 0 0
find /x/a/private /a/@C/private/ /cwd/@C => 5/x/a/private 5/a/@C/private 4/cwd/@C
find /a/+p/@D/Private /a/PRIVATE => 5/a/+p/@D/Private 0
# Entries of unknown kind are asked about once.
removepath ; words 0 ; tree /cwd/c/ /a/sub/ /a/d.x/ /a/d.y /b/sub/ ; path /a
checkdir /a/sub /a/d.x /a/d.y /cwd/c => yes yes no yes
calls => isdir /a/sub|isdir /a/d.x|isdir /a/d.y|isdir /cwd/c
# Not listed, not on the path, no directory part, not in the listing yet.
tree /a/later/ ; checkdir /a/none /b/sub sub /a '' NULL /a/later => no no no no no no no
# Where the listing has said what it is, nobody asks.
words 1 ; remove /a ; add /a ; forget ; checkdir /a/d.y => no ; calls =>)");
}

TEST_F(PathContents, DeadPathsAnswerAsEmptyOnes) {
    run("tree /a/ ; path /a ; removepath ; forget");
    for (const bool null : {false, true}) {
        if (null) path = vpPath();
        const char* names[] = {"/a"};
        EXPECT_TRUE(vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr));
        EXPECT_TRUE(vpSetIOFcnsNew(path, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
        EXPECT_EQ(vpAddDirsArray(path, names, 1, vpAddAtEnd).get(), nullptr);
        EXPECT_EQ(vpGetNullDir(path).get(), nullptr);
        EXPECT_FALSE(vpSetFreezeAllAddedDirectories(path, true));
        run("add /a => - ; list /a => - ; replace /a => no ; count => 0 ; find /a => 0- ; "
            "checkdir /a/b => no ; markall ; unknown");
        vpRefreshAllDirectories(path, vpRefreshAlways);
        std::string printed;
        for (int call = 0; call < 14; ++call) printed += "asserted here\n";
        EXPECT_EQ(host.takePrinted(), printed);
    }
    run("calls => ; messages => ; events =>");
}

}  // namespace
