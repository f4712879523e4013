#include <cstring>

#include "support/path_test.h"

namespace {

class Search : public PathTest {
  protected:
    void SetUp() override {
        run(R"(
tree /cwd/f.v /cwd/private/f.v /cwd/@foo/foo.v /cwd/sub
tree /a/f.p /a/f.v /a/foo.v /a/private/f.v /a/private/foo.p /a/+p/f.v /a/+p/@foo/foo.p
tree /a/+p/+q/f.v /a/@foo/foo.v /a/@foo/bar.v /a/@foo/private/bar.v /a/sub/
tree /b/f.p /b/foo.v /b/@foo/foo.p /b/@foo/bar.v /b/@Bar/Bar.v /b/@c.d/ /b/sub/
tree /b/@private/f.v /b/+p/f.p /b/private/F.V /z/foo/bar.v ; path /a:/b:/z/foo)");
    }
};

TEST_F(Search, HitsInOrderOfPrecedence) {
    run(R"(
# Everywhere: files of the path's directories, with what is deeper only by its name.
files A f => *:/cwd/f.v *:/a/f.v *:/a/f.p *:/b/f.p
files A f v,p => 1:/cwd/f.v 1:/a/f.v 2:/a/f.p 2:/b/f.p
files A f ..p,,P => ; files A f ..p,,P cs1 => 3:/a/f.p 3:/b/f.p ; files A f.v p =>
files A f.v p,, => 2:/cwd/f.v 2:/a/f.v ; files A f. .p => 1:/a/f.p 1:/b/f.p
files A sub , => 1:/cwd/sub ; files A F => ; files A F v cs2 =>
files A F.V v cs99 => 1:/cwd/f.v 1:/a/f.v ; files A /a/f.v/ => *:/a/f.v ; files A x/a/f =>
files A private/f => *:/b/@private/f.v *:/cwd/private/f.v *:/a/private/f.v ; files A wd/f =>
files A p/f => *:/a/+p/f.v *:/b/+p/f.p ; files A +p/f => *:/a/+p/f.v *:/b/+p/f.p ; files A @p/f =>
files A foo/private/bar => *:/a/@foo/private/bar.v ; files A private/bar => ; files A +q/f =>
files A @foo => ; files A @ => ; files A / => ; files O f => *:/a/f.v *:/a/f.p *:/b/f.p
# From a directory: its private one, constructors, then the path.
files V:/a f => *:/a/private/f.v *:/cwd/f.v *:/a/f.v *:/a/f.p *:/b/f.p
files V:/a foo => *:/a/private/foo.p *:/cwd/@foo/foo.v *:/a/@foo/foo.v *:/a/+p/@foo/foo.p *:/b/@foo/foo.p *:/a/foo.v *:/b/foo.v
files V:/a/@foo bar cs1 => *:/a/@foo/private/bar.v *:/b/@Bar/Bar.v *:/z/foo/bar.v
files V:/a b/f => *:/b/f.p ; files V:/a f/ v => 1:/cwd/f.v 1:/a/f.v
files W:/a f v => 1:/a/private/f.v 1:/cwd/f.v 1:/a/f.v ; files W:/none f v => 1:/cwd/f.v 1:/a/f.v
files W:NULL f v cs1 => 1:/cwd/f.v 1:/a/f.v ; files F:any.v f v => 1:/cwd/f.v 1:/a/f.v
files F:/a/any.v f v => 1:/a/private/f.v 1:/cwd/f.v 1:/a/f.v
files F:NULL f v cs0 => 1:/cwd/f.v 1:/a/f.v ; files P:/z/foo bar => ; files D:/a b/f =>
# One directory, in the order of its listing.
files P:/a f => *:/a/private/f.v ; files P:/b f => ; files P:/b f v cs1 => 1:/b/private/F.V
files D:/a f v,p => 2:/a/f.p 1:/a/f.v ; files D:/a/+p/+q f cs1 => *:/a/+p/+q/f.v
files N:/b/@foo bar => *:/b/@foo/bar.v ; files N:/none f => null ; files N f => null
files N:NULL f cs0 => null ; dirs A cwd => 1:/cwd ; dirs O cwd => ; dirs A @c.d => 1:/b/@c.d
dirs V:/a foo => 1:/z/foo 1:/cwd/@foo 1:/a/@foo 1:/b/@foo ; dirs A c => ; dirs A q =>
any A sub => *:/cwd/sub *:/a/sub *:/b/sub ; subs A b/sub => *:/b/sub ; calls => ; printed => )");
}

// With no name: the scope in path order; in one directory files, packages, classes, private, plain.
TEST_F(Search, WithoutAName) {
    run("terminate ; tree /cwd/c.v /d/s/ /d/private/h /d/@C/m.v /d/x.v /d/+p/q.v /d/y.p /e/z.v ; "
        "path /d:/e");
    for (const std::string name : {"NULL", "''", "//"}) {
        EXPECT_EQ(step("files D:/d " + name), "*:/d/x.v *:/d/y.p");
        EXPECT_EQ(step("files D:/d " + name + " p"), "1:/d/y.p");
        EXPECT_EQ(step("dirs D:/d " + name), "1:/d/+p 1:/d/@C 1:/d/private");
        EXPECT_EQ(step("any D:/d " + name), "*:/d/x.v *:/d/y.p *:/d/s");
        EXPECT_EQ(step("subs A " + name), "*:/d/s");
        EXPECT_EQ(step("files P:/d " + name), "*:/d/private/h");
        const std::string all = step("files A " + name);
        size_t last = 0;
        for (const char* file : {"/cwd/c.v", "/cwd/@foo/foo.v", "/d/x.v", "/d/y.p", "/d/+p/q.v",
                                 "/d/@C/m.v", "/d/private/h", "/e/z.v"}) {
            EXPECT_TRUE(all.find(file) != all.npos && all.find(file) >= last) << file << all;
            last = all.find(file);
        }
        EXPECT_EQ(step("files O " + name).find("/cwd/c.v"), std::string::npos);
    }
}

TEST_F(Search, WhatIsAskedOfTheHost) {
    run(R"(
terminate ; tree /l/f.v ; deny /a/f.v ; deny /l/f.v ; path /a:/b:/l /l
# After extension and scope, before the directory part; not where it is frozen.
files A f v verify => 1:/cwd/f.v 1:/l/f.v ; calls => read /cwd/f.v|read /a/f.v
files A b/f p verify => 1:/b/f.p ; calls => read /a/f.p|read /b/f.p|read /b/+p/f.p
# A file of unknown kind is asked about once, when a search comes to it.
terminate ; words 0 ; tree /x/f.v /y/f.v /z/f.v ; path /x:/y:/z ; freeze /y ; isdir /x/f.v 1 ; isdir /y/f.v 1
open O f ; next => *:/z/f.v ; calls => isdir /x/f.v|isdir /y/f.v|isdir /z/f.v
rest => ; files D:/x f => ; calls isdir => /cwd/private/f.v
# Its directory is marked changed, unless frozen; read again, it is a new file.
isdir /x/f.v 0 ; refreshall 4 => /x ; files D:/x f => *:/x/f.v)");
}

TEST_F(Search, BoundedCallsStayInOneDirectory) {
    run(R"(
open O f v,p ; bounded => 0: ; next => 1:/a/f.v ; bounded => 2:/a/f.p ; bounded => 0: ; bounded => 0:
next => 2:/b/f.p ; bounded => 0: ; next => ; bounded => 0: ; rest =>
# A change of call goes on from where the search stands: any, subdirectories, directories, files.
tree /c/f.v /c/f/ /e/@f/ /e/f/ ; replace /c:/e ; open O f
next 0 => *:/c/f.v ; next 1 => *:/c/f ; next 2 => *:/e/f ; next 3 => 1:/e/@f ; next 0 =>)");
    static_assert(kUnspecified == 1 && kSubdirectories == 2 && kDirs == 3);
}

TEST_F(Search, OutputsThatAreNotWantedAndSearchesThatAreNotThere) {
    const auto first = [&](const std::string& name, vpDir* at, char* out) {
        return vpFindFirstFileInAll(path, name.c_str(), nullptr, vpReadCheckVerify, at, out);
    };
    char name[100] = "untouched";
    const vpDir b = dir("/b");
    vpDir at = b;
    vpSearch* none = nullptr;
    EXPECT_EQ(vpFindNextFile(none, &at, name) + vpFindNextFileBounded(none, &at, name) +
                  vpFindNextUnspecified(none, &at, name) + vpFindNextSubdirectory(none, &at, name) +
                  vpFindNextDir(none, &at) + first(std::string(4097, 'x'), &at, name),
              0U);
    vpDestroySearch(&none);
    EXPECT_TRUE(vpIsSameDir(at, b) && std::strcmp(name, "untouched") == 0);
    EXPECT_EQ(first("f", nullptr, nullptr), 0xFFFFFFFF);
    EXPECT_EQ(first("b/f", &at, name), 0xFFFFFFFF);
    EXPECT_TRUE(vpIsSameDir(at, b) && std::strcmp(name, "/b/f.p") == 0);
    EXPECT_EQ(first("g", &at, name), 0U);
    EXPECT_TRUE(vpIsSameDir(at, vpGetNullDir(path)) && *name == '\0');
    EXPECT_EQ(HitsOf(vpCreateDirSearch(vpGetNullDir(path), "f", nullptr, vpReadCheckSkip)), "");
    vpRemovePath(path);
    for (const vpPath& dead : {path, vpPath()}) {
        for (const char kind : {'A', 'O', 'N', 'M', 'W', 'F'}) {
            EXPECT_EQ(MakeSearch(dead, kind, "/a", "f"), nullptr) << kind;
        }
    }
    EXPECT_EQ(first("f", &at, name), 0U);
}

TEST_F(Search, AFirstMatchCostsTwoAllocations) {
    const char* exts[] = {"v", ".p", "a-long-extension", "", nullptr};
    const std::string longName = std::string(1000, 'x') + ".v";  // is folded on the heap
    char name[5000];
    const vpDir a = dir("/a");
    vpDir at;
    for (const char* wanted : {"f", "foo.v", "a/p/f", "@foo/foo", "none", longName.c_str()}) {
        const long before = TheLedger().allocations, each = wanted == longName ? 3 : 2;
        vpFindFirstFileInAll(path, wanted, exts, vpReadCheckVerify, &at, name);
        EXPECT_LE(TheLedger().allocations - before, each) << wanted;
        vpFindFirstFileVisibleToDir(a, wanted, exts, vpReadCheckVerify, &at, name);
        EXPECT_LE(TheLedger().allocations - before, 2 * each) << wanted;
    }
    EXPECT_EQ(vpFindFirstFileVisibleToFile(path, "/a/x", "f", exts, vpReadCheckSkip, &at, name),
              1U);
    EXPECT_STREQ(name, "/a/private/f.v");
}

}  // namespace
