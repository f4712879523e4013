#include <sstream>

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

TEST_F(Scanning, HowNamesAreSplit) {
    run(R"(
tree /n/a.b.c /n/x. /n/y.abcdef /n/y.abcd /n/y.abcde /n/y /n/y.: /n/z..v /n/w.V ; path /n
files A a.b.c => *:/n/a.b.c ; files A a.b => ; files A w v => ; files A x => *:/n/x.
files A x v,:,. => 3:/n/x. ; files A y.abcdef => *:/n/y.abcdef ; files A y . => 1:/n/y
files A y abcd => 1:/n/y.abcd ; files A y abcde,x => 1:/n/y.abcde ; files A z..v => *:/n/z..v
files A y : => 1:/n/y.: ; files A y.: => *:/n/y.:)");
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
}

// Special directories that a re-read finds to be files; the one private directory keeps its
// spelling.
TEST_F(Scanning, ARereadOfChangedKinds) {
    run(R"(
tree /d/@C/ /d/private/ /d/@N/ ; path /d ; keep C /d/@C ; rm /d/@C ; tree /d/@C ; isdir /d/private 0
refresh /d 3 ; holds /d => private @C | | @N ; kept C => dead /d/@C ; rm /d ; refresh /d 3
holds /d => | | ; tree /e/private/ ; replace /e ; rm /e/private ; tree /e/Private/ ; refresh /e 3
holds /e => | | private)");
}

}  // namespace
