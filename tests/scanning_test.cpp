#include <hostkit/hostkit.h>

#include <cstring>

#include "support/path_test.h"

namespace {

class Scanning : public PathTest {};

TEST_F(Scanning, EntriesAreClassifiedByWordNameAndHost) {
    // Each name with its listing's word: D directory, F file, 0 unknown, else in hexadecimal. A
    // final '/' makes it a directory on disk. `asked` are the is-directory calls, those of looking
    // at the contents included.
    const struct {
        const char *entries, *holds, *asked;
    } rows[] = {
        // clang-format off
        {". D .. D .hidden F a.txt F .x/ D s/ D", "a.txt | s |", ""}, {"+/ D @/ D", "| + @ |", ""},
        {"@c/ D +p/ D private/ D", "| | +p @c private", "@c +p private"},
        {"@c/ 0 +p/ 0 private/ 0 s 0", "s | | +p @c private", "@c +p private s"},
        {"@c D +p D private D", "@c +p private | |", "@c +p private @c +p private"},
        {"@c/ F +p/ F private/ F f/ F", "@c +p private f | |", ""}, {"+ 0 @ 0", "+ @ | |", "+ @"},
        {"Private/ D", "| | Private", "Private"}, {"PRIVATE/ 0", "| | PRIVATE", "PRIVATE"},
        {"privates/ D Privat/ D", "| privates Privat |", ""},
        {"both/ C000 odd 10 cls 8001 not 8002 x 8003", "odd cls not x | both |", "odd"},
        {"@c.d/ D +p.q/ D s.t/ D", "| s.t | +p.q @c.d", "@c.d +p.q"},
        {"@@c/ D @+p/ D ++p/ D", "| | ++p @@c @+p", "@@c @+p ++p"},
        {"\x01\x02 F \xff F \xc3\xa9.v F \x7f. F", "\x01\x02 \xff \xc3\xa9.v \x7f. | |", ""},
        // clang-format on
    };
    run("path -");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.holds);
        const std::string parent = "/d" + std::to_string(&row - rows) + "/";
        std::istringstream entries(row.entries);
        for (std::string name, word; entries >> name >> word;) {
            host.add({parent + name});
            const std::string hex = word == "D" ? "4000" : word == "F" ? "8000" : word;
            step("word " + parent + name + " " + hex);
        }
        run(("add " + parent + "\n holds " + parent + " => " + row.holds).c_str());
        std::string asked = host.takeCalls("isdir");
        for (size_t at; (at = asked.find(parent)) != asked.npos;) asked.erase(at, parent.size());
        EXPECT_EQ(asked, row.asked);
    }
}

TEST_F(Scanning, WithoutWordsOnlySpecialNamesAreAskedAbout) {
    run(R"(
words 0 ; tree /d/sub/ /d/@c/f /d/+p/ /d/private/ /d/@no /d/f.v ; path - ; add /d
calls => access /d|time /d|list /d|isdir /d/@c|time /d/@c|list /d/@c|isdir /d/+p|time /d/+p|list /d/+p|isdir /d/private|time /d/private|list /d/private|isdir /d/@no
# A plain directory is taken for a file until a search asks; each is asked about once.
files A sub => ; files A f => *:/d/f.v ; files A f => *:/d/f.v
holds /d => @no f.v | | +p @c private ; calls isdir => /d/sub /d/f.v /d/@c/f /d/@no
# A file found again by a re-read stays confirmed; one that was gone is another file.
refresh /d 3 ; files A f => *:/d/f.v ; calls isdir =>
rm /d/f.v ; refresh /d 3 ; tree /d/f.v ; refresh /d 3 ; files A f => *:/d/f.v ; calls isdir => /d/f.v)");
}

