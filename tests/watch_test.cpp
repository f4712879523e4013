// `vpath watch` over real files. It is not always built.
#ifdef VPATH_TOOL

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/temp_tree.h"

namespace {

namespace fs = std::filesystem;

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// The output of a shell command; "vpath" stands for the command.
std::string OutputOf(const std::string& command) {
    FILE* const pipe = popen(Replaced(command, "vpath ", VPATH_TOOL " ").c_str(), "r");
    std::string output;
    char buffer[4096];
    for (size_t size; (size = fread(buffer, 1, sizeof buffer, pipe)) != 0;)
        output.append(buffer, size);
    pclose(pipe);
    return output;
}

constexpr char kPolls[] =
    "vpath: some directories cannot be watched: the file system does not tell of all changes; "
    "looking at them every second instead\n";

// Containers have their files on such a file system.
bool IsPolledAnyway(const TempTree& tree) {
    return OutputOf("stat -f -c %T " + tree.root()) == "overlayfs\n";
}

// A command that runs in the tree until it is stopped. In its lines $T stands for the tree.
class Running {
  public:
    Running(const TempTree& tree, const std::string& command) : tree_(tree) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        const std::string line = "exec 2> err; exec " + Replaced(command, "vpath ", VPATH_TOOL " ");
        pid_ = fork();
        if (pid_ == 0) {
            if (dup2(ends[1], 1) != 1 || chdir(tree.root().c_str()) != 0) _exit(3);
            execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            _exit(3);
        }
        close(ends[1]);
        out_ = ends[0];
    }
    ~Running() {
        if (pid_ > 0) stop(SIGKILL);
        closeOutput();
    }

