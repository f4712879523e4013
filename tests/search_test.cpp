#include <cstring>

#include "support/path_test.h"

namespace {

// What random steps do not ask: see tests/model.
class Search : public PathTest {
  protected:
    void SetUp() override {
        run("tree /cwd/f.v /a/f.p /a/f.v /a/private/f.v /a/+p/f.v /a/@c.d/g.v /a/foo.v /b/f.p "
            "/a/@foo/foo.v ; path /a:/b");
    }
};

TEST_F(Search, OddNamesPlacesAndExtensions) {
    run(R"(
files A f ..p,,P => ; files A f ..p,,P cs1 => 3:/a/f.p 3:/b/f.p ; files A f.v p,, => 2:/cwd/f.v 2:/a/f.v
files A F.V v cs99 => 1:/cwd/f.v 1:/a/f.v ; files A /a/f.v/ => *:/a/f.v ; files A x/a/f =>
files A wd/f => ; files A @p/f => ; files A p/f => *:/a/+p/f.v ; files A c.d/g => *:/a/@c.d/g.v ; files A @ => ; files A / =>
dirs A cwd => 1:/cwd ; dirs O cwd => ; dirs A @c.d => 1:/a/@c.d ; dirs A c =>
files V:/a f/ v => 1:/cwd/f.v 1:/a/f.v ; one A f/ v => 1:/cwd/f.v ; one A p/f => *:/a/+p/f.v
files D:/a b/f =>
files W:/none f v => 1:/cwd/f.v 1:/a/f.v ; files W:NULL f v cs1 => 1:/cwd/f.v 1:/a/f.v
files F:any.v f v => 1:/cwd/f.v 1:/a/f.v ; files F:NULL f v cs0 => 1:/cwd/f.v 1:/a/f.v
files F:/a/any.v f v => 1:/a/private/f.v 1:/cwd/f.v 1:/a/f.v
files N:/none f => null ; files N f => null ; files N:NULL f cs0 => null
any D:/a '' => *:/a/f.p *:/a/f.v *:/a/foo.v ; dirs D:/a // => 1:/a/+p 1:/a/@c.d 1:/a/@foo 1:/a/private
tree /f ; add / ; files A @f => ; files A f/f => ; remove / ; forget
open O f v,p ; bounded => 0: ; next => 1:/a/f.v ; bounded => 2:/a/f.p ; bounded => 0: ; bounded => 0:
next => 2:/b/f.p ; bounded => 0: ; next => ; bounded => 0: ; rest => ; calls => ; printed =>)");
}

// What a re-read drops is not answered any more; what stays is, once.
TEST_F(Search, GoesOnInADirectoryThatIsReadAgain) {
    run(R"(
tree /c/1 /c/2 /c/3 /c/4 /c/p/ /c/q/ /c/r/ /c/@A/x /c/@B/x /c/@C/x ; add /c
open D:/c '' ; next => *:/c/1 ; next => *:/c/2 ; rm /c/1 ; rm /c/2 ; rm /c/p ; refresh /c 3 ; rest => *:/c/3 *:/c/4
open D:/c '' ; next 2 => *:/c/q ; rm /c/q ; rm /c/3 ; refresh /c 3 ; next 2 => *:/c/r ; next 2 =>
open D:/c '' ; next 3 => 1:/c/@A ; rm /c/@A ; rm /c/4 ; refresh /c 3 ; next 3 => 1:/c/@B ; next 3 => 1:/c/@C ; next 3 =>
open D:/a '' v ; next => 1:/a/f.v ; bounded => 1:/a/foo.v)");
}

// Full names of all lengths around the one from which they take memory.
TEST_F(Search, NamesThatJustFit) {
    for (size_t length = 508; length < 516; ++length) {
        const std::string name = std::string("/b/").append(length - 3, 'n');
        host.add({name});
        run("refresh /b 3");
        const std::string leaf = name.substr(3);
        EXPECT_EQ(step("files A " + leaf + " verify"), "*:" + name);
        EXPECT_EQ(step("one A " + leaf + " verify"), "*:" + name);
    }
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
    EXPECT_EQ(vpFindFirstFileInAll(path, "f", nullptr, vpReadCheckSkip, nullptr, nullptr), ~0U);
    EXPECT_EQ(first("b/f", &at, name), 0xFFFFFFFF);
    EXPECT_TRUE(vpIsSameDir(at, b) && std::strcmp(name, "/b/f.p") == 0);
    EXPECT_EQ(first("g", &at, name), 0U);
    EXPECT_TRUE(vpIsSameDir(at, vpGetNullDir(path)) && *name == '\0');
    host.onCall = [](const std::string&) { throw 1; };
    for (const char* const thrown : {"f", "b/f"}) {
        std::strcpy(name, "as it was");
        at = b;
        EXPECT_EQ(first(thrown, &at, name), 0U);
        EXPECT_TRUE(vpIsSameDir(at, vpGetNullDir(path)) && *name == '\0') << thrown;
    }
    host.onCall = nullptr;
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
