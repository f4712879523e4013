#include "support/path_test.h"

namespace {

class PathRegistry : public PathTest {
  protected:
    static vpPath create(const char* name, int rule = vpCaseDefault) {
        return vpCreatePathWithPreFrozen(0, name, nullptr, static_cast<vpCaseSensitivity>(rule),
                                         /*suppressChangeNotify=*/false);
    }
};

TEST_F(PathRegistry, CreationReadsTheProcessesDirectoryIfItCan) {
    host.add({"f.v", "@C/", "private/g.v"});
    path = vpCreatePath(7, "p");
    run(R"(
calls => access /cwd|time /cwd|list /cwd|isdir /cwd/@C|time /cwd/@C|list /cwd/@C|isdir /cwd/private|time /cwd/private|list /cwd/private
# The first directory has no setting to take over; what is added lies below the empty root.
on => /cwd ; count => 1 ; add / ; frozen /cwd / => no yes)");
    for (const bool unknown : {true, false}) {
        host.reset();
        host.cwdUnknown = unknown;
        run("terminate ; tree /a/f.v ; access /cwd 3 ; path -");
        host.cwdUnknown = false;
        char name[10];
        EXPECT_EQ(vpGetCWDName(path, name, sizeof name), nullptr);
        EXPECT_EQ(vpGetDirType(vpGetCWD(path)), vpDirTypeNone);
        run("on => ; count => 1 ; cwdonpath => no ; first /a => /a ; on => /a ; count => 2 ; "
            "find /a => 2/a ; files A f => *:/a/f.v ; cwd /a => ; on => /a /a");
    }
}

TEST_F(PathRegistry, NamesAreUniqueAndExact) {
    const auto owns = [&](const vpPath& each) {  // the process's directory
        vpSetCWDName(each, "/cwd");
        return host.takeCalls("chdir") == "/cwd";
    };
    const vpPath first = create("P"), lower = create("p", vpCaseInsensitive),
                 empty = create(nullptr);
    EXPECT_TRUE(owns(first) && !owns(lower));
    EXPECT_TRUE(create("P").get() == nullptr && create("").get() == nullptr);
    EXPECT_EQ(host.takeMessages(),
              "error: Duplicate path name P specified, cannot construct path|"
              "error: Duplicate path name  specified, cannot construct path");
    EXPECT_TRUE(vpLookupPath("P").get() == first.get() && vpLookupPath("p").get() == lower.get());
    EXPECT_TRUE(vpLookupPath("").get() == empty.get() && vpLookupPath("q").get() == nullptr);
    EXPECT_STREQ(vpLookupPathname(first), "P");
    EXPECT_STREQ(vpLookupPathname(empty), "");
    vpRemovePath(first);
    EXPECT_EQ(vpLookupPathname(first), nullptr);
    const vpPath again = create("P");
    vpRemovePath(first);  // no effect on its successor
    EXPECT_FALSE(owns(again) || owns(lower));
    EXPECT_TRUE(again.get() != nullptr && vpLookupPath("P").get() == again.get());
    create("kept");  // dropping the last handle does not remove a path
    EXPECT_STREQ(vpLookupPathname(vpLookupPath("kept")), "kept");
    run("terminate => no ; terminate => yes");
    EXPECT_EQ(vpLookupPath("p").get(), nullptr);
    EXPECT_TRUE(owns(create("the first again")));
    // The current name is a slot for the pointer.
    const char* const name = "anything";
    EXPECT_FALSE(vpCurrentPathExists());
    vpSetCurrentPathname(name);
    EXPECT_TRUE(vpGetCurrentPathname() == name && vpCurrentPathExists());
    vpSetDefaultPathname(nullptr);
    EXPECT_EQ(vpGetCurrentPathname(), nullptr);
}

TEST_F(PathRegistry, CaseRules) {
    for (const int rule : {0, 1, 2, 3, 77}) {
        path = create("c", rule);
        EXPECT_EQ(vpGetPathCaseSensitivity(path), rule != 1) << rule;
        vpSetCaseSensitivity(path, rule == 1);
        EXPECT_EQ(vpGetPathCaseSensitivity(path), rule == 1) << rule;
        run("removepath ; sensitive 1");
        EXPECT_FALSE(vpGetPathCaseSensitivity(path) || vpGetPathCaseSensitivity(vpPath()));
    }
    run("printed =>");
}

// Which directories lie below the root is a matter of characters, not of components.
TEST_F(PathRegistry, DirectoriesBelowTheRootAreReadFrozen) {
    run(R"(
tree /lib/a/@C/ /library/ /LIB/b/ /li/ ; path /lib/a:/library:/LIB/b:/li /lib
frozen /cwd /lib/a /lib/a/@C /library /LIB/b /li => no yes yes yes no no ; removepath
path /lib/a:/library:/LIB/b:/li /lib 1
frozen /cwd /lib/a /lib/a/@C /library /LIB/b /li => no yes yes yes yes no ; removepath
path /lib/a:/library /lib/ ; frozen /lib/a /library => yes no)");
}

TEST_F(PathRegistry, RemovalTellsListenersWhileThePathLives) {
    run("tree /a/@C/f.v ; path /a ; keep A /a ; keep C /a/@C ; keep N ''");
    host.onCall = [&](const std::string&) {
        run("kept A => alive /a ; kept C => alive /a/@C ; kept N => alive");
        EXPECT_EQ(vpLookupPath("p").get(), path.get());
        vpRemovePath(path);  // already under way
    };
    run("removepath ; events => 9 ; kept A => dead /a ; kept C => dead /a/@C ; kept N => dead");
    run("removepath ; events =>");
    EXPECT_EQ(vpPath(path.get()).get(), nullptr);
}

}  // namespace