    // The next line; nothing, and a failure, when none comes for long.
    std::string line() {
        size_t end;
        while ((end = pending_.find('\n')) == std::string::npos) {
            pollfd waited = {out_, POLLIN, 0};
            char buffer[4096];
            const ssize_t size =
                ::poll(&waited, 1, 60000) == 1 ? read(out_, buffer, sizeof buffer) : 0;
            if (size <= 0) {
                ADD_FAILURE() << "no more lines; stderr: " << errors();
                return "";
            }
            pending_.append(buffer, static_cast<size_t>(size));
        }
        const std::string line = pending_.substr(0, end);
        pending_.erase(0, end + 1);
        return Replaced(line, tree_.root(), "$T");
    }
    void waitFor(const std::string& start) {
        for (std::string got; !(got = line()).starts_with(start) && !got.empty();) continue;
    }
    void closeOutput() {
        if (out_ >= 0) close(std::exchange(out_, -1));
    }
    void signal(int number) const { kill(pid_, number); }
    int stop(int number) {
        signal(number);
        int status = 0;
        waitpid(std::exchange(pid_, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    std::string errors() const {
        std::ifstream file(tree_.at("err"));
        const std::string text(std::istreambuf_iterator<char>(file), {});
        return IsPolledAnyway(tree_) ? Replaced(text, kPolls, "") : text;
    }
    std::string firstError() const { return errors().substr(0, errors().find('\n')); }
    std::string rest() {
        char buffer[4096];
        for (ssize_t size; (size = read(out_, buffer, sizeof buffer)) > 0;)
            pending_.append(buffer, static_cast<size_t>(size));
        return pending_;
    }

  private:
    const TempTree& tree_;
    pid_t pid_ = -1;
    int out_ = -1;
    std::string pending_;
};

class WatchTest : public testing::Test {
  protected:
    void SetUp() override {
        tree_.add({"a/other.v", "b/foo.v", "c/sub/rel.v", "v1/link.v", "v2/link.p", "link -> v1",
                   "up/deep/lib/up.v", "made/@foo/foo.v", "made/@foo/private/p.v", "empty/"});
    }
    void shell(const std::string& command) const {
        ASSERT_EQ(std::system(("cd " + tree_.root() + " && " + command).c_str()), 0) << command;
    }

    TempTree tree_;
};

class EachWay : public WatchTest, public testing::WithParamInterface<const char*> {};

}  // namespace

// Each step's lines in any order, as the steps of a shell may show one by one; "reread" lines may
// come again, all others exactly once.
TEST_P(EachWay, TellsWhatChanges) {
    struct Row {
        const char* action;
        std::vector<std::string> lines;
    };
    const std::string file = "winner|foo|";
    const std::vector<Row> rows = {
        {"mv v1 v3", {"removed|$T/link", "winner|link|$T/link/link.v|→|-"}},
        {"mv v3 v1", {"added|$T/link", "winner|link|-|→|$T/link/link.v"}},
        {"touch a/foo.v", {"reread|$T/a", file + "$T/b/foo.v|→|$T/a/foo.v"}},
        {"mv a/foo.v a/bar.v", {"reread|$T/a", file + "$T/a/foo.v|→|$T/b/foo.v"}},
        {"rm b/foo.v", {"reread|$T/b", file + "$T/b/foo.v|→|-"}},
        {"touch \"$(printf 'b/x\\ty\\\\')\"",
         {"reread|$T/b", "winner|x\\ty\\\\|-|→|$T/b/x\\ty\\\\"}},
        // Special directories, whole and piece by piece.
        {"mv made/@foo a",
         {"added|$T/a/@foo", "added|$T/a/@foo/private", "reread|$T/a",
          file + "-|→|$T/a/@foo/foo.v"}},
        {"mkdir -p a/+p/+q && touch a/+p/+q/x.v",
         {"added|$T/a/+p", "added|$T/a/+p/+q", "winner|+p/+q/x|-|→|$T/a/+p/+q/x.v"}},
        {"rm a/+p/+q/x.v", {"reread|$T/a/+p/+q", "winner|+p/+q/x|$T/a/+p/+q/x.v|→|-"}},
        {"rm -r a/@foo",
         {"removed|$T/a/@foo", "removed|$T/a/@foo/private", file + "$T/a/@foo/foo.v|→|-"}},
        // Directories of the path that go and come back, what is above them included.
        {"mv a away", {"removed|$T/a", "removed|$T/a/+p", "removed|$T/a/+p/+q"}},
        {"touch away/foo.v; mv away a",
         {"added|$T/a", "added|$T/a/+p", "added|$T/a/+p/+q", file + "-|→|$T/a/foo.v"}},
        {"rm -r a",
         {"removed|$T/a", "removed|$T/a/+p", "removed|$T/a/+p/+q", file + "$T/a/foo.v|→|-"}},
        {"mkdir a && touch a/foo.v", {"added|$T/a", file + "-|→|$T/a/foo.v"}},
        {"touch -d '1 hour ago' up/deep/lib", {"reread|$T/up/deep/lib"}},
        {"mv up gone", {"removed|$T/up/deep/lib", "winner|up|$T/up/deep/lib/up.v|→|-"}},
        {"mkdir -p up/deep", {}},
        {"mv gone/deep/lib up/deep", {"added|$T/up/deep/lib", "winner|up|-|→|$T/up/deep/lib/up.v"}},
        {"ln -s v2 new && touch -d '1 hour ago' v2 && mv -T new link",
         {"reread|$T/link", "winner|link|$T/link/link.v|→|$T/link/link.p"}},
        {"rmdir empty", {"removed|$T//empty"}},
        {"mkdir empty", {"added|$T//empty"}},
        // The current directory, in which the command itself is, and one that is relative to it.
        {"rm -r c", {"removed|$T/c", "removed|$T/c/sub", "winner|rel|$T/c/sub/rel.v|→|-"}},
        {"mkdir -p c", {"added|$T/c", "current|$T/c"}},
        {"mkdir c/sub && touch c/sub/rel.v", {"added|$T/c/sub", "winner|rel|-|→|$T/c/sub/rel.v"}},
        {"touch c/foo.v", {"reread|$T/c", file + "$T/a/foo.v|→|$T/c/foo.v"}},
    };
    const auto isReread = [](const std::string& line) { return line.starts_with("reread"); };

    // Something else that holds a directory: its deletion does not tell the directory's watch.
    const int held = open(tree_.at("empty").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    Running watch(tree_,
                  "vpath --path ../a:$PWD/b:sub:$PWD/link:$PWD/up/deep/lib/:$PWD//empty "
                  "--cwd c watch --name foo --name link --name up --name rel "
                  "--name '+p/+q/x' --name \"$(printf 'x\\ty\\\\')\" " +
                      std::string(GetParam()));
    EXPECT_EQ(watch.line(), "winner\tfoo\t-\t→\t$T/b/foo.v");
    watch.waitFor("watching\t7");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.action);
        shell(row.action);
        std::vector<std::string> due = row.lines;
        while (!due.empty()) {
            const std::string line = Replaced(watch.line(), "\t", "|");
            if (std::erase(due, line) != 0) continue;
            ASSERT_TRUE(isReread(line)) << line << "\ndue: " << testing::PrintToString(due);
        }
    }
    shell("touch b/end.v; mkdir b/@end");
    for (std::string line; (line = watch.line()) != "added\t$T/b/@end";) {
        ASSERT_TRUE(isReread(line)) << line;
    }
    EXPECT_EQ(watch.stop(SIGTERM), 143);
    EXPECT_EQ(watch.errors(), "");
    close(held);
}

INSTANTIATE_TEST_SUITE_P(Watch, EachWay, testing::Values("", "--poll 0.05"), [](const auto& way) {
    return *way.param == '\0' ? "Watching" : "Polling";
});

TEST_F(WatchTest, DoesNothingWhenNothingChanges) {
    if (IsPolledAnyway(tree_)) GTEST_SKIP();
    Running watch(tree_, "vpath --path a:b --cwd . --stats watch --name foo");
    watch.waitFor("watching\t3");
    shell("ls -lR > /dev/null; cat b/foo.v > /dev/null; touch b/.hidden made/x");
    OutputOf("cd " + tree_.root() + "; vpath --path a:b which foo");
    EXPECT_EQ(watch.stop(SIGINT), 130);
    EXPECT_EQ(watch.firstError(),
              "watched: 0 events in 0 bursts, 0 retests, 0 polls, 0 directories read");

    // A change is read at once, and again when its time stamp can be trusted; then all is quiet.
    Running again(tree_, "vpath --path a:b --stats watch");
    again.waitFor("watching\t3");
    shell("touch b/new.v");
    again.waitFor("reread\t$T/b");
    again.waitFor("reread\t$T/b");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(again.stop(SIGTERM), 143);
    EXPECT_EQ(again.firstError(),
              "watched: 1 events in 1 bursts, 1 retests, 0 polls, 2 directories read");
}

TEST_F(WatchTest, TakesInWhatChangesWhileItLoads) {
    ASSERT_EQ(mkfifo(tree_.at("fifo").c_str(), 0600), 0);
    Running watch(tree_, "vpath --path-file fifo watch --name foo");
    std::ofstream fifo(tree_.at("fifo"));
    fifo << "a\nnone\n" << std::flush;
    while (watch.errors().find("none\n") == std::string::npos) usleep(1000);
    shell("touch a/foo.v");
    fifo << "b\n";
    fifo.close();
    EXPECT_EQ(watch.line(), "winner\tfoo\t-\t→\t$T/a/foo.v");
}

TEST_F(WatchTest, TestsEverythingAfterEventsWereLost) {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int events = 0;
    limit >> events;
    if (events == 0 || events > 100000) GTEST_SKIP() << "too many events are kept";
    Running watch(tree_, "vpath --path a:b:v1 watch --name foo --name new");
    watch.waitFor("watching");
    watch.signal(SIGSTOP);
    const std::string name = tree_.at("b/made");
    for (int i = 0; i < events; i += 2) {
        std::ofstream file(name);
        fs::remove(name);
    }
    shell("rm -r a; mkdir a; touch a/foo.v; mv b/foo.v v1");
    watch.signal(SIGCONT);
    watch.waitFor("winner\tfoo\t$T/b/foo.v\t→\t$T/a/foo.v");
    watch.waitFor("reread\t$T/a");  // the last time without a cause
    shell("mv a/foo.v a/new.v");
    watch.waitFor("winner\tfoo\t$T/a/foo.v\t→\t$T/v1/foo.v");
    watch.waitFor("winner\tnew\t-\t→\t$T/a/new.v");
    EXPECT_EQ(watch.stop(SIGTERM), 143);
    EXPECT_EQ(watch.errors(), "vpath: too many changes at once; testing every directory\n");
}

TEST_F(WatchTest, EndsWithItsReader) {
    Running watch(tree_, "vpath --path a watch");
    watch.waitFor("watching");
    watch.closeOutput();
    EXPECT_EQ(watch.stop(0), 0);
    EXPECT_EQ(watch.errors(), "");

    // A reader that does not read keeps it from writing, not from ending.
    const std::string longName(200, 'x');
    std::string path;
    for (int i = 0; i < 400; ++i) {
        const std::string name = longName + std::to_string(i);
        tree_.add({name + "/"});
        path += name + ":";
    }
    Running stuck(tree_, "vpath --path " + path + " watch");
    stuck.waitFor("watching");
    shell("for d in x*; do : > $d/f; done");
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(stuck.stop(SIGTERM), 143);
    const std::string rest = stuck.rest();
    EXPECT_GT(rest.size(), 50000U);
    EXPECT_EQ(rest.back(), '\n') << "a partial line";
}

TEST_F(WatchTest, PollsWhatItCannotWatch) {
    const std::string without = "unshare -Ur sh -c 'echo ";
    if (IsPolledAnyway(tree_)) GTEST_SKIP();
    if (std::system((without + "9 > /proc/sys/user/max_inotify_watches'").c_str()) != 0) {
        GTEST_SKIP() << "no user namespaces";
    }
    const std::string kinds[][2] = {
        {without + "0 > /proc/sys/user/max_inotify_instances; exec \"$0\" \"$@\"' ",
         "inotify: Too many open files"},
        {without + "5 > /proc/sys/user/max_inotify_watches; exec \"$0\" \"$@\"' ",
         "no inotify watches left; raise fs.inotify.max_user_watches"},
        {"", "the file system does not tell of all changes"}};
    for (const auto& [limit, reason] : kinds) {
        Running watch(tree_, limit + "vpath --path a:b watch --name foo --name x" +
                                 (limit.empty() ? " --path /proc/sys" : ""));
        watch.waitFor("watching");
        shell("touch a/foo.v; mkdir b/+p; touch b/+p/x.v b/x.v");
        watch.waitFor("winner\tfoo");
        watch.waitFor("winner\tx");
        shell("rm -r a/foo.v b/+p b/x.v");
        watch.waitFor("winner\tfoo");
        EXPECT_EQ(watch.stop(SIGTERM), 143);
        EXPECT_EQ(watch.errors(),
                  Replaced(kPolls, "the file system does not tell of all changes", reason));
    }
}

namespace {

// Edits of all kinds in a tree of directories, among them whole directories that come and go.
class Edits {
  public:
    static constexpr int kGroups = 4;
    static constexpr int kDirs = 8;  // in each group
    static constexpr int kNames = 12;

