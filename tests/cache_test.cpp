// The toolbox cache: the bytes of its file, what its reader refuses, cache mode beside the host.
#include <pthread.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <utility>

#include "base/guard.h"
#include "cache/cache_mode.h"
#include "path/path_mgr.h"
#include "support/path_test.h"
#include "support/temp_tree.h"

namespace {

class CacheTest : public PathTest {
  protected:
    void TearDown() override {
        diagnose(false, false);
        cacheMode.disabled = false;
        vpRevertFromToolboxCache(path);
    }
    static void diagnose(bool trace, bool status) {
        vpEnableToolboxCacheDiagnosticTrace(trace);
        vpEnableToolboxCacheDiagnosticStatusReport(status);
    }
    std::string fileText() const {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    // What the file says behind its header; "false" when it could not be written.
    std::string written() {
        if (!vpWritePathToCacheFile(path, file.c_str())) return "false";
        const time_t now = host.now;
        std::string header = R"(<Lumenvale type="Path Cache File" version="1.1" date=")";
        header += std::string(std::ctime(&now), 24) + "\">\n";
        EXPECT_EQ(fileText().substr(0, header.size()), header);
        return fileText().substr(header.size());
    }
    // The same spelt "1Dname 2Fitem 1/": spaces, letter and name, or spaces and '/'.
    static std::string lines(const std::string& spelt) {
        std::istringstream words(spelt);
        std::string text;
        for (std::string word; words >> word;) {
            text += std::string(static_cast<size_t>(word[0] - '0'), ' ') + '<' + word[1];
            text += word[1] == '/' ? "D" : " name=\"" + word.substr(2) + '"';
            text += std::strchr("/D", word[1]) != nullptr ? ">\n" : "/>\n";
        }
        return text + "</Lumenvale>\n";
    }
    // Loads a text, or a file; what that prints.
    std::string use(const std::string& text, bool verbose = false) {
        std::ofstream(file) << text;
        return useFile(file.c_str(), "/i", verbose);
    }
    std::string useFile(const char* name, const char* root = "/i", bool verbose = false) {
        forget();
        vpUseToolboxCache(path, name, root, verbose);
        std::string printed = host.takePrinted();
        const size_t seconds = printed.find("read in ");
        if (seconds != printed.npos) printed.replace(seconds + 8, std::strlen("0.00"), "T");
        return printed;
    }
    std::string failure() const {
        return std::string("Error occurred loading: ") + file + "\nCache file ignored.\n";
    }
    // "NAME:WORD ...", as the path's listing callback has it.
    std::string listing(const std::string& name) const {
        unsigned int* words = nullptr;
        const HkBlock<char> names(path.get()->listDirectory(name.c_str(), &words));
        const HkBlock<unsigned> owned(words);
        std::ostringstream text;
        const char* at = names.get();
        for (size_t i = 0; at != nullptr && *at != '\0'; at += std::strlen(at) + 1, ++i) {
            text << at << ':' << std::hex << words[i] << ' ';
        }
        return text.str();
    }

