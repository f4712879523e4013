#include "support/path_test.h"

namespace {

class Handles : public PathTest {};

// Every way to make, copy and drop a handle, on a target that must go exactly once.
TEST_F(Handles, PathHandlesCount) {
    run("path -");
    const PathMgr* const raw = path.get();
    vpPath copy(path), fromRaw(path.get()), assigned, emptied(path), unchecked;
    assigned = path.get();
    const vpPath& sameOne = assigned;
    assigned = sameOne;
    copy.copy(copy);
    copy.copy(assigned);
    emptied = static_cast<PathMgr*>(nullptr);
    EXPECT_TRUE(copy == raw && fromRaw == raw && assigned == raw && emptied == nullptr);
    EXPECT_TRUE(copy == fromRaw && !(copy == emptied));
    EXPECT_EQ(static_cast<const PathMgr*>(copy), raw);
    vpRemovePath(path);
    EXPECT_EQ(vpPath(path.get()).get(), nullptr) << "removed";
    unchecked = path.get();
    EXPECT_EQ(unchecked.get(), raw) << "assignment does not ask";
    path = copy = fromRaw = assigned = vpPath();
    unchecked = unchecked.get();
    EXPECT_EQ(vpLookupPathname(unchecked), nullptr) << "still allocated";
}

// Directories and their path in every order of removal and of letting go.
TEST_F(Handles, TheLastHoldDecides) {
    for (int order = 0; order < 8; ++order) {
        run("terminate ; tree /a/@C/private/f.v ; path /a");
        vpDir a = dir("/a"), inner = dir("/a/@C/private"), null = vpGetNullDir(path);
        if (order & 1) vpRemoveDir(a);
        if (order & 2) vpRemovePath(path);
        path = vpPath();
        const bool alive = (order & 3) == 0;
        EXPECT_TRUE(vpIsDirHandleValid(a) == alive && vpIsDirHandleValid(inner) == alive) << order;
        EXPECT_EQ(NameOf(a), "/a");
        (order & 4 ? a : inner) = vpDir();
        (order & 4 ? inner : a) = vpDir();
        null.copy(null);
        a = null.get();
        const vpDir& sameOne = a;
        a = sameOne;
        null = a;
    }
}

TEST_F(Handles, AccessorsByKind) {
    const struct {
        const char* name;
        int type;
        const char *base, *pathDir, *parent, *privateDir;
    } rows[] = {
        // clang-format off
        {"/cwd", 1, "cwd", "/cwd", "", "/cwd/private"}, {"/a", 2, "a", "/a", "", ""},
        {"/cwd/private", 5, "private", "/cwd", "/cwd", ""}, {"/a/+p", 3, "p", "/a", "/a", ""},
        {"/a/@C", 4, "C", "/a", "/a", "/a/@C/private"}, {"/", 2, "/", "/", "", ""},
        {"/a/@C/private", 5, "private", "/a", "/a/@C", ""}, {"rel", 2, "rel", "rel", "", ""},
        {"/a/+p/@D", 4, "D", "/a", "/a/+p", ""}, {"rel/@E", 4, "E", "rel", "rel", ""},
        {"", 0, "", "", "", ""},
        // clang-format on
    };
    run("tree /cwd/private/ /a/@C/private/ /a/+p/@D/ rel/@E/ ; path /a:/:rel");
    for (const auto& row : rows) {
        const vpDir at = dir(row.name);
        const std::string name = row.name;
        EXPECT_TRUE(vpIsDirHandleValid(at) && vpGetPathOfDir(at).get() == path.get()) << name;
        EXPECT_TRUE(vpGetDirType(at) == row.type && NameOf(at) == name) << name;
        EXPECT_EQ(NameOf(vpGetPathDir(at)), row.pathDir) << name;
        EXPECT_EQ(NameOf(vpGetParentDir(at)), row.parent) << name;
        EXPECT_EQ(NameOf(vpGetPrivateDir(at)), row.privateDir) << name;
        EXPECT_EQ(vpIsAbsoluteDir(at), name.empty() || name[0] == '/') << name;
        if (name.empty()) continue;
        char joined[100];
        EXPECT_STREQ(vpGetBaseDirName(at), row.base);
        EXPECT_EQ(vpConcatDirName(at, "/sub/x", joined), joined);
        EXPECT_EQ(joined, (name == "/" ? "" : name) + "/sub/x");
    }
    const vpDir a = dir("/a");
    EXPECT_FALSE(vpIsSameDir(a, dir("/a/+p")));
    vpRemoveDir(a);
    for (const vpDir& none : {vpGetParentDir(a), vpGetPrivateDir(a), vpGetNextPathDir(a)})
        EXPECT_TRUE(vpIsSameDir(none, vpGetNullDir(path)));
    const char* names[] = {"private", "/a/PRIVATE", "Private", "/private",  // and not:
                           "",        "/private/a", "privat",  "privates", "@private", "/"};
    for (const auto& name : names) EXPECT_EQ(vpIsPrivateDirName(name), &name - names < 4) << name;
}

TEST_F(Handles, NullAndDeadHandlesAnswerNothing) {
    run("tree /a/@C/private/ ; path /a");
    const vpDir dead[] = {vpDir(), dir("/a"), dir("/a/@C"), vpGetNullDir(path)};
    run("removepath ; forget");
    for (const vpDir& each : dead) {
        char name[100];
        EXPECT_EQ(vpGetDirName(each, name), name);
        vpConcatDirName(each, "x", name);
        vpGetBaseDirName(each);
        for (const vpDir& answer : {each, vpGetPathDir(each), vpGetParentDir(each),
                                    vpGetPrivateDir(each), vpGetNextPathDir(each)}) {
            EXPECT_FALSE(vpIsDirHandleValid(answer)) << &each - dead;
        }
        EXPECT_FALSE(vpIsPathDirAlsoCWD(each) || vpIsFrozen(each) || vpSetDirChanged(each));
        vpRemoveDir(each);
        vpFreeze(each);
        vpUnFreeze(each);
        vpRefreshDirectory(each, vpRefreshAlways);
        EXPECT_TRUE(
            !vpCreateVisibleSearch(each, "f", nullptr, vpReadCheckSkip) &&
            !vpCreateDirSearch(each, "f", nullptr, vpReadCheckSkip) &&
            !vpCreatePrivateSearch(each, "", nullptr, vpReadCheckSkip) &&
            !vpFindFirstFileVisibleToDir(each, "f", nullptr, vpReadCheckSkip, nullptr, name));
    }
    EXPECT_TRUE(vpGetDirType(vpDir()) == 0 && vpIsAbsoluteDir(vpDir()));
    EXPECT_EQ(vpGetPathOfDir(vpDir()).get(), nullptr);
    run("calls => ; printed => ; messages =>");
}

TEST_F(Handles, NullArgumentsAnswerNothing) {
    run("tree /a/f.v /a/@C/C.v ; path /a");
    const vpDir a = dir("/a");
    vpTimeStamp_tag stamp = {7, 7};
    vpCopyTimeStamp(nullptr, &stamp);
    vpCopyTimeStamp(&stamp, nullptr);
    EXPECT_FALSE(
        vpIsFileTimeStampDifferent(nullptr, &stamp) ||
        vpIsFileTimeStampDifferent(&stamp, nullptr) || vpGetTimeStampFromDir(a, nullptr, &stamp) ||
        vpGetTimeStampFromDir(a, "/a/f.v", nullptr) || vpGetTimeStamp(path, nullptr, &stamp) ||
        vpHasFileChanged(a, nullptr, &stamp, vpUpdateTimeStamp) ||
        vpHasFileChanged(a, "/a/f.v", nullptr, vpUpdateTimeStamp));
    EXPECT_TRUE(stamp.time == 7 && stamp.generation == 7);
    EXPECT_TRUE(!vpGetDirName(a, nullptr) && !vpConcatDirName(a, "x", nullptr) &&
                !vpGetCWDName(path, nullptr, 9));
    EXPECT_FALSE(vpIsFileClassdef(path, nullptr) ||
                 vpGetClassFile(path, nullptr, nullptr, 0, nullptr));
}

TEST_F(Handles, AListenersFreedPlaceIsTakenAgain) {
    run("tree /a/ /b/ /c/ /d/ ; path -");  // with one listener
    const vpRegisteredInterest second = vpRegisterPathInterest(path, FakeHost::secondListener);
    EXPECT_TRUE(second.index == 1 && second.path.get() == path.get());
    for (const int32_t index : {0, 0, -1, 2, 1000000}) vpCancelPathInterest({path, index});
    vpCancelPathInterest({vpPath(), 1});
    run("add /a ; events => B5 /a");
    EXPECT_EQ(vpRegisterPathInterest(path, FakeHost::listener).index, 0);
    run("add /b ; events => 5 /b|B5 /b");
    // In the middle of a walk one is cancelled, one takes its place, and one waits for the next.
    host.onCall = [&](const std::string& event) {
        if (event != "5 /c") return;
        host.onCall = nullptr;
        vpCancelPathInterest(second);
        for (int more = 0; more < 2; ++more) vpRegisterPathInterest(path, FakeHost::listener);
    };
    run("add /c ; events => 5 /c|5 /c ; add /d ; events => 5 /d|5 /d|5 /d ; add /d ; events =>");
    host.onCall = [&](const std::string& event) {
        if (event == "2") vpCancelPathInterest({path, 0});
    };
    run("cwd /a ; events => 2|2|2|5 /a|5 /a|7|7");
    EXPECT_EQ(vpRegisterPathInterest(path, nullptr).index, 0);  // and leaves it free
    for (const int32_t place : {0, 3, 4, 5})
        EXPECT_EQ(vpRegisterPathInterest(path, FakeHost::listener).index, place);
    for (const int32_t place : {5, 3, 5}) vpCancelPathInterest({path, place});
    for (const int32_t place : {3, 5, 6})
        EXPECT_EQ(vpRegisterPathInterest(path, FakeHost::listener).index, place);
    run("removepath ; events => 9|9|9|9|9|9|9");
    EXPECT_EQ(vpRegisterPathInterest(path, FakeHost::listener).path.get(), nullptr);
    EXPECT_FALSE(vpSetDirectoryReloadMessages(path, true));
    vpCancelPathInterest({path, 0});
    run("printed =>");
}

TEST_F(Handles, SuppressionSilencesRereadsAndReloadMessagesGiveBareNames) {
    run(R"(
tree /a/@C/ /a/+p/private/ /b/private/ ; path /a ; cwd /b ; replace /b ; replace /a ; refreshall 3
messages => ; forget)");
    for (const bool on : {true, false, true}) {
        vpSuppressChangeNotify(path, on);
        run("tree /a/@New/ ; refresh /a 2");
        EXPECT_EQ(step("events"), on ? "" : "0 /a|0 /a/+p|0 /a/+p/private|0 /a/@C|0 /a/@New");
    }
    run("cwd /cwd ; replace /b ; refreshall 3 ; events => ; cwd /b ; events => 2|5 /b|7");
    EXPECT_FALSE(vpSetDirectoryReloadMessages(path, true));
    EXPECT_TRUE(vpSetDirectoryReloadMessages(path, true));
    run("replace /a ; refresh /a 3 ; messages => "
        "info: a reloaded.|info: p reloaded.|info: private reloaded.|info: C reloaded.|"
        "info: New reloaded.");
    EXPECT_TRUE(vpSetDirectoryReloadMessages(path, false));
    run("refresh /a 3 ; messages =>");
    EXPECT_EQ(vpSetNotificationHandleWarnings(path, vpWarnInvalidCNHOn), 0);
    path = vpCreatePathWithPreFrozen(0, "quiet", nullptr, vpCaseDefault, true);
    vpRegisterPathInterest(path, FakeHost::listener);
    run("add /a ; events => 5 /a");
}

}  // namespace
