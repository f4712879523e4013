#include <hostkit/hostkit.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "support/path_test.h"

namespace {

using Host = FakeHost;

// A process in which nobody has installed anything yet. Answers the number of the check that
// failed.
int StartOfAProcess() {
    static std::string error;
    vpEnvironmentFcns* silent = vpGetEnvironmentFcns();
    if (silent->error != nullptr || silent->warning != nullptr || silent->info != nullptr) return 1;
    vpReturnEnvironmentFcns(silent);
    vpSetMessageFcns([](const char* text) { error += text; }, nullptr, nullptr);
    if (vpSetDefaultIOFcns(Host::list, Host::accessibility, Host::isReadable, nullptr, nullptr))
        return 2;
    if (vpSetDefaultIOFcns(nullptr, nullptr, nullptr, Host::isDir, nullptr)) return 3;
    if (vpCreatePath(0, "p").get() != nullptr || vpLookupPath("p").get() != nullptr) return 4;
    if (error != "Cannot construct a Path until all default I/O functions have been set") return 5;
    if (!vpSetDefaultIOFcns(nullptr, nullptr, nullptr, nullptr, Host::modificationTime)) return 6;
    FakeHost host;
    return vpCreatePath(0, "p").get() == nullptr ? 7 : 0;
}

TEST(HostHooksDeathTest, NoPathBeforeTheTableIsComplete) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(StartOfAProcess()), testing::ExitedWithCode(0), "");
}

class HostHooks : public PathTest {};

TEST_F(HostHooks, EachPathKeepsItsOwnTable) {
    const vpListingFcn oneFile = [](vpPath, const char*, unsigned int**) {
        return std::strcpy(static_cast<char*>(hkCalloc(1, 5)), "x.v");
    };
    run("tree /a/y.v /b/y.v /c/y.v /d/y.v ; path -");
    vpSetDefaultIOFcns(oneFile, nullptr, nullptr, nullptr, nullptr);
    run("add /a => /a ; holds /a => y.v | |");
    EXPECT_TRUE(vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr));
    run("add /b => /b ; holds /b => x.v | |");  // the default, not the previous one
    EXPECT_TRUE(vpSetIOFcns(path, Host::list, nullptr, nullptr, nullptr, nullptr));
    run("add /c => /c ; holds /c => y.v | |");
    vpUpdatePathArrayDefaultIOFcns();
    run("add /d => /d ; holds /d => x.v | |");
}

TEST_F(HostHooks, ChangeDirectoryFallsBackToTheCLibrary) {
    char before[4096], now[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    run("tree /a/ ; path - ; cwd /a => ; calls chdir => /a");
    vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr);  // the default is the host's
    run("cwd /cwd => ; calls chdir => /cwd");
    vpSetDefaultIOFcns(nullptr, nullptr, nullptr, nullptr, nullptr);  // now it is chdir
    vpSetIOFcnsNew(path, nullptr, nullptr, nullptr, nullptr, nullptr, Host::changeDir);
    run("cwd /a => ; calls chdir => /a");
    vpUpdatePathArrayDefaultIOFcns();
    run("cwd / => ; calls chdir =>");
    EXPECT_STREQ(getcwd(now, sizeof now), "/");
    ASSERT_EQ(chdir(before), 0);
}

TEST_F(HostHooks, LongArgumentsOfWarningsAreCut) {
    run("path -");
    for (const size_t length : {4097U, 4352U, 4353U, 5000U}) {
        const std::string name(length, 'x'), cut = name.substr(0, 4353);
        step("list " + name);
        EXPECT_EQ(host.takeMessages(), "warning: Directory name too long: " +
                                           (length < 4353 ? name : name.substr(0, 4348) + "..."));
        // A name by itself is an error, or a search's warning, cut once by its precision.
        step("add " + name);
        EXPECT_EQ(host.takeMessages(), "error: Directory name too long: " + cut);
        EXPECT_EQ(step("files A " + name), "null");
        EXPECT_EQ(host.takeMessages(), "warning: Directory name too long: " + cut);
    }
    run("add /%s%n =>  ; messages => warning: Name is nonexistent or not a directory: /%s%n");
}

TEST_F(HostHooks, MessageFunctionsAreSavedAndPutBack) {
    run("path -");
    vpEnvironmentFcns* saved = vpGetEnvironmentFcns();
    EXPECT_TRUE(saved->error == Host::onError && saved->warning == Host::onWarning &&
                saved->info == Host::onInfo);
    vpSetMessageFcns(nullptr, nullptr, Host::onError);
    run("add /none => ; messages =>");
    vpReturnEnvironmentFcns(saved);
    run("add /none => ; messages => warning: Name is nonexistent or not a directory: /none");
    TheLedger().failAt = 1;
    EXPECT_EQ(vpGetEnvironmentFcns(), nullptr);
}

// The host of these tests is itself a piece of work.
TEST(FakeHostTest, ListsInTheOrderGivenAndKnowsWhatIsThere) {
    FakeHost host;
    host.add({"/w/run.v", "/w/@Cls/", "/w/private/f.v", "rel/x"});
    host.setWord("/w/run.v", 0x8001);
    unsigned int* words = nullptr;
    char* listing = Host::list(vpPath(), "/w", &words);
    EXPECT_EQ(std::string(listing, 20), std::string("run.v\0@Cls\0private\0", 20));
    EXPECT_TRUE(words[0] == 0x8001 && words[1] == 0x4000 && words[2] == 0x4000);
    hkFree(listing);
    hkFree(words);
    host.remove("/w/private");
    EXPECT_EQ(host.dump(), "//\n/cwd/\n/cwd/rel/\n/cwd/rel/x\n/w/\n/w/@Cls/\n/w/run.v\n");
    host.setTime("/w", 77);
    EXPECT_TRUE(Host::modificationTime(vpPath(), "/w") == 77 && time(nullptr) == host.now);
    EXPECT_TRUE(Host::changeDir("/w/run.v") != 0 && Host::changeDir("rel") == 0 &&
                host.exists("x"));
    EXPECT_EQ(host.takeCalls(), "list /w|time /w|chdir /w/run.v|chdir rel");
}

}  // namespace
