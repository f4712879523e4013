#include "support/path_test.h"

namespace {

class CurrentDirectory : public PathTest {};

TEST_F(CurrentDirectory, AFailedChangeLeavesAllAsItWas) {
    run(R"(
tree /denied/ /odd/ /file /gone/ rel/ ; access /denied 3 ; access /odd 2 ; access /gone 4 ; path rel
cwd NULL => No directory specified ; calls =>
cwd /none => Name is nonexistent or not a directory ; calls => chdir /none|access /none|chdir /cwd
cwd /file => Name is nonexistent or not a directory ; calls => chdir /file|access /file|chdir /cwd
cwd /gone => Name is nonexistent or not a directory ; calls => chdir /gone|access /gone|chdir /cwd
cwd /denied => Directory permission denied ; calls => chdir /denied|access /denied|chdir /cwd
cwd /odd => Directory access failure ; calls => chdir /odd|access /odd|chdir /cwd
)");
    EXPECT_EQ(step("cwd " + std::string(4097, 'n')), "Directory name too long");
    run("calls => ; events => ; messages => ; on => /cwd rel");
    host.cwdUnknown = true;  // nothing to go back to
    run("cwd /none => Name is nonexistent or not a directory ; calls => chdir /none|access /none");
    EXPECT_EQ(step("cwd " + std::string(4096, 'n')), "Name is nonexistent or not a directory");
}

TEST_F(CurrentDirectory, APathThatDoesNotOwnTheProcessKeepsTheNameAsGiven) {
    const vpPath owner = vpCreatePath(0, "owner");
    run(R"(
tree /cwd/sub/f.v /x/sub/g.v /y:/ ; path - ; cwd /y: => ; on => /y: ; forget ; cwd sub => ; on => sub
calls => access sub|time sub|list sub
cwd /none => Name is nonexistent or not a directory ; calls => access /none
cwd '' => Failed to change current directory ; cwd /// => Failed to change current directory
)");
    EXPECT_EQ(vpSetCWDName(owner, "/x"), nullptr);
    run("on => sub ; holds sub => f.v | |");
}

TEST_F(CurrentDirectory, NameIsCutToTheBuffer) {
    run("tree /home/user/ ; path - ; cwd /home/user");
    char name[20];
    const std::string whole = "/home/user";
    for (const unsigned size : {0U, 1U, 4U, 10U, 11U, 20U}) {
        std::string buffer(20, '#');
        EXPECT_EQ(vpGetCWDName(path, buffer.data(), size), size == 0 ? nullptr : buffer.data());
        const std::string cut = size == 0 ? "" : whole.substr(0, size - 1) + '\0';
        EXPECT_EQ(buffer, cut + std::string(20 - cut.size(), '#')) << size;
    }
    run("removepath ; cwd /home => ; hide 1 ; printed =>");  // quiet on a dead path
    EXPECT_EQ(vpGetCWDName(path, name, sizeof name), nullptr);
    EXPECT_EQ(vpSetCWDName(vpPath(), nullptr), nullptr);
}

TEST_F(CurrentDirectory, ItsOwnNameMayBeOnThePathToo) {
    run(R"(
tree /cwd/f.v /CWD/ /a/ ; path /a ; cwdonpath => no ; add /CWD ; cwdonpath => no
sensitive 0 ; cwdonpath => yes ; sensitive 1 ; add /cwd => /cwd ; cwdonpath => yes
)");
    const vpDir same = dir("/cwd");
    EXPECT_TRUE(vpIsPathDirAlsoCWD(same));
    for (const vpDir& other : {vpGetCWD(path), vpGetNullDir(path), vpDir(), dir("/a")}) {
        EXPECT_FALSE(vpIsPathDirAlsoCWD(other)) << NameOf(other);
    }
    run("cwd /a ; on => /a /a /CWD /cwd");
    EXPECT_FALSE(vpIsPathDirAlsoCWD(same));
}

TEST_F(CurrentDirectory, ChangesForEverCostNoMemory) {
    run("tree /x/f.v /x/private/p.v /y/g.v ; path - ; cwd /x ; cwd /y ; cwd /x ; cwd /y ; forget");
    const long blocks = TheLedger().blocks;
    for (int round = 0; round < 50; ++round) run("cwd /x ; cwd /y");
    EXPECT_EQ(TheLedger().blocks, blocks);
}

}  // namespace