    Edits(const TempTree& tree, unsigned seed) : tree_(tree), random_(seed) {
        for (int i = 0; i < 100; ++i) edit();
        // What is not there at first never is on the path.
        for (int i = 0; i < kGroups * kDirs; ++i) fs::create_directories(dir(i));
    }

    static std::string name(int i) { return "n" + std::to_string(i); }
    // First a directory that is another one whenever a link changes.
    std::string path() const {
        std::string path = tree_.at("link");
        for (int i = 0; i < kGroups * kDirs; ++i) path += ":" + dir(i);
        return path;
    }

    void edit() {
        const std::string from = place();
        const std::string to = place();
        const std::string file = "/" + name(below(kNames)) + ".v";
        std::error_code ignored;
        const auto move = [&](const auto& a, const auto& b) { fs::rename(a, b, ignored); };
        const auto remove = [&](const auto& what) { fs::remove_all(what, ignored); };
        const std::function<void()> kinds[] = {
            [&] { fill(from, 1); }, [&] { fill(from, 3); }, [&] { fill(from, 20); },
            [&] { fill(from + special(), 3); }, [&] { remove(from); },
            [&] { remove(from), fill(from, 3); }, [&] { remove(from + file); },
            [&] { remove(from + special()); },
            [&] { move(from + file, to + "/" + name(below(kNames)) + ".v"); },
            [&] { move(from + special(), to + special()); },
            [&] { move(from, to + "/moved"), move(to + "/moved", from); },
            // What is away comes back before the next goes, perhaps to another place.
            [&] {
                move(tree_.at("away"), below(2) == 0 ? away_ : dir(anyDir()));
                remove(tree_.at("away"));
                away_ = below(4) == 0 ? group(below(kGroups)) : dir(anyDir());
                move(away_, tree_.at("away"));
            },
            [&] {
                fs::create_directory_symlink(dir(anyDir()), tree_.at("new"));
                move(tree_.at("new"), tree_.at("link"));
                remove(tree_.at("new"));
            }};
        kinds[below(static_cast<int>(std::size(kinds)))]();
    }
    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  private:
    std::string group(int i) const { return tree_.at("g" + std::to_string(i)); }
    std::string dir(int i) const { return group(i % kGroups) + "/d" + std::to_string(i / kGroups); }
    int anyDir() { return below(kGroups * kDirs); }
    std::string special() {
        const std::string kinds[] = {"/private", "/@n1", "/@n2", "/+p", "/+p/+q", "/+p/@n1"};
        return kinds[below(6)];
    }
    std::string place() { return dir(anyDir()) + (below(4) == 0 ? special() : ""); }
    void fill(const std::string& directory, int files) {
        std::error_code ignored;
        fs::create_directories(directory, ignored);
        while (files-- > 0) std::ofstream(directory + "/" + name(below(kNames)) + ".v");
    }

