#include "support/path_test.h"

namespace {

class CurrentDirectory : public PathTest {};

TEST_F(CurrentDirectory, AChangeIsCheckedAnnouncedAndRead) {
    run(R"(
tree /cwd/sub/@C/f.v /cwd/f.v ; path - ; keep OLD /cwd ; cwd sub/ =>
calls => chdir sub/|access /cwd/sub|time /cwd/sub|list /cwd/sub|isdir /cwd/sub/@C|time /cwd/sub/@C|list /cwd/sub/@C
events => 2|5 /cwd/sub/@C|5 /cwd/sub|7
on => /cwd/sub ; find /cwd/sub /cwd => 1/cwd/sub 0 ; kept OLD => dead /cwd ; files A f =>
)");
}

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
}

TEST_F(CurrentDirectory, APathThatDoesNotOwnTheProcessKeepsTheNameAsGiven) {
    const vpPath owner = vpCreatePath(0, "owner");
    run(R"(
tree /cwd/sub/f.v /x/sub/g.v ; path - ; cwd sub => ; on => sub
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

TEST_F(CurrentDirectory, RelativeDirectoriesFollowIt) {
    run(R"(
tree /cwd/rel/f.v /cwd/rel/@C/f.v /new/rel/g.v /new/rel/@C/g.v /third/ ; path rel ; keep C rel/@C
cwd /new ; events => 2|5 /new|0 rel|0 rel/@C|7
holds rel => g.v | | @C ; holds rel/@C => g.v | | ; kept C => alive rel/@C
cwd /third ; holds rel => | | ; kept C => dead rel/@C
# A frozen one follows too, and stays frozen.
cwd /cwd ; freeze rel ; cwd /new ; holds rel => g.v | | @C ; frozen rel rel/@C => yes yes
)");
}

TEST_F(CurrentDirectory, ItsOwnNameMayBeOnThePathToo) {
    run(R"(
tree /cwd/f.v /CWD/ /a/ ; path /a ; cwdonpath => no ; add /CWD ; cwdonpath => no
sensitive 0 ; cwdonpath => yes ; sensitive 1 ; add /cwd => /cwd ; cwdonpath => yes
files A f => *:/cwd/f.v *:/cwd/f.v ; find /cwd => 2/cwd
)");
    const vpDir same = dir("/cwd");
    EXPECT_TRUE(vpIsPathDirAlsoCWD(same));
    for (const vpDir& other : {vpGetCWD(path), vpGetNullDir(path), vpDir(), dir("/a")}) {
        EXPECT_FALSE(vpIsPathDirAlsoCWD(other)) << NameOf(other);
    }
    run("cwd /a ; on => /a /a /CWD /cwd");
    EXPECT_FALSE(vpIsPathDirAlsoCWD(same));
}

TEST_F(CurrentDirectory, Hidden) {
    run(R"(
tree /cwd/f.v /cwd/@C/f.v /other/f.v /a/f.v ; path /a ; keep C /cwd/@C
hide 1 ; holds /cwd => | | ; kept C => dead /cwd/@C ; files A f => *:/a/f.v
# Marked changed, but the host is not asked; nor for the same directory elsewhere, nor the next one.
refreshall 4 => ; events => 0 /cwd ; add /cwd ; cwd /other ; calls list => ; files A f => *:/a/f.v
cwd /cwd ; hide 1 ; hide 0 ; files A f => *:/a/f.v
refreshall 4 => /cwd /cwd/@C ; files A f => *:/cwd/f.v *:/a/f.v
hide 1 ; cwd /other ; hide 0 ; refreshall 4 => /other
)");
}

// Whether a new one is frozen is decided by where the one before it lay.
TEST_F(CurrentDirectory, TakesTheSettingOfThePreviousOne) {
    run("tree /lib/ /x/ ; path - /lib ; cwd /lib ; frozen /lib => no ; cwd /x ; frozen /x => yes ; "
        "cwd /lib ; frozen /lib => no ; cwd /lib ; frozen /lib => yes");
}

TEST_F(CurrentDirectory, ChangesForEverCostNoMemory) {
    run("tree /x/f.v /x/private/p.v /y/g.v ; path - ; cwd /x ; cwd /y ; cwd /x ; cwd /y ; forget");
    const long blocks = TheLedger().blocks;
    for (int round = 0; round < 50; ++round) run("cwd /x ; cwd /y");
    EXPECT_EQ(TheLedger().blocks, blocks);
}

}  // namespace
