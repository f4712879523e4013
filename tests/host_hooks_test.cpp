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
    if (silent->error || silent->warning || silent->info) return 1;
    vpReturnEnvironmentFcns(silent);
    vpSetMessageFcns([](const char* text) { error += text; }, nullptr, nullptr);
    if (vpSetDefaultIOFcns(Host::list, Host::accessibility, Host::isReadable, nullptr, nullptr) ||
        vpSetDefaultIOFcns(nullptr, nullptr, nullptr, Host::isDir, nullptr) ||
        vpCreatePath(0, "p").get() != nullptr || vpLookupPath("p").get() != nullptr) {
        return 2;
    }
    if (error != "Cannot construct a Path until all default I/O functions have been set") return 3;
    if (!vpSetDefaultIOFcns(nullptr, nullptr, nullptr, nullptr, Host::modificationTime)) return 4;
    FakeHost host;
    return vpCreatePath(0, "p").get() == nullptr ? 5 : 0;
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
    const auto set = [&](vpListingFcn list) {
        return vpSetIOFcnsNew(path, list, nullptr, nullptr, nullptr, nullptr, Host::changeDir);
    };
    char before[4096], now[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    run("tree /a/y.v /b/y.v /c/y.v /d/y.v /e/ ; path - ; cwd /e => ; calls chdir => /e");
    EXPECT_TRUE(vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr));
    run("cwd /cwd => ; calls chdir => /cwd");  // the default is still the host's
    vpSetDefaultIOFcns(oneFile, nullptr, nullptr, nullptr, nullptr);  // and now it is chdir
    run("add /a => /a ; holds /a => y.v | |");
    EXPECT_TRUE(set(nullptr));
    run("add /b => /b ; holds /b => x.v | |");  // the default, not the previous one
    EXPECT_TRUE(set(Host::list));
    run("add /c => /c ; holds /c => y.v | | ; cwd /e => ; calls chdir => /e");
    vpUpdatePathArrayDefaultIOFcns();
    run("add /d => /d ; holds /d => x.v | | ; cwd / => ; calls chdir =>");
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

}  // namespace
