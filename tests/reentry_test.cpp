// Calls that come while others are under way: from open searches, listeners and callbacks. Often it
// is open what such a call still does; that nothing freed is touched, that nothing is left behind
// and that the path stays in order is for the ledger, the sanitizers and CheckTable to see.
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <vpath/pathname.h>

#include "support/path_test.h"
#include "support/temp_tree.h"

namespace {

class Reentry : public PathTest {
  protected:
    void reopen() {
        host.onCall = nullptr;
        vpTerminate();
        host.reset();
        run(R"(
tree /a/f.v /a/@C/f.v /a/private/f.v /b/f.v /b/@C/f.v /c/f.v /c/f.p /d/f.v rel/f.v /new/rel/g.v
path /a:rel
)");
        vpRegisterPathInterest(path, FakeHost::secondListener);
        vpSetIsClassFcn(FakeHost::isClass);
    }
    ~Reentry() override { vpSetIsClassFcn(nullptr); }
    // Runs `action` inside the `nth` callback or event from here on.
    void atCall(long nth, std::function<void()> action) {
        callsLeft_ = nth;
        host.onCall = [this, action](const std::string& call) {
            if (--callsLeft_ != 0) return;
            host.onCall = nullptr;
            SCOPED_TRACE("inside " + call);
            action();
        };
    }
    // Whatever became of a call: the path, when there still is one, can be brought to what the disk
    // holds.
    void checkContents() {
        if (vpLookupPath("p").get() == nullptr) return;
        vpHideCWD(path, false);
        vpRevertFromToolboxCache(path);
        run("unfreeze /a ; refreshall 4 ; replace /c:/a ; refreshall 4 ; "
            "holds /c => f.v f.p | | ; holds /a => f.v | | @C private");
    }