    TempTree folder;
    const std::string file = folder.at("cache");
};

TEST_F(CacheTest, WritesFrozenDirectoriesUnderTheRoot) {
    run(R"(tree /i/toolbox/al/zz.v /i/toolbox/al/sub/ /i/toolbox/al/ab /i/toolbox/al/x.V
tree /i/toolbox/al/n.p /i/toolbox/al/u.v /i/toolbox/al/dot. /i/toolbox/al/s.d/
tree /i/toolbox/al/private/h.v /i/toolbox/al/@G/G.v /i/toolbox/al/@G/private/g
tree /i/toolbox/al/+pk/k.v /i/toolbox/al/+pk/private/q /i/toolbox/al/+pk/@Cl/c.txt
tree /i/toolbox/al/+pk/+de/@In/private/i.long_one /i/toolbox/al/+pk/+de/+er/ /i/toolbox/al/+z/
tree /i/toolbox/warm/w.v /i/toolboxX/side/s.v /i/other/o.v /i/toolbox/<&>/
word /i/toolbox/al/zz.v 8001 ; word /i/toolbox/al/x.V 8001 ; word /i/toolbox/al/n.p 8002
path /i/toolbox/al:/i/toolbox/warm:/i/toolbox:/i/toolboxX/side:/i/toolboxX:/i/other:/i/toolbox/<&> /i/toolbox
unfreeze /i/toolbox/warm)");
    const std::string n(4352, 'n');
    for (const std::string name : {"b1/x\".v", "b2/@C/y\\z", "b3/+p/private/l\nf", "b4/s\xFF/",
                                   "b\"/f", "b6/#n", "ok/f", "long/#"}) {
        const size_t end = name.find('#');
        host.add({"/i/toolbox/" + (end == name.npos ? name : name.substr(0, end) + n) +
                  (name.back() == 'n' ? "n" : "")});
        const std::string top = name.substr(0, name.find('/'));
        EXPECT_NE(vpGetDirType(vpAddDir(path, ("/i/toolbox/" + top).c_str(), vpAddAtEnd)), 0);
    }
    host.add({"/i/toolbox/b7/" + n.substr(1) + ".v", "/i/toolbox/ext/" + n.substr(2) + ".v"});
    vpAddDirsString(path, "/i/toolbox/b7:/i/toolbox/ext", vpAddAtEnd);
    EXPECT_EQ(written(),
              lines("1Dal 3Dal/@G 3Dal/@G/private 4Fg 3/ 4FG.v 3/ 2Dal/+pk 3Dal/+pk/+de "
                    "4Dal/+pk/+de/+er 4/ 5Dal/+pk/+de/@In 5Dal/+pk/+de/@In/private 6Fi.long_one 5/ "
                    "5/ 3/ 4Dal/+pk/@Cl 5Fc.txt 4/ 2Dal/+pk/private 4Fq 3/ 3Fk.v 2/ 2Dal/+z 2/ "
                    "2Dal/private 3Nh.v 2/ 2Czz.v 2Fab 2Fx.V 2Nn.p 2Fu.v 2Fdot. 2dsub 2ds.d 1/ "
                    "1D/side 2Fs.v 1/ 1D 2dside 1/ 1D<&> 1/ 1Dok 2Ff 1/ 1Dlong 2F" +
                    n + " 1/ 1Dext 2F" + n.substr(2) + ".v 1/"));
}

TEST_F(CacheTest, WritesWholeFilesOrAnswersFalse) {
    run("tree /i/toolbox/a/f.v /i/toolbox/e/ ; path -");
    EXPECT_EQ(written(), "false") << "no root";
    run("terminate ; path /i/toolbox/a /I/tOOlbox 1");
    EXPECT_EQ(written(), lines("1Da 2Ff.v 1/"));
    for (const char* name : {"/dev/full", "/", "/no/such", "", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(vpWritePathToCacheFile(path, name)) << name;
    }
    EXPECT_FALSE(vpWritePathToCacheFile(vpPath(), file.c_str()));
    const auto openFiles = [] {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    const auto before = openFiles();
    EXPECT_EQ(written(), lines("1Da 2Ff.v 1/"));
    EXPECT_EQ(openFiles(), before);
    // More than is written at once.
    std::string list, elements;
    for (int i = 0; i < 200; ++i) {
        const std::string name = std::to_string(i) + std::string(2000, 'x');
        host.add({"/i/toolbox/" + name + "/f.v"});
        list += ":/i/toolbox/" + name;
        elements += "1D" + name + " 2Ff.v 1/ ";
    }
    elements += "1Dmany ";
    for (int i = 0; i < 40; ++i) {
        host.add({"/i/toolbox/many/" + std::to_string(i)});
        elements += "2F" + std::to_string(i) + " ";
    }
    run("terminate ; path - /i/toolbox");
    vpAddDirsString(path, (list + ":/i/toolbox/many").c_str(), vpAddAtEnd);
    EXPECT_EQ(written(), lines(elements + "1/"));
    // A callback takes away what is being written.
    for (const std::string act : {"remove /i/toolbox/d", "removepath"}) {
        run("terminate ; tree /i/toolbox/d/+p/+q/@C/f ; words 0");
        run("path /i/toolbox/d:/i/toolbox/e /i/toolbox");
        host.onCall = [&](const std::string& call) {
            if (call == "isdir /i/toolbox/d/+p/+q/@C/f") step(act);
        };
        EXPECT_EQ(written(), act == "removepath" ? "false" : lines("1De 1/"));
    }
}

// Each case: a file ('$' line feed, '0' NUL, '~' 0xFF, '#' 4352 bytes), and what is told of it: End
// of file, Tokens, Name too long or the character that is missing, with the line; '-' for nothing.
TEST_F(CacheTest, SaysWhatIsWrongAndInWhichLine) {
    run("path - /i/toolbox");
    std::istringstream cases(
        R"( E0|no end E1|no end$ E1|a$b$~> E3|a$0> T2|<h>$ -|<h>~< -|<h>$ 0</ T2
<h>$< E2|<h>$$<~ E3|<h><0 T1|<h>$<X name="a"/> T2|<h>$<F> E2|<h>$<F~" E2|<h>$<F 0name="a"/> T2
<h>$<F name="a E2|<h>$<F name="a$b~ E3|<h>$<F name="a0"/> T2|<h>$<F name="a.v"> /2
<h>$<F name="a"$/> /2|<h>$<F name="a"/ > >2|<h>$<F name="a" /2|<h>$<F name="a"~ /2
<h>$<F name="a"0 T2|<h>$<F name="a"/~ >2|<h>$<D name="a"/> >2|<h>$<D name="a">$$</X> D4
<h>$<D name="a">$</D >3|<h>$<D name="a">$</0 T3|<h>$<D name="a">$</D>$ -|<h>$<F name="#n"/> N
<h>$<F name="#$"/> N|<h>$<D name="#\"> N|<h>$<F name="#~ E2|<h>#$<d name="#"/>#$<F name="#"> /3)");
    for (std::string row; std::getline(cases, row);) {
        std::istringstream columns(row);
        for (std::string one; std::getline(columns, one, '|');) {
            std::string text;
            for (const char c : one.substr(0, one.rfind(' '))) {
                const char plain = c == '$' ? '\n' : c == '0' ? '\0' : c == '~' ? '\xFF' : c;
                text += std::string(c == '#' ? 4352 : 1, c == '#' ? 'n' : plain);
            }
            const std::string sign = one.substr(one.rfind(' ') + 1);
            std::string told = sign[0] == 'E'   ? "Encountered unexpected end-of-file"
                               : sign[0] == 'T' ? "Found unexpected tokens"
                                                : "Failed to find closing '";
            if (told.back() == '\'') told += sign.substr(0, 1) + "'";
            told += " (line " + sign.substr(1) + ") while loading toolbox cache.\n";
            if (sign == "N") told = "Name too long\n";
            EXPECT_EQ(use(text), (sign == "-" ? "" : told) + failure()) << one;
            EXPECT_FALSE(vpInToolboxCacheMode());
        }
    }
}

TEST_F(CacheTest, ReadsEveryNameWhereverABlockEnds) {
    run("path - /i/toolbox");
    for (size_t size = 131072 - 90; size < 131072; ++size) {
        const std::string text = std::string("<h>") + std::string(size, ' ');
        ASSERT_EQ(use(text + "\n  <F name=\"plain.v\"/>\n<d name=\"\"/><C x name=\"a\\b\n.v\"/>"
                             "<D name=\"k\\+l\"></D></"),
                  "");
        ASSERT_EQ(listing("/i/toolbox/CachePath"), "plain.v:8000 a/b\n.v:8001 +l:4000 ") << size;
        ASSERT_EQ(listing("/i/toolbox/k/+l"), "") << size;
    }
    EXPECT_EQ(use("<h>\xFF" + std::string(200000, ' ') + "</"), failure());
    const std::string longest(4352, 'n'), chunk(4095, 'x');
    std::string many, expected;
    for (int i = 0; i < 3000; ++i) {
        many += "<U name=\"item" + std::to_string(i) + "\"/>";
        expected += std::string("item") + std::to_string(i) + ":0 ";
    }
    EXPECT_EQ(use(chunk + ">" + chunk + "<D name=\"d\"><N name=\"" + longest + "\"/>" + many +
                  "</D><D name=\"e/\"></D></ never read \xFF"),
              "");
    EXPECT_EQ(listing("/i/toolbox/d"), longest + ":8002 " + expected);
    EXPECT_EQ(listing("/i/toolbox/CachePath"), "d:4000 ");
}

// Cut anywhere, or read while memory runs out, a file is refused and the cache in use stays.
TEST_F(CacheTest, NeverTakesHalfAFile) {
    run("tree /i/toolbox/a/@B/f.v /i/toolbox/a/+p/+q/g /i/toolbox/a/private/h /i/toolbox/a/s/");
    run("path /i/toolbox/a /i/toolbox");
    written();
    const std::string whole = fileText();
    ASSERT_EQ(use("<h><D name=\"old\"><F name=\"f\"/></D></"), "");
    for (size_t size = 0; size < whole.size() - std::strlen("Lumenvale>\n"); ++size) {
        ASSERT_TRUE(use(whole.substr(0, size)).ends_with(failure())) << size;
        ASSERT_EQ(listing("/i/toolbox/old"), "f:8000 ") << size;
    }
    // Repeats a call until none of its allocations fails; how many of them did.
    const auto failures = [](const std::function<void()>& call) {
        for (long at = 1;; ++at) {
            TheLedger().failAt = at;
            Attempt(call);
            if (std::exchange(TheLedger().failAt, 0) != 0) return at - 1;
        }
    };
    std::ofstream(file) << whole;
    const auto loads = [&] {
        useFile(file.c_str());
        ASSERT_TRUE(TheLedger().failAt != 0 || listing("/i/toolbox/old") == "f:8000 ");
    };
    EXPECT_GT(failures(loads), 5);
    EXPECT_GT(failures([&] { listing("/i/toolbox/a"); }), 1);
    EXPECT_EQ(listing("/i/toolbox/a"), "@B:4000 +p:4000 private:4000 s:4000 ");
    EXPECT_GT(failures([&] { vpWritePathToCacheFile(path, file.c_str()); }), 1);
    EXPECT_EQ(fileText(), whole);
}

// A tree, and the search that goes from node to node.
struct Walk {
    void add(size_t parent, const char* name) {
        (last[parent] == 0 ? child[parent] : sibling[last[parent]]) = names.size();
        last[parent] = names.size();
        names.emplace_back(name);
        for (auto* links : {&child, &sibling, &last}) links->push_back(0);
    }
    size_t search(size_t node, const char* name, bool caseSensitive) {
        ++compares;
        const char* const own = names[node].c_str();
        if ((caseSensitive ? strcmp(own, name) : strcasecmp(own, name)) == 0) return node;
        for (const size_t next : {child[node], sibling[node]}) {
            const size_t none = CacheSearch::kNotFound;
            const size_t found = next != 0 ? search(next, name, caseSensitive) : none;
            if (found != none) return found;
        }
        return CacheSearch::kNotFound;
    }
    std::vector<std::string> names = {"CachePath"};
    std::vector<size_t> child = {0}, sibling = {0}, last = {0};
    uint64_t compares = 0;
};

TEST_F(CacheTest, FindsAndCountsAsAWalkWould) {
    run("path - /i/toolbox");
    std::mt19937 random(4);
    const char* const names[] = {"a", "A", "b", "ab", "aB", "CachePath", "c", "AB", "none"};
    for (size_t round = 0; round < 100 && !HasFailure(); ++round) {
        Walk walk;
        std::string text = "<h>";
        for (std::vector<size_t> open = {0}; !open.empty();) {
            if (walk.names.size() > round || (random() % 2 == 0 && open.size() > 1)) {
                text += "</D>";
                open.pop_back();
            } else {
                open.push_back(walk.names.size());
                walk.add(open[open.size() - 2], names[random() % 7]);
                text += "<D name=\"" + walk.names.back() + "\">";
            }
        }
        ASSERT_EQ(use(text), "");
        for (size_t from = 0; from < walk.names.size() * std::size(names) * 2; ++from) {
            const auto node = static_cast<uint32_t>(from % walk.names.size());
            const char* const name = names[from / walk.names.size() / 2];
            const bool caseSensitive = from / walk.names.size() % 2 == 0;
            const CacheSearch found = SearchFrom(
                cacheMode.loaded->tree(), cacheMode.loaded->index(caseSensitive).find(name), node);
            walk.compares = 0;
            EXPECT_EQ(found.number, walk.search(node, name, caseSensitive));
            EXPECT_EQ(found.compares, walk.compares) << name << " from " << node << text;
        }
    }
}

TEST_F(CacheTest, NeitherDepthNorBreadthCostsStack) {
    run("path - /i/toolbox");
    std::string text = "<h>";
    for (int i = 0; i < 100000; ++i) text += "<D name=\"a\">";
    for (int i = 0; i < 100000; ++i) text += "</D>";
    for (int i = 0; i < 1000000; ++i) text += "<D name=\"b\"></D>";
    std::ofstream(file) << text << "<D name=\"last\"></D></";
    std::function<void()> work = [&] {
        vpUseToolboxCache(path, file.c_str(), "/i", false);
        EXPECT_TRUE(path.get()->isDirectory("/i/toolbox/last"));
        EXPECT_FALSE(path.get()->isDirectory("/i/toolbox/none"));
        vpRevertFromToolboxCache(path);
    };
    const auto call = [](void* what) -> void* {
        (*static_cast<std::function<void()>*>(what))();
        return nullptr;
    };
    pthread_attr_t small;
    pthread_t thread;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, 256 * 1024);
    ASSERT_EQ(pthread_create(&thread, &small, call, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
    EXPECT_EQ(cacheMode.compares, 1100002U + 1 + 1100002);
}

constexpr const char* kSmall =
    "<h>\n<D name=\"al\"><D name=\"al/private\"></D><F name=\"f.v\"/></D><D name=\"be\"></D></";

void ReplaceAll(std::string& text, const std::string& from, const char* to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos;) text.replace(at, from.size(), to);
}

// Each line: a callback (is directory, accessible, time, listing) and its name ('%' is the prefix),
// its answer, what it asks of the host, and what it prints, with each known text as its sign.
TEST_F(CacheTest, AnswersAndTellsLookUps) {
    run("tree /i/toolbox/d.x/ /i/toolbox/disk/f /e/f /cwd/f ; path -");
    EXPECT_EQ(use(kSmall), "");
    diagnose(true, false);
    const char* const signs[][2] = {
        {"/i/toolbox/", "%"},
        {" a directory?...\n", "?D "},
        {" accessible?...\n", "?A "},
        {"    Cache search for ", "S "},
        {"  Cache-Cached", " C"},
        {"  Success, ", " "},
        {" compares.\n", " "},
        {"\n    Cache search failure,     Failed.\n", " F "},
        {"\n    Did not match cache prefix % (11)    Failed.\n", "P "},
        {" not found in Toolbox Path Cache\n", " N "},
        {" not in cache, using file system IsAccessible.\n", " U "},
        {" not in cache...", "H "},
        {"Looking for contents of ", "L "},
        {"...\n", "! "},
    };
    std::istringstream cases(R"(D %be => 1 :  : Is %be?D S %be... 4
D %be => 1 :  : Is %be?D S %be... C 1
D %al/private => 1 :  : Is %al/private?D S %al/private... 4
D %be => 1 :  : Is %be?D S %be... 5
D %d.x => 0 :  :
D /e/@x => 1 :  : P Is /e/@x?D
D /e/PRIVATE => 1 :  : P Is /e/PRIVATE?D
D /e/f => 0 : isdir /e/f : P Is /e/f?D
D %disk => 1 : isdir %disk : Is %disk?D S %disk... F Is %disk?D
D %d.x/f => 0 : isdir %d.x/f : Is %d.x/f?D S %d.x/f... F Is %d.x/f?D
A %al => 1 :  : Is %al?A Is %al?D S %al... 2
A %d.x => 1 : access %d.x : Is %d.x?A %d.x U
T %al => 0 :  : Is %al?D S %al... C 1
T %al/f.v => 0 :  : Is %al?D S %al... C 1
T f => 0 : isdir f|isdir  : P Is f?D P Is ?D
T /no/f => 0 : isdir /no/f|isdir /no|time /no/f : P Is /no/f?D P Is /no?D
L %al => private:4000 f.v:8000 :  : L %al! S %al... C 1
L %be => :  : L %be! S %be... C 3
L %disk => f:8000 : list %disk : L %disk! S %disk... F %disk N H
L /e => f:8000 : list /e : L /e! P H)");
    for (std::string line; std::getline(cases, line);) {
        std::string name = line.substr(2, line.find(" =>") - 2);
        ReplaceAll(name, "%", "/i/toolbox/");
        PathMgr& on = *path.get();
        forget();
        std::string told = line[0] == 'D'   ? std::to_string(on.isDirectory(name.c_str()))
                           : line[0] == 'A' ? std::to_string(on.accessibility(name.c_str()))
                           : line[0] == 'T' ? std::to_string(on.modificationTime(name.c_str()))
                                            : listing(name);
        if (told.ends_with(' ')) told.pop_back();
        told += (told.empty() ? ": " : " : ") + host.takeCalls() + " : " + host.takePrinted();
        for (const auto& [text, sign] : signs) ReplaceAll(told, text, sign);
        while (told.ends_with(' ')) told.pop_back();
        EXPECT_EQ(told, line.substr(line.find("=> ") + 3));
    }
    vpRevertFromToolboxCache(path);
    EXPECT_EQ(host.takePrinted(),
              "Toolbox Path Cache resetting...\n\tTotalDirLookupRequests = 12\n"
              "\tTotalDirLookupHits = 9\n\tNumCompares = 36\n");
    cacheMode.compares = uint64_t{1} << 40;
    vpRevertFromToolboxCache(path);
    EXPECT_TRUE(host.takePrinted().ends_with("= 2147483647\n"));
}

// The console is the host's: whatever it does while a look-up is told, the look-up's answer stands.
TEST_F(CacheTest, AnswersThoughTheConsoleActs) {
    run("tree /i/toolbox/disk/f ; path - /i/toolbox");
    const std::string text =
        R"(<h><D name="al"><F name="one"/></D><D name="be"><F name="two"/></D></)";
    const std::function<void()> acts[] = {
        [&] { vpRevertFromToolboxCache(path); }, [&] { use("<h></"); },
        [&] { EXPECT_EQ(listing("/i/toolbox/be"), "two:8000 "); },
        [&] { EXPECT_EQ(listing("/i/toolbox/disk"), "f:8000 "); }};
    for (const auto& act : acts) {
        for (const std::string told : {"  Success, 2 compares.\n", "    Cache search for "}) {
            use(text);
            diagnose(true, false);
            host.onCall = [&](const std::string& print) {
                if (print.rfind(told, 0) != 0) return;
                host.onCall = nullptr;
                diagnose(false, false);
                act();
            };
            const std::string answer = listing("/i/toolbox/al");
            const bool before = told[4] == 'C';
            EXPECT_TRUE(answer == "one:8000 " || (before && answer.empty())) << answer;
            EXPECT_EQ(host.onCall, nullptr);
        }
    }
}

TEST_F(CacheTest, GoesFromStateToState) {
    run("tree /i/toolbox/al/disk ; path - /i/toolbox");
    const std::string other = "<h><D name=\"al\"><F name=\"new\"/></D></";
    diagnose(false, true);
    EXPECT_EQ(use(kSmall), std::string("Attempting to load Toolbox Path Cache ") + file +
                               "\n  Toolbox Path Cache read in T seconds.\n"
                               "Toolbox Path Cache contains 3 directories.\n"
                               "Request to use Toolbox Cache received or confirmed.\n"
                               "Toolbox Path Prefix is /i/toolbox/\n");
    hkMarkedTime span;
    EXPECT_EQ(hkGetMarkedTimes(&span, 1), 1U);
    EXPECT_EQ(std::string(span.label) + std::to_string(span.depth), "cachepath1");
    EXPECT_EQ(useFile("/no"),
              "Attempting to load Toolbox Path Cache /no\n"
              "Unable to open Toolbox Path Cache file: /no\n"
              "Error occurred loading: /no\nCache file ignored.\n");
    diagnose(false, false);
    EXPECT_EQ(useFile(nullptr), "Error occurred loading: \nCache file ignored.\n");
    EXPECT_EQ(useFile("/"),
              "Encountered unexpected end-of-file (line 0) while loading toolbox cache.\n"
              "Error occurred loading: /\nCache file ignored.\n");
    EXPECT_EQ(useFile(file.c_str(), nullptr), failure());
    EXPECT_EQ(useFile(file.c_str(), std::string(4088, 'r').c_str()), failure());
    vpUseToolboxCache(vpPath(), file.c_str(), "/i", false);
    EXPECT_EQ(host.takePrinted(), failure());
    EXPECT_EQ(listing("/i/toolbox/al"), "private:4000 f.v:8000 ") << "the cache in use stays";
    EXPECT_EQ(use(other, true), "  Toolbox Path Cache read in T seconds.\n");
    EXPECT_EQ(listing("/i/toolbox/al") + listing("/i/toolbox/no"), "new:8000 ");
    EXPECT_EQ(host.takePrinted(), "/i/toolbox/no not found in Toolbox Path Cache\n");
    EXPECT_EQ(useFile(file.c_str(), std::string(4087, 'r').c_str()), "");

    // Another path, under another case rule, shares the cache and ends it for both.
    vpPath first = path;
    path = vpCreatePathWithPreFrozen(0, "second", "/i/toolbox", vpCaseInsensitive, false);
    EXPECT_EQ(use(other), "");
    EXPECT_EQ(listing("/I/Toolbox/AL"), "new:8000 ");
    EXPECT_TRUE(first.get()->isDirectory("/@no"));
    vpRevertFromToolboxCache(path);
    EXPECT_FALSE(vpInToolboxCacheMode());
    EXPECT_FALSE(first.get()->isDirectory("/@no"));
    std::swap(first, path);
    EXPECT_EQ(listing("/i/toolbox/al"), "disk:8000 ");
    EXPECT_EQ(path.get()->modificationTime("/i/toolbox/al"), 10);
    EXPECT_EQ(host.takeCalls(), "isdir /@no|list /i/toolbox/al|time /i/toolbox/al");

    // The path is removed in cache mode.
    EXPECT_EQ(use(other), "");
    EXPECT_EQ(listing("/i/toolbox/AL") + listing("/I/toolbox/al"), "");
    run("add /i/toolbox/al => /i/toolbox/al ; holds /i/toolbox/al => new | | ; removepath");
    EXPECT_TRUE(vpInToolboxCacheMode());
    vpRevertFromToolboxCache(path);
    EXPECT_EQ(host.takePrinted(), "asserted here\n");
    EXPECT_FALSE(vpInToolboxCacheMode());

    // Switched off: what is in use stays, no more is loaded.
    run("path - /i/toolbox");
    EXPECT_EQ(use(kSmall), "");
    vpDisableToolboxCache();
    EXPECT_EQ(use(other), "");
    diagnose(false, true);
    EXPECT_EQ(use(other), "Request to use Toolbox Cache received and ignored.\n");
    EXPECT_EQ(listing("/i/toolbox/al"), "private:4000 f.v:8000 ");
}

}  // namespace
