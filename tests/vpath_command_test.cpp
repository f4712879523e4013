// The command as a shell runs it, over a fixed tree of real files. It is not always built.
#ifdef VPATH_TOOL

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_tree.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VPATH_CLANG_ASAN 1
#endif
#endif

namespace {

const std::string kNotFound = ": not found on the path; add its directory with --path";

class VpathCommand : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        const std::string tool = VPATH_TOOL;
        const std::string path = tool.substr(0, tool.rfind('/')) + ":" + std::getenv("PATH");
        setenv("PATH", path.c_str(), /*overwrite=*/1);
    }

    void SetUp() override {
        // clang-format off
        tree_.add({"a/foo.v", "a/private/foo.v", "a/private/help.v", "a/@Shape/Shape.v",
                   "a/@Shape/area.v", "a/+geo/area.v", "a/+geo/@Circle/Circle.v", "a/Bar.v",
                   "b/foo.v", "b/foo.p", "b/which.v", "b/[x,y].v", "b/-x.v", "b/gone.v -> nowhere",
                   "b/plain", "c/foo.txt", "tree/B/f.v", "tree/a/f.v", "tree/a/b/f.v",
                   "tree/a-b/f.v", "tree/@/f.v", "tree/.hidden/f.v", "tree/private/f.v",
                   "tree/@c/f.v", "tree/+p/f.v", "tree/Private/f.v", "tree/up -> ..",
                   "tree/a/back -> ../../tree", "tree/z -> a", "tree/g -> a/f.v", "out", "err"});
        // clang-format on
    }

    struct Row {
        std::string command;
        std::string out;       // $T stands for the tree
        std::string err = "";  // its lines without "vpath: " in front, each but the last ended
        int status = 0;
    };

    // Runs each row in the tree and compares all that it answers.
    void run(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.command);
            const std::string line =
                "cd " + tree_.root() + " && { " + row.command + "\n} > out 2> err";
            const int status = std::system(line.c_str());
            EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, row.status);
            EXPECT_EQ(contents("out"), row.out);
            std::string err;
            std::istringstream lines(row.err);
            for (std::string text; std::getline(lines, text);) err += "vpath: " + text + "\n";
            EXPECT_EQ(contents("err"), err);
        }
    }

    std::string contents(const char* name) {
        std::ifstream file(tree_.at(name));
        std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::string& root = tree_.root();
        for (size_t at = 0; (at = text.find(root, at)) != std::string::npos;) {
            text.replace(at, root.size(), "$T");
        }
        return text;
    }

    TempTree tree_;
};

}  // namespace

TEST_F(VpathCommand, WhichAnswersInOrderOfPrecedence) {
    run({
        {"vpath --path b:a which foo", "$T/b/foo.v\n"},
        {"vpath --path a:b:c which -a foo", "$T/a/foo.v\n$T/b/foo.v\n$T/b/foo.p\n$T/c/foo.txt\n"},
        {"vpath which --path a:b --ext v --all foo", "$T/a/foo.v\n$T/b/foo.v\n"},
        {"vpath --path b --ext p,v which foo", "$T/b/foo.v\n"},
        {"vpath --path b --ext .p which foo", "$T/b/foo.p\n"},
        {"vpath --path b --ext v, which foo plain", "$T/b/foo.v\n$T/b/plain\n"},
        {"vpath --path b --ext= which plain foo.p", "$T/b/plain\n$T/b/foo.p\n"},
        {"vpath --ignore-case --path a which bar FOO", "$T/a/Bar.v\n$T/a/foo.v\n"},
        // What special directories hold is reached as far as the name spells it out.
        {"vpath --path a which Shape @Shape/area +geo/area +geo/@Circle/Circle private/help",
         "$T/a/@Shape/Shape.v\n$T/a/@Shape/area.v\n$T/a/+geo/area.v\n$T/a/+geo/@Circle/Circle.v\n"
         "$T/a/private/help.v\n"},
        // Names that a parser of options could take for something else.
        {"vpath --path b which which '[x,y]' -- -x", "$T/b/which.v\n$T/b/[x,y].v\n$T/b/-x.v\n"},
        {"vpath --path b which gone", "$T/b/gone.v\n"},
        {"vpath --path b which --verify gone", "", "gone" + kNotFound, 1},
        {"cd a && vpath which --from-file x help", "$T/a/private/help.v\n"},
        {"vpath --path b:a which --from a/+geo foo", "$T/b/foo.v\n"},
    });
    for (const std::string from : {"--from a", "--from ./a/", "--from \"$PWD/a\"",
                                   "--from-file a/foo.v", "--from-file \"$PWD/a/no\""}) {
        const char* expected = "$T/a/private/foo.v\n$T/b/foo.v\n$T/b/foo.p\n$T/a/foo.v\n";
        run({{"vpath --path b:a which -a " + from + " foo", expected},
             {"vpath --path \"$PWD/b:$PWD/a/\" which -a " + from + " foo", expected}});
    }
}