    const TempTree& tree_;
    std::mt19937 random_;
    std::string away_;
};

int Setting(const char* variable, const char* otherwise) {
    const char* const text = std::getenv(variable);
    return std::atoi(text == nullptr ? otherwise : text);
}

}  // namespace

// While edits go on, and whenever they pause, what it has told is what a fresh look-up answers.
// VPATH_WATCH_SECONDS sets how long that takes, VPATH_WATCH_SEED what is done.
TEST_F(WatchTest, AgreesWithFreshLookUps) {
    const int seconds = Setting("VPATH_WATCH_SECONDS", "8");
    const int pauses = std::max(4, seconds / 2);
    const unsigned seed = static_cast<unsigned>(Setting("VPATH_WATCH_SEED", "1"));
    Edits edits(tree_, seed);
    std::vector<std::string> names = {"@n1/n1", "@n2/n3", "+p/n4", "+p/+q/n5", "private/n6"};
    for (int i = 0; i < Edits::kNames; ++i) names.push_back(Edits::name(i));

    const std::string path = "vpath --cwd c --path $PWD/b:" + edits.path() + " ";
    std::string command = path + "--stats watch";
    for (const std::string& name : names) command += " --name " + name;
    for (int i = 0; i < 2 * pauses; ++i) command += " --name mark" + std::to_string(i);
    Running watch(tree_, command);
    std::map<std::string, std::string> winners;
    const auto readUntil = [&](const std::string& start) {
        for (std::string line; !line.starts_with(start);) {
            line = watch.line();
            if (line.empty()) return;
            std::istringstream fields(line);
            std::string kind, name, before, arrow;
            if (!(fields >> kind >> name) || kind != "winner") continue;
            fields >> before >> arrow;
            EXPECT_EQ(before, winners.try_emplace(name, before).first->second) << line;
            fields >> winners[name];
        }
    };
    readUntil("watching");

    using Clock = std::chrono::steady_clock;
    int editCount = 0;
    for (int pause = 0; pause < pauses; ++pause) {
        const auto end = Clock::now() + std::chrono::milliseconds(seconds * 1000 / pauses);
        for (; Clock::now() < end; ++editCount) {
            edits.edit();
            if (edits.below(4) != 0) usleep(static_cast<unsigned>(edits.below(30000)));
        }
        // The first mark may be seen by a refresh that began before the last edits; the second one
        // is made when that has ended.
        for (int i = 2 * pause; i < 2 * pause + 2; ++i) {
            shell("touch b/mark" + std::to_string(i) + ".v");
            readUntil("winner\tmark" + std::to_string(i));
        }
        for (const std::string& name : names) {
            std::string fresh =
                OutputOf("cd " + tree_.root() + "; " + path + "which " + name + " 2> /dev/null");
            fresh = Replaced(fresh, tree_.root(), "$T");
            fresh = fresh.empty() ? "-" : fresh.substr(0, fresh.size() - 1);
            EXPECT_EQ(winners[name], fresh)
                << name << "; seed " << seed << ", after " << editCount << " edits";
        }
    }
    EXPECT_EQ(watch.stop(SIGTERM), 143);
    std::cout << editCount << " edits; " << watch.firstError() << "\n";
}

#endif  // VPATH_TOOL
