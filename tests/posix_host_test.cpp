#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>

#include <hostkit/hostkit.h>
#include <vpath/search.h>
#include <vpath_posix/posix_host.h>

#include "support/fake_host.h"
#include "support/temp_tree.h"

namespace {

// "name:word" for each entry, joined by blanks; "-" for a null listing.
std::string Listing(const std::string& dir) {
    unsigned int anything = 0, *words = &anything;
    char* names = vpPosixListDirectory(vpPath(), dir.c_str(), &words);
    if (names == nullptr) return words == nullptr ? "-" : "no names, but words";
    std::string listing;
    const unsigned int* word = words;
    for (const char* name = names; *name != '\0'; name += std::strlen(name) + 1) {
        char code[16];
        std::snprintf(code, sizeof code, ":%x ", *word++);
        listing += std::string(name) + code;
    }
    hkFree(names);
    hkFree(words);
    listing.pop_back();
    return listing;
}

size_t OpenDescriptors() {
    const auto begin = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin, {}));
}

// Whether `wrong` gives 0 in a process that has no rights but everybody's.
void ExpectAsNobody(const std::function<int()>& wrong) {
    const pid_t child = fork();
    if (child == 0) {
        if (getuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(64);
        _exit(wrong());
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << "exit status " << WEXITSTATUS(status);
}

class PosixHost : public testing::Test {
  protected:
    ~PosixHost() override {
        EXPECT_EQ(TheLedger().blocks, blocks_);
        EXPECT_EQ(OpenDescriptors(), descriptors_);
    }
    TempTree tree_;

  private:
    const long blocks_ = TheLedger().blocks;
    const size_t descriptors_ = OpenDescriptors();
};

}  // namespace

TEST_F(PosixHost, ListsEntriesByBytesWithTheirKinds) {
    tree_.add({"d/b.v", "d/B.v", "d/a/", "d/\xff\xfe", "d/\xc3\xa9.v", "d/.hidden", "d/@c/",
               "d/x\ny", "d/private/", "d/to_file -> b.v", "d/to_dir -> a", "d/dangling -> nowhere",
               "d/loop -> loop", "d/a.v", "empty/.hidden"});
    ASSERT_EQ(mkfifo(tree_.at("d/pipe").c_str(), 0600), 0);
    EXPECT_EQ(Listing(tree_.at("d")),
              "@c:4000 B.v:8000 a:4000 a.v:8000 b.v:8000 dangling:0 loop:0 pipe:0 private:4000 "
              "to_dir:4000 to_file:8000 x\ny:8000 \xc3\xa9.v:8000 \xff\xfe:8000");
    for (const char* nothing : {"empty", "missing", "d/b.v", "d/dangling"}) {
        EXPECT_EQ(Listing(tree_.at(nothing)), "-") << nothing;
    }
    EXPECT_EQ(Listing(std::string(5000, 'x')), "-");
    unsigned int* words = nullptr;
    EXPECT_EQ(vpPosixListDirectory(vpPath(), nullptr, &words), nullptr);

    std::string expected;
    for (int i = 1000; i < 2500; ++i) {
        const std::string name = "file" + std::to_string(i) + std::string(60, 'x');
        tree_.add({"many/" + name});
        expected += (expected.empty() ? "" : " ") + name + ":8000";
    }
    EXPECT_EQ(Listing(tree_.at("many")), expected);

    // Links that may not be followed are nothing in particular.
    chmod(tree_.at("d").c_str(), 0444);
    ExpectAsNobody([&] { return Listing(tree_.at("d")).find("to_file:0 ") == std::string::npos; });
    chmod(tree_.at("d").c_str(), 0755);
}

TEST_F(PosixHost, ListsADirectoryThatComesAndGoes) {
    tree_.add({"steady"});
    const pid_t child = fork();
    if (child == 0) {
        for (;;) {
            tree_.add({"d/a/", "d/b", "d/c -> b"});
            std::filesystem::remove_all(tree_.at("d"));
        }
    }
    // Until both states were met, and many times something between them may have been.
    int nothing = 0, something = 0;
    while (std::min(nothing, something) < 100) {
        const std::string listing = Listing(tree_.at("d"));
        EXPECT_TRUE(listing == "-" || listing.find_first_of("abc") == 0) << listing;
        ++(listing == "-" ? nothing : something);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(PosixHost, AnswersAboutOneName) {
    tree_.add({"open/file", "closed/below/", "listed/", "entered/", "secret", "link -> open",
               "dangling -> nowhere", "loop -> loop"});
    for (const char* name : {"closed", "secret"}) chmod(tree_.at(name).c_str(), 0);
    chmod(tree_.at("listed").c_str(), 0444);
    chmod(tree_.at("entered").c_str(), 0111);
    const vpDirAccessibility yes = vpDirAccessible, denied = vpDirPermissionDenied;
    const vpDirAccessibility no = vpDirNonexistent;
    // clang-format off
    const struct { std::string name; vpDirAccessibility access; bool isDirectory, isReadable; }
    rows[] = {
        {"open", yes, true, true}, {"open/", yes, true, true}, {"link", yes, true, true},
        {"closed", denied, true, false}, {"closed/below", denied, false, false},
        {"closed/missing", denied, false, false}, {"listed", denied, true, true},
        {"entered", denied, true, false}, {"missing", no, false, false},
        {"open/file", no, false, true}, {"secret", no, false, false},
        {"open/file/below", no, false, false}, {"dangling", no, false, false},
        {std::string(5000, 'x'), no, false, false}, {"loop", vpDirInaccessible, false, false}};
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string full = tree_.at(row.name);
        const char* name = full.c_str();
        ExpectAsNobody([&] {
            return (vpPosixAccessibility(vpPath(), name) == row.access ? 0 : 1) +
                   (vpPosixIsDirectory(vpPath(), name) == row.isDirectory ? 0 : 2) +
                   (vpPosixIsReadable(name) == row.isReadable ? 0 : 4);
        });
    }
    for (const char* name : {"closed", "listed", "entered"}) chmod(tree_.at(name).c_str(), 0755);
    EXPECT_EQ(vpPosixAccessibility(vpPath(), nullptr), no);
    EXPECT_FALSE(vpPosixIsDirectory(vpPath(), nullptr));
    EXPECT_FALSE(vpPosixIsReadable(nullptr));

    const int here = open(".", O_RDONLY);
    EXPECT_EQ(vpPosixChangeDirectory(tree_.at("open").c_str()), 0);
    EXPECT_TRUE(vpPosixIsReadable("file"));
    EXPECT_EQ(vpPosixChangeDirectory("file"), -1);
    EXPECT_EQ(vpPosixChangeDirectory(nullptr), -1);
    EXPECT_EQ(fchdir(here), 0);
    close(here);
}

TEST_F(PosixHost, ModificationTimesAreNeverInTheFuture) {
    tree_.add({"file"});
    const std::string file = tree_.at("file");
    const auto timeAfterSetting = [&](time_t seconds) {
        const timespec times[2] = {{seconds, 999999999}, {seconds, 999999999}};
        EXPECT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
        return vpPosixModificationTime(vpPath(), file.c_str());
    };
    EXPECT_EQ(timeAfterSetting(1234567), 1234567);
    const time_t before = time(nullptr);
    const long future = timeAfterSetting(before + 1000);
    EXPECT_TRUE(before <= future && future <= time(nullptr)) << future - before;
    EXPECT_EQ(vpPosixModificationTime(vpPath(), tree_.at("missing").c_str()), 0);
    EXPECT_EQ(vpPosixModificationTime(vpPath(), nullptr), 0);
}

TEST_F(PosixHost, PathsAreReadThroughIt) {
    tree_.add(
        {"w/f.v", "w/sub/", "w/@Cls/Cls.v", "w/private/f.v", "w/dangling.v -> nowhere", "in/"});
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(tree_.at("in"));
    ASSERT_TRUE(vpInstallPosixHost());
    vpPath path = vpCreatePathWithPreFrozen(0, "posix", nullptr, vpCaseDefault, true);
    const vpDir w = vpAddDir(path, tree_.at("w").c_str(), vpAddAtEnd);
    std::string found;
    for (const vpReadCheck readCheck : {vpReadCheckVerify, vpReadCheckSkip}) {
        for (const char* name : {"f", "Cls", "sub", "dangling"}) {
            char file[PATH_MAX + NAME_MAX] = "";
            vpFindFirstFileVisibleToDir(w, name, nullptr, readCheck, nullptr, file);
            found += *file ? file + tree_.at("w").size() : "-";
        }
    }
    EXPECT_EQ(found, "/private/f.v/@Cls/Cls.v--/private/f.v/@Cls/Cls.v-/dangling.v");
    vpRemovePath(path);
    std::filesystem::current_path(before);
}