  private:
    long callsLeft_ = 0;
};

// A file that holds nothing but the directories of the tests.
const char* CacheFile() {
    static const TempTree tree;
    static const std::string name = tree.at("cache");
    std::ofstream(name) << "<Lumenvale type=\"Path Cache File\" version=\"1.1\" date=\"\">\n"
                           " <D name=\"a\">\n  <F name=\"f.v\"/>\n   <D name=\"a/@C\">\n"
                           "    <F name=\"f.v\"/>\n   </D>\n </D>\n</Lumenvale>\n";
    return name.c_str();
}

struct Work {
    std::string name;
    std::function<void(Reentry&)> run;
};
// Every exported function that no command of the scripts calls, with arguments that mean something
// in the tree above; of those that work on strings, the ones that need memory. Not
// vpDisableToolboxCache: nothing in this process could use a cache after it.
std::vector<Work> Calls() {
    static const char* exts[] = {"v", "p", nullptr};
    static char text[10000];
    const auto calls = [](Reentry& test) {
        const vpPath path = test.path;
        vpSetDefaultIOFcns(FakeHost::list, nullptr, nullptr, nullptr, nullptr);
        vpSetDefaultIOFcnsNew(nullptr, nullptr, nullptr, nullptr, nullptr, FakeHost::changeDir);
        vpUpdatePathArrayDefaultIOFcns();
        vpSetIOFcns(path, nullptr, nullptr, nullptr, nullptr, nullptr);
        vpSetIOFcnsNew(path, nullptr, nullptr, nullptr, nullptr, nullptr, FakeHost::changeDir);
        vpSetMessageFcns(FakeHost::onError, FakeHost::onWarning, FakeHost::onInfo);
        vpReturnEnvironmentFcns(vpGetEnvironmentFcns());
        vpDiagnostics(0);
        vpSetIsClassFcn(FakeHost::isClass);
    };
    const auto registry = [](Reentry& test) {
        const vpPath other = vpCreatePath(0, "other");
        vpCreatePathWithPreFrozen(0, "frozen", "/a", vpCaseInsensitive, true);
        vpLookupPath("p");
        vpLookupPathname(test.path);
        vpRemovePath(other);
        vpSetCurrentPathname(vpGetCurrentPathname());
        vpSetDefaultPathname("p");
        vpCurrentPathExists();
        vpSetCaseSensitivity(test.path, !vpGetPathCaseSensitivity(test.path));
        vpSetCaseSensitivity(test.path, true);
    };
    const auto adding = [](Reentry& test) {
        const char* names[] = {"/d", "rel", "/b"};
        vpAddDirsArray(test.path, names, 3, vpAddAtBeginning);
        const bool before = vpSetFreezeAllAddedDirectories(test.path, true);
        vpAddDir(test.path, "/new", vpAddAtEnd);
        vpSetFreezeAllAddedDirectories(test.path, before);
    };
    const auto current = [](Reentry& test) {
        vpSetCWDName(test.path, "/new");
        vpGetCWDName(test.path, text, sizeof text);
        vpIsPathDirAlsoCWD(vpGetCWD(test.path));
        vpIsCWDOnPath(test.path);
    };
    const auto questions = [](Reentry& test) {
        const vpPath path = test.path;
        const vpDir a = test.dir("/a"), none = vpGetNullDir(path);
        vpGetNumPathDirs(path);
        vpCheckIsDir(path, "/new");
        vpSelectDirFirstOnPath(vpGetNextPathDir(none), a);
        for (const vpDir& dir : {a, test.dir("/a/@C"), vpGetPrivateDir(a), vpDir()}) {
            vpIsDirHandleValid(dir);
            vpLookupPathname(vpGetPathOfDir(dir));
            vpIsSameDir(dir, vpGetPathDir(dir));
            if (vpGetDirNameLen(dir) > 0) vpConcatDirName(dir, "sub", text);
            vpGetDirName(dir, text);
            vpGetBaseDirName(dir);
            vpGetDirType(dir);
            vpIsAbsoluteDir(dir);
            vpGetParentDir(dir);
            vpGetNextMethodDir(dir);
        }
        vpIsPrivateDirName("private");
        vpPath().copy(path);
        vpFindFirstFileVisibleToFile(path, "/a/f.v", "f", exts, vpReadCheckVerify, nullptr, text);
    };
    const auto classes = [](Reentry& test) {
        vpIsFileClassdef(test.path, "/a/f.v");
        vpDoesClassFileExist(test.path, "C", exts);
        vpGetClassFile(test.path, "C", text, sizeof text, exts);
    };
    const auto listeners = [](Reentry& test) {
        const vpPath path = test.path;
        const vpRegisteredInterest third = vpRegisterPathInterest(path, FakeHost::secondListener);
        vpCancelPathInterest({path, 1});
        vpCancelPathInterest(third);
        vpSuppressChangeNotify(path, false);
        vpSetDirectoryReloadMessages(path, vpSetDirectoryReloadMessages(path, true));
        vpSetNotificationHandleWarnings(path, vpWarnInvalidCNHOff);
    };
    const auto timeStamps = [](Reentry& test) {
        vpTimeStamp_tag* const one = vpCreateTimeStamp();
        vpTimeStamp_tag two{};
        vpGetTimeStamp(test.path, "/a/f.v", &two);
        if (one != nullptr) vpGetTimeStampFromDir(test.dir("/a"), "f.v", one);
        vpIsFileTimeStampDifferent(one, &two);
        vpHasFileChanged(test.dir("/a"), "f.v", &two, vpUpdateTimeStamp);
        vpCopyTimeStamp(one, &two);
        vpDestroyTimeStamp(one);
    };
    const auto marks = [](Reentry& test) {
        const vpPath path = test.path;
        vpSetDirChanged(test.dir("/a"));
        vpSetDirChanged(path, "/a/@C");
        vpSetFullnameChanged(path, "/b/f.v");
        vpSetAllChanged(path);
        vpChangedUnknownDir(path);
        vpNonNotifiedRemoteCWDRefreshPolicy(path, vpRefreshPolicyDefault);
        vpNonNotifiedRemotePathRefreshPolicy(path, vpRefreshPolicyDefault);
    };
    const auto useCache = [](Reentry& test) {
        vpUseToolboxCache(test.path, CacheFile(), "/", /*verbose=*/true);
    };
    const auto caches = [](Reentry& test) {
        static const TempTree written;
        vpEnableToolboxCacheDiagnosticStatusReport(true);
        vpEnableToolboxCacheDiagnosticTrace(true);
        vpUseToolboxCache(test.path, CacheFile(), "/", /*verbose=*/false);
        vpInToolboxCacheMode();
        vpAddDir(test.path, "/a", vpAddAtEnd);
        vpWritePathToCacheFile(test.path, written.at("copy").c_str());
        vpRevertFromToolboxCache(test.path);
        vpEnableToolboxCacheDiagnosticStatusReport(false);
        vpEnableToolboxCacheDiagnosticTrace(false);
    };
    const auto names = [](Reentry& test) {
        int length = 0;
        char* normal = nullptr;
        vpNormalizeDirName("/a/../b", true, 0, &length, &normal);
        vpFreeNormalizedDirName(normal);
        vpFullPath(text, "b", sizeof text);
        vpGetObjectNameFromPath(test.path, "/a/@C/f.v", text, sizeof text);
    };
    return {{"calls", calls},         {"registry", registry},   {"adding", adding},
            {"current", current},     {"questions", questions}, {"classes", classes},
            {"listeners", listeners}, {"stamps", timeStamps},   {"marks", marks},
            {"use cache", useCache},  {"caches", caches},       {"names", names}};
}

// Besides, commands of the scripts.
std::vector<Work> AllWorks() {
    std::vector<Work> works = Calls();
    for (const char* const step :
         {"removepath",        "terminate",    "first /b",     "list /b:/a:/c",  "remove /a",
          "replace /c:rel:/a", "replace ''",   "prune",        "hide 1",         "freeze /a",
          "unfreeze /a",       "refresh /a 2", "refresh /a 3", "refreshall 1",   "refreshall 3",
          "mark /a/@New",      "files A ''",   "dirs V:/a f",  "any A f verify", "next",
          "open A f",          "one A f",      "one V:/a f",   "walk class C",   "walk classes /a",
          "walk packages /a",  "frozen /a"}) {
        works.push_back({step, [step](Reentry& test) { test.step(step); }});
    }
    for (const std::string rule : {"", " cs1"}) {
        works.push_back({"searches" + rule, [rule](Reentry& test) {
                             for (const char* const search :
                                  {"A f", "V:/a f", "O NULL", "P:/a f", "D:/a NULL", "N:/a f",
                                   "M C/f", "W:/a f", "F:/a/f.v f"}) {
                                 test.step(std::string("open ") + search + " v,p verify" + rule);
                                 for (const char* const next :
                                      {"next 0", "bounded", "next 1", "next 2", "next 3"})
                                     test.step(next);
                             }
                         }});
    }
    return works;
}

// Every kind of work in every callback and event of every other.
TEST_F(Reentry, WorkInsideOfWork) {
    host.words = false;
    for (const Work& outer : AllWorks()) {
        for (const Work& inner : AllWorks()) {
            bool inside = true;
            for (long nth = 1; inside && !HasFailure(); ++nth) {
                SCOPED_TRACE(inner.name + " in call " + std::to_string(nth) + " of " + outer.name);
                reopen();
                inside = false;
                run("keep A /a ; keep C /a/@C ; open A f verify ; next => *:/a/f.v");
                atCall(nth, [&] {
                    inside = true;
                    inner.run(*this);
                });
                outer.run(*this);
                run("next ; files A f ; refreshall 4 ; add /d ; rest");
                if (inner.name == "removepath" && inside && outer.name != "registry") {
                    EXPECT_EQ(vpLookupPath("p").get(), nullptr);
                }
            }
        }
    }
}

// A host that throws, in every callback and event: the call fails, the path goes on.
TEST_F(Reentry, CallbacksThatThrow) {
    host.words = false;
    for (const Work& work : AllWorks()) {
        if (work.name.find(" A ") != std::string::npos) continue;  // "next" is this test's search
        bool inside = true;
        for (long nth = 1; inside && !HasFailure(); ++nth) {
            SCOPED_TRACE("call " + std::to_string(nth) + " of " + work.name);
            reopen();
            inside = false;
            step("open A f verify");
            atCall(nth, [&] {
                inside = true;
                throw std::runtime_error("from the host");
            });
            EXPECT_NO_THROW(work.run(*this));
            EXPECT_EQ(TheLedger().listings.size(), 0U);
            host.onCall = nullptr;
            checkContents();
        }
    }
}

// Each allocation fails in its turn: that one alone, or all from there on.
TEST_F(Reentry, MemoryThatIsExhausted) {
    for (const Work& work : AllWorks()) {
        for (const bool failsOn : {false, true}) {
            bool failed = true;
            for (long nth = 1; failed && !HasFailure(); ++nth) {
                SCOPED_TRACE("allocation " + std::to_string(nth) + (failsOn ? " on, of " : " of ") +
                             work.name);
                reopen();
                TheLedger().failsOn = failsOn;
                TheLedger().failAt = nth;
                EXPECT_NO_THROW(work.run(*this));
                failed = TheLedger().failAt <= 0;
                TheLedger().failAt = 0;
                const std::string said = host.takeMessages();
                EXPECT_TRUE(said.empty() || !failed || said.find("memory") != std::string::npos)
                    << said;
                checkContents();
            }
        }
    }
    for (long nth = 1; vpLookupPath("q").get() == nullptr && nth < 100; ++nth) {
        TheLedger().failsOn = false;
        TheLedger().failAt = nth;
        vpCreatePath(0, "q");
        TheLedger().failAt = 0;
        EXPECT_EQ(host.takeMessages().find("Duplicate"), std::string::npos) << nth;
    }
}

TEST_F(Reentry, AnswersWithoutMemory) {
    reopen();
    vpTimeStamp_tag stamp{};
    TheLedger().failsOn = false;
    for (long nth = 1; nth < 9; ++nth) {
        TheLedger().failAt = nth;
        EXPECT_FALSE(vpSetDirChanged(path, "/a/@C")) << nth;
    }
    TheLedger().failsOn = true;
    TheLedger().failAt = 1;
    EXPECT_FALSE(vpSetDirChanged(path, "/a") || vpGetTimeStamp(path, "/a/f.v", &stamp) ||
                 vpReplacePath(path, "/b") || vpIsFileClassdef(path, "/a/f.v") ||
                 vpWritePathToCacheFile(path, CacheFile()));
    const std::string failed = step("cwd /new");
    const vpDir null = vpGetNullDir(path);
    for (const vpDir& answer : {vpAddDir(path, "/b", vpAddAtEnd), vpFindDirFullName(path, "/a"),
                                vpSetFullnameChanged(path, "/a/f.v")}) {
        EXPECT_TRUE(vpIsSameDir(answer, null));
    }
    TheLedger().failAt = 0;
    EXPECT_EQ(failed, "Failed to change current directory");
    // The message itself does without.
    EXPECT_NE(host.takeMessages().find("error: Not enough memory to add directory: /a"),
              std::string::npos);
    checkContents();
}

// Searches by name and without, ended before their path and after it.
TEST_F(Reentry, OpenSearchesPastTheirPath) {
    for (const std::string search : {"A f", "O ''"}) {
        for (const std::string change : {"removepath", "terminate"}) {
            reopen();
            run("replace /a:/b:/c");
            step("open " + search);
            run("next ; next ; bounded");
            step(change);
            EXPECT_EQ(step("rest"), "");
            run("path /c ; open A '' ; next ; removepath");
            path = vpPath();
        }
    }
}

TEST_F(Reentry, ADirectoryThatIsBeingReadIsOnlyMarked) {
    reopen();
    int inside = 0;
    host.onCall = [&](const std::string& call) {
        if (call != "list /a" && call != "isdir /a/@C") return;
        ++inside;
        host.takeCalls();
        vpRefreshDirectory(dir("/a"), vpRefreshAlways);
        vpRefreshAllDirectories(path, vpRefreshUnlessFrozen);
        EXPECT_EQ(host.takeCalls("list"), "/cwd rel") << "nor what is beneath it";
    };
    vpRefreshDirectory(dir("/a"), vpRefreshAlways);
    host.onCall = nullptr;
    EXPECT_EQ(inside, 2);
    EXPECT_EQ(step("refreshall 4").substr(0, 2), "/a") << "by the next refresh";
    run("holds /a => f.v | | @C private");
}

// A first match that goes while it is asked for leaves the answer to the next.
TEST_F(Reentry, TheFirstMatchGoesWhenItIsAskedFor) {
    for (const std::string match : {"one A f verify", "files A f verify"}) {
        vpTerminate();
        run("tree /a/f /b/f ; path /a:/b");
        host.onCall = [this](const std::string& call) {
            if (call == "read /a/f") step("remove /a");
        };
        EXPECT_EQ(step(match), "*:/b/f");
        host.onCall = nullptr;
    }
}

TEST_F(Reentry, NamesAreFoundWhileTheirDirectoryIsRead) {
    host.words = false;
    run("tree /a/f ; path -");
    for (int i = 0; i < 30; ++i) {
        const std::string number = std::to_string(i);
        host.add({"/a/f" + number, "/a/g" + number, "/a/@k" + number});
    }
    int known = 0;
    host.onCall = [&](const std::string& call) {
        if (call != "isdir /a/@k" + std::to_string(known)) return;
        for (int i = known++; i >= 0; --i) {
            for (const std::string& name : {"f" + std::to_string(i), "g" + std::to_string(i)})
                EXPECT_EQ(step("files D:/a " + name), "*:/a/" + name);
        }
    };
    run("add /a => /a");
    host.onCall = nullptr;
    EXPECT_EQ(known, 30);
}

// A relative directory leads elsewhere while it is read, after a directory in it was: all of it is
// out of date, be it frozen or not.
TEST_F(Reentry, TheCurrentDirectoryChangesWhileARelativeOneIsRead) {
    for (const std::string root : {"-", "rel"}) {
        vpTerminate();
        host.reset();
        host.words = false;
        run("tree /cwd/rel/@A/old /cwd/rel/@B/ /new/rel/@A/new");
        run(("path - " + root).c_str());
        host.onCall = [this](const std::string& call) {
            if (call == "isdir rel/@B") step("cwd /new");
        };
        run("add rel => rel");
        host.onCall = nullptr;
        run("refreshall 4 => rel rel/@A ; holds rel => | | @A ; holds rel/@A => new | |");
    }
}

// A new directory comes first; its listener reads the list of a name before the others have moved.
TEST_F(Reentry, OrderReadBeforeAReplacementMovesWhatStays) {
    run("tree /a/f.v /b/f.v /n/f.v ; path /a:/b ; files A f");
    host.onCall = [this](const std::string& call) {
        if (call == "5 /n") step("files A f");
    };
    run("replace /n:/a:/b => yes");
    host.onCall = nullptr;
    run("files A f => *:/n/f.v *:/a/f.v *:/b/f.v");
}

// What memory ran out for is read by the next refresh, whatever its time says.
TEST_F(Reentry, DirectoriesThatMemoryLeftUnread) {
    bool failed = true;
    for (long nth = 1; failed && !HasFailure(); ++nth) {
        SCOPED_TRACE(nth);
        reopen();
        run("tree /a/@K/k.v /a/+p/p.v ; time /a 0 ; time /a/@K 0 ; time /a/+p 0");
        TheLedger().failsOn = false;
        TheLedger().failAt = nth;
        vpRefreshDirectory(dir("/a"), vpRefreshAlways);
        failed = TheLedger().failAt == 0;
        TheLedger().failAt = 0;
        run("markall ; refreshall 1 ; holds /a/@K => k.v | | ; holds /a/+p => p.v | |");
    }
}

// The path, held by the registry alone, is removed by a listener of the re-read; a directory leaves
// while its time is asked for.
TEST_F(Reentry, WhatGoesWhileItIsRefreshed) {
    reopen();
    const vpDir a = dir("/a");
    host.onCall = [&](const std::string& call) {
        if (call == "time /a") vpRemoveDir(a);
    };
    host.setTime("/a", 20);
    run("forget ; refreshall 1 => ; on => /cwd rel");
    host.onCall = nullptr;
    run("add /a");
    const vpDir again = dir("/a");
    path = vpPath();
    host.onCall = [](const std::string& call) {
        if (call == "0 /a") vpRemovePath(vpLookupPath("p"));
    };
    vpRefreshDirectory(again, vpRefreshAlways);
    EXPECT_FALSE(vpIsDirHandleValid(again));
    host.onCall = nullptr;
}

TEST_F(Reentry, ADirectoryStaysAsFarAsItWasRead) {
    run("tree /a/one.v /a/@C/ /a/two.v\n path /a\n tree /a/zero.v /a/@D/ /a/last.v");
    host.onCall = [](const std::string& call) {
        if (call == "isdir /a/@D") throw 1;
    };
    run("refresh /a 3");
    const std::string partly = step("holds /a");
    EXPECT_TRUE(partly.find("one.v") != partly.npos && partly.find("last.v") == partly.npos)
        << partly;
    host.onCall = nullptr;
    run("refreshall 4\n holds /a => one.v two.v zero.v last.v | | @C @D");
    host.onCall = [](const std::string& call) {
        if (call == "list /b") throw 1;
    };
    run("tree /b/f.v /c/f.v ; replace /b:/c => no ; on => /cwd /b /c");
}

}  // namespace