TEST_F(VpathCommand, WhichSaysWhatWouldFindAName) {
    run({
        {"vpath --path a:b --ext v which foo no bar plain help foo", "$T/a/foo.v\n$T/a/foo.v\n",
         "no" + kNotFound +
             "\nbar: not found on the path; $T/a/Bar.v differs in case; use --ignore-case\n"
             "plain: not found on the path; $T/b/plain has another extension; list it in --ext\n"
             "help: not found on the path; $T/a/private/help.v is private; ask --from its "
             "directory",
         1},
        {"vpath which foo", "",
         "foo: not found on the path; only the current directory was searched; add others with "
         "--path",
         1},
        {"vpath --path a which \"$(printf 'x\\ty\\033\\nz')\"", "", "x\\ty\\x1b\\nz" + kNotFound,
         1},
        {"vpath --path a which $(printf '%04096d' 0) 2>&1 | sed 's/ 0*:/ N:/'",
         "vpath: N" + kNotFound + "\n"},
    });
}

TEST_F(VpathCommand, SourcesApplyInTheOrderWritten) {
    std::ofstream(tree_.at("list")) << "# comment\n\nc:" << tree_.at("a") << "\nnope\nb";
    const std::string no = "warning: Name is nonexistent or not a directory: ";
    const std::string twice = no + "nope\nwarning: Duplicate directory name: b";
    run({
        {"vpath --path b --path-file list which -a foo",
         "$T/b/foo.v\n$T/b/foo.p\n$T/c/foo.txt\n$T/a/foo.v\n", twice},
        {"vpath --path-file list --path b which foo", "$T/c/foo.txt\n", twice},
        {"vpath --recursive a --path \"$PWD/b\" which -a foo",
         "$T/a/foo.v\n$T/b/foo.v\n$T/b/foo.p\n"},
        {"vpath --cwd c --path ../b --path-file list which -a foo",
         "$T/c/foo.txt\n$T/b/foo.v\n$T/b/foo.p\n$T/a/foo.v\n",
         no + "c\n" + no + "nope\n" + no + "b"},
        {"vpath --path= --path '' --cwd a which foo", "$T/a/foo.v\n"},
        {"{ echo a; sleep 0.7; echo b; } | vpath --path-file /dev/stdin which foo", "$T/a/foo.v\n"},
    });
}

TEST_F(VpathCommand, TreesAreAddedByBytesWithoutLoops) {
    const char* inOrder =
        "$T/tree/@/f.v\n$T/tree/B/f.v\n$T/tree/Private/f.v\n$T/tree/a/f.v\n$T/tree/a/b/f.v\n"
        "$T/tree/a-b/f.v\n$T/tree/z/f.v\n$T/tree/z/b/f.v\n";
    std::string deep = "deep";
    for (int i = 0; i < 200; ++i) deep += "/d";
    tree_.add({deep + "/end.v"});
    run({
        {"vpath --recursive tree which -a f", inOrder},
        {"vpath --recursive \"$PWD/tree/\" which -a f", inOrder},
        {"vpath --cwd tree --recursive . which -a f", inOrder},
        // Directories that are there already keep their place, and what is below them is added.
        {"vpath --path \"$PWD/tree/a-b:$PWD/tree\" --recursive tree which -a f | head -n 2",
         "$T/tree/a-b/f.v\n$T/tree/@/f.v\n"},
        {"vpath --ignore-case --recursive tree which -a f | grep -c Private", "0\n", "", 1},
        {"vpath --recursive deep which end | wc -l", "1\n"},
    });
}