TEST_F(Scanning, WhatEachKindOfDirectoryKeepsAndHowNamesAreSplit) {
    for (const std::string kind : {"/d", "/d/+p", "/d/@C", "/d/private"}) {
        for (const char* entry : {"/f.v", "/sub/", "/@X/g", "/+y/", "/private/h"}) {
            host.add({kind + entry});
        }
    }
    run(R"(
path /d ; holds /d => f.v | sub | +y +p @X @C private ; holds /d/+p => f.v | | +y @X private
holds /d/@C => f.v | | private ; holds /d/private => h f.v | | ; holds /d/+p/@X => g | |
find /d/@C/@X /d/private/private => 0 0
tree /n/a.b.c /n/x. /n/y.abcdef /n/y.abcd /n/y.abcde /n/y /n/y.: /n/z..v /n/w.V ; replace /n
files A a.b.c => *:/n/a.b.c ; files A a.b => ; files A a => ; files A w v => ; files A x => *:/n/x.
files A x. => *:/n/x. ; files A x v,:,. => 3:/n/x. ; files A y.abcdef => *:/n/y.abcdef
files A y abcd => 1:/n/y.abcd ; files A y abcde,x => 1:/n/y.abcde ; files A y . => 1:/n/y
files A y : => 1:/n/y.: ; files A y.: => *:/n/y.: ; files A z..v => *:/n/z..v
# Of one directory the one linked last comes first.
files A y => *:/n/y.: *:/n/y *:/n/y.abcde *:/n/y.abcd *:/n/y.abcdef)");
}

// Names around the sizes of the buffers in which they are folded, and spellings of one name.
TEST_F(Scanning, LongNamesAndSpellings) {
    const size_t lengths[] = {126, 127, 128, 129, 255, 1000, 4000};
    for (const size_t n : lengths) {
        host.add({"/d/" + std::string(n, 'N') + ".v", "/d/@" + std::string(n, 'C') + "/x"});
    }
    run("path /d - 1");
    for (const size_t n : lengths) {
        EXPECT_EQ(step("files A " + std::string(n, 'n')), "*:/d/" + std::string(n, 'N') + ".v");
        EXPECT_EQ(step("find /d/@" + std::string(n, 'c')), "4/d/@" + std::string(n, 'C'));
    }
    run(R"(
tree /a/Foo.v /b/foo.v /c/FOO.v /e/foo.v ; replace /a:/b:/c:/e
files A fOO => *:/a/Foo.v *:/b/foo.v *:/c/FOO.v *:/e/foo.v
sensitive 1 ; files A foo => *:/b/foo.v *:/e/foo.v ; files A FOO => *:/c/FOO.v
remove /a ; remove /c ; files A foo => *:/b/foo.v *:/e/foo.v)");
}

TEST_F(Scanning, ARereadMergesTheListing) {
    run(R"(
tree /d/a.v /d/b.v /d/s/ /d/@C/m.v /d/+p/@Q/ /d/private/h /d/z ; path /d ; keep C /d/@C ; keep Q /d/+p/@Q
rm /d/b.v ; rm /d/+p ; rm /d/s ; rm /d/z ; tree /d/c.v /d/@N/private/ /d/s /d/t/ /d/z/
# Nothing is seen yet.
holds /d => a.v b.v z | s | +p @C private
refresh /d 3 => /d /d/@N /d/@N/private /d/@C /d/@N /d/@N/private /d/private
holds /d => a.v c.v s | t z | @C @N private
kept C => alive /d/@C ; same C /d/@C => yes ; kept Q => dead /d/+p/@Q
# Special directories that have become files; the directory itself is gone.
rm /d/@C ; tree /d/@C ; isdir /d/private 0 ; refresh /d 3
holds /d => a.v c.v s private @C | t z | @N ; kept C => dead /d/@C
rm /d ; refresh /d 3 ; holds /d => | |
# What is new in special directories is linked after what is new beside them, packages first; the one
# private directory keeps its spelling.
tree /e/@C/ /e/+p/@C/ /e/private/ ; replace /e ; tree /e/@C/C.v /e/+p/@C/C.v ; refresh /e 3
files V:/e C => *:/e/@C/C.v *:/e/+p/@C/C.v
rm /e/private ; tree /e/Private/ ; refresh /e 3 ; holds /e => | | +p @C private)");
}

TEST_F(Scanning, ANameListedTwice) {
    const vpListingFcn twice = [](vpPath, const char* name, unsigned int**) {
        static const char kTwice[] = "a\0a\0@C\0@C\0+p\0+p\0private\0private\0";
        auto* listing = static_cast<char*>(hkCalloc(1, sizeof kTwice));
        if (std::strcmp(name, "/d") == 0) std::memcpy(listing, kTwice, sizeof kTwice);
        return listing;
    };
    run("tree /d/a /d/@C/ /d/+p/ /d/private/ ; path -");
    vpSetIOFcns(path, twice, nullptr, nullptr, nullptr, nullptr);
    run("add /d ; holds /d => a a | | +p +p @C @C private\n"
        "refresh /d 3 ; holds /d => a | | +p @C private");
}

}  // namespace