TEST_F(VpathCommand, StatsCountWhatWasLoaded) {
#if defined(__SANITIZE_ADDRESS__) || defined(VPATH_CLANG_ASAN)
    const std::string bytes = "0";  // nobody counts the sanitizer's heap
#else
    const std::string bytes = "[1-9][0-9]*";
#endif
    // clang-format off
    run({{"cd c; vpath --path ../a --stats which foo 2>&1 > /dev/null | sed -E 's/[0-9.]+ ms$/N ms/"
          "; s/held: " + bytes + "$/held: N/'",
          "directories: 2 on the path, 4 special ones inside them\nfiles: 9\ndistinct names: 6\n"
          "callbacks to load: 6 listing, 2 accessibility, 0 readability, 4 is-directory, 6 time "
          "stamp, 0 change-directory\n"
          "callbacks to answer: 0 listing, 0 accessibility, 0 readability, 0 is-directory, 0 time "
          "stamp, 0 change-directory\nload time: N ms\nbytes held: N\n"}});
    // clang-format on
}

TEST_F(VpathCommand, UsageAndOutputFailures) {
    std::ofstream(tree_.at("binary")).write("a\nb\0c\n", 6);
    // clang-format off
    const char* const rows[][2] = {
        {"", "no command; run 'vpath --help'"}, {"which", "NAME is required; run 'vpath --help'"},
        {"which ''", "an empty NAME; give the name of a file"},
        {"which $(printf '%04097d' 0)", "a NAME of more than 4096 characters; no file can have it"},
        {"bogus", "The following argument was not expected: bogus; run 'vpath --help'"},
        {"which --from a --from-file b x", "--from excludes --from-file; run 'vpath --help'"},
        {"which --from b f", "--from b: not a directory of the path; add it with --path"},
        {"--path a which foo > /dev/full", "cannot write the output: No space left on device"},
        {"which f --path-file n", "--path-file n: No such file or directory; name a readable file"},
        {"--path-file a which foo", "--path-file a: a directory; to add it, use --path"},
        {"--path-file binary which foo",
         "--path-file binary: NUL byte in line 2; give a text file of directory names"},
        {"--cwd nope which foo",
         "--cwd nope: No such file or directory; name a directory that can be entered"},
        {"--recursive no which f", "--recursive no: no such directory; name one that exists"},
        {"--recursive /nope which f",
         "--recursive /nope: No such file or directory; name a directory that exists"},
        {"--recursive a/foo.v which f",
         "--recursive $T/a/foo.v: not a directory; add its directory instead"}};
    // clang-format on
    for (const auto& [args, err] : rows) run({{std::string("vpath ") + args, "", err, 2}});
    run({
        {"vpath --version", "vpath " VPATH_PROJECT_VERSION "\n"},
        // Help fits a screen.
        {"for c in '' which; do vpath $c --help | awk 'length > 80 || NR > 24'; done", ""},
        {"vpath which --help | grep -A1 Example | tail -n 1",
         "  vpath --path /w/lib:/w/tools which -a --from /w/lib foo\n"},
        {"{ sleep 0.1; vpath --path a which foo; echo status $? > status; } | true", ""},
        {"cat status", "status 0\n"},
    });
}

TEST_F(VpathCommand, ShowsProgressOnATerminalOnly) {
    ASSERT_EQ(mkfifo(tree_.at("fifo").c_str(), 0600), 0);
    setenv("TERM", "xterm", /*overwrite=*/1);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        if (chdir(tree_.root().c_str()) != 0) _exit(3);
        execlp("vpath", "vpath", "--path-file", "fifo", "which", "foo", nullptr);
        _exit(3);
    }
    std::string shown;
    const auto readUntil = [&](const char* end) {
        char buffer[512];
        ssize_t size;
        while (shown.find(end) == std::string::npos &&
               (size = read(terminal, buffer, sizeof buffer)) > 0) {
            shown.append(buffer, static_cast<size_t>(size));
        }
    };
    std::ofstream fifo(tree_.at("fifo"));
    fifo << "nope\n" << std::flush;
    readUntil("nope\r\n");  // the load has begun
    usleep(600000);
    fifo << "a\nb\n";
    fifo.close();
    readUntil("no such text");
    close(terminal);
    waitpid(child, nullptr, 0);
    const std::string erase = "\r\x1b\\[K";
    const testing::Matcher<std::string> expected = testing::MatchesRegex(
        "vpath: warning: [^\r]*: nope\r\n(" + erase +
        "reading: [1-9][0-9]* directories, [0-9]+ a second)+" + erase + "[^\r]*/a/foo\\.v\r\n");
    EXPECT_TRUE(expected.Matches(shown)) << shown;
}

#endif  // VPATH_TOOL
