#include "support/path_test.h"

#include <algorithm>
#include <cstring>

namespace {

// Walks that begin in the middle; those from the beginning are for random steps.
class ClassWalks : public PathTest {
  protected:
    template <class Next>
    static std::string walk(vpDir from, Next next) {
        std::string names;
        for (vpDir at = next(from); vpGetDirType(at) != 0; at = next(at)) names += NameOf(at) + " ";
        return names;
    }
    std::string ofClass(const char* from, const char* name) {
        return walk(dir(from),
                    [name](const vpDir& at) { return vpGetNextMethodClassDir(at, name); });
    }
};

TEST_F(ClassWalks, GoOnInPathOrder) {
    run("tree /cwd/@A/ /a/@B/ /a/@A/ /a/+p/@A/ /b/f.v /c/@a/ /c/@A/x ; path /a:/b:/c");
    EXPECT_EQ(vpGetDirType(vpGetMethodDirs(dir("/a"), dir("/c/@a"))), 0) << "of another directory";
    EXPECT_EQ(vpGetDirType(vpGetMethodDirs(dir("/a"), vpGetNullDir(path))), 0);
    EXPECT_EQ(vpGetDirType(vpGetPackageDirs(dir("/a"), dir("/a/@B"))), 0) << "of the other list";
    EXPECT_EQ(walk(dir("/b"), vpGetNextMethodDir), "/a/@B /a/@A /c/@a /c/@A ");
    EXPECT_EQ(walk(dir("/a/+p/@A"), vpGetNextMethodDir), "/c/@a /c/@A ");
    EXPECT_EQ(ofClass("/cwd", "A"), "/a/@A /c/@A ") << "its own left out";
    EXPECT_EQ(ofClass("/b", "a"), "/c/@a ");
    EXPECT_EQ(ofClass("/a/+p/@A", "A"), "") << "packages are not looked into";
    EXPECT_EQ(vpGetDirType(vpGetNextMethodClassDir(vpGetNullDir(path), nullptr)), 0);
    run("replace /c:/b:/a");
    EXPECT_EQ(NameOf(vpGetNextMethodClassDir(dir("/c/@A"), "A")), "/a/@A") << "in the new order";
    EXPECT_EQ(walk(dir("/c/@A"), vpGetNextMethodDir), "/a/@B /a/@A ") << "past one without any";
    const vpDir a = dir("/a");
    run("remove /a");
    EXPECT_TRUE(vpIsSameDir(vpGetMethodDirs(a, a), vpGetNullDir(path)));
}

class ClassFiles : public PathTest {
  protected:
    void SetUp() override {
        asked.clear();
        vpSetIsClassFcn([](const char* name) {
            asked += std::string(name) + " ";
            return std::strstr(name, "not") == nullptr;
        });
    }
    void TearDown() override { vpSetIsClassFcn(nullptr); }

    // The file that defines the class, or "-".
    std::string file(const char* name) {
        const char* exts[] = {"txt", ".v", "p", nullptr};
        char found[64] = "stale";
        const bool exists = vpGetClassFile(path, name, found, sizeof found, exts);
        EXPECT_EQ(vpDoesClassFileExist(path, name, exts), exists ? 1 : 0);
        return exists ? found : "-";
    }
    static std::string takeAsked() { return std::exchange(asked, ""); }

    static std::string asked;
};
std::string ClassFiles::asked;

TEST_F(ClassFiles, PreferExtensionsAndPlaces) {
    run(R"(
tree /a/Two.v /a/Two.p /a/Both.v /a/@Both/Both.v /a/Text.txt /a/Late.v /a/not.v /a/@not/not.v
tree /a/@Fall/Fall.txt /b/Fall.v /b/@Late/Late.v /b/Early.v /a/@Early/Early.v /a/@Bare/other.v
tree /b/@Bare/Bare.p /a/First.m /b/First.v ; path /a:/b)");
    const struct {
        const char *name, *file, *asks;
    } rows[] = {
        // clang-format off
        {"Two", "/a/Two.p", "/a/Two.p "}, {"Two", "/a/Two.p", ""}, {"Text", "-", ""},
        {"Both", "/a/Both.v", "/a/@Both/Both.v /a/Both.v "}, {"First", "-", ""},  // one place alone
        {"Late", "/a/Late.v", "/b/@Late/Late.v /a/Late.v "}, {"Fall", "/b/Fall.v", "/b/Fall.v "},
        {"Early", "/a/@Early/Early.v", "/a/@Early/Early.v "}, {"none", "-", ""}, {"two", "-", ""},
        {"Bare", "/b/@Bare/Bare.p", "/b/@Bare/Bare.p "}, {"not", "-", "/a/@not/not.v /a/not.v "},
        {"not", "-", ""},
        // clang-format on
    };
    for (const auto& row : rows) {
        EXPECT_EQ(file(row.name), row.file) << row.name;
        EXPECT_EQ(takeAsked(), row.asks) << row.name;
    }
    EXPECT_TRUE(vpIsFileClassdef(path, "/a/Two.p") && vpIsFileClassdef(path, "/a/Two.v"));
    EXPECT_FALSE(vpIsFileClassdef(path, "/a/Text.txt") || vpIsFileClassdef(path, "/a/@not/not.v") ||
                 vpIsFileClassdef(path, "/a/none.v") || vpIsFileClassdef(path, "/x/Two.v"));
    EXPECT_EQ(takeAsked(), "/a/Two.v ") << "the others are known";
    EXPECT_FALSE(vpIsFileClassdef(path, ("/" + std::string(4096, 'x') + "/Two.v").c_str()));
    run("messages =>");
    char small[4];
    const char* exts[] = {"v", nullptr};
    EXPECT_TRUE(vpGetClassFile(path, "Both", small, sizeof small, exts));
    EXPECT_STREQ(small, "/a/");
    EXPECT_TRUE(vpGetClassFile(path, "Both", nullptr, 9, exts) &&
                vpGetClassFile(path, "Both", small, 0, exts));
}

TEST_F(ClassFiles, CaseStatesAndOutputs) {
    run("tree /a/K.V /a/@D/D.P /a/+p/C.txt /a/private/N.v /a/W.v /b/M.v /a/m.p ; path /a:/b - 1");
    const auto files = [this](const std::string& names) {
        std::string found;
        for (const char name : names) found += file(std::string(1, name).c_str()) + " ";
        return found;
    };
    EXPECT_EQ(files("kDM"), "/a/K.V /a/@D/D.P /a/m.p ");
    EXPECT_EQ(takeAsked(), "/a/K.V /a/@D/D.P /a/m.p ");
    EXPECT_TRUE(vpIsFileClassdef(path, "/B/m.V"));
    EXPECT_EQ(takeAsked(), "/B/m.V ") << "as it was asked for";
    vpSetCaseSensitivity(path, true);
    EXPECT_EQ(files("kKmM"), "- - /a/m.p /b/M.v ");
    takeAsked();
    // Forgotten by a re-read, whatever the listing says; not in private directories.
    run("word /a/W.v 8001 ; refresh /a 3");
    EXPECT_TRUE(vpIsFileClassdef(path, "/a/W.v"));
    EXPECT_FALSE(vpIsFileClassdef(path, "/a/private/N.v") || vpIsFileClassdef(path, "/a/+p/C.txt"));
    EXPECT_EQ(takeAsked(), "/a/W.v ");
    // Undecided while nobody is asked.
    run("refresh /a 3");
    vpSetIsClassFcn(nullptr);
    EXPECT_EQ(file("m"), "-");
    SetUp();
    EXPECT_EQ(file("m"), "/a/m.p");
    char text[] = "########";
    const char* exts[] = {"p", "v", "p", nullptr};
    EXPECT_TRUE(vpGetClassFile(path, "m", text, 4, exts));
    EXPECT_EQ(std::string(text, 8), std::string("/a/\0####", 8));
    EXPECT_FALSE(vpGetClassFile(path, "none", text, 0, exts));
    EXPECT_EQ(*text, '/') << "no room is never written to";
    EXPECT_FALSE(vpGetClassFile(vpPath(), "m", text, 8, exts));
    EXPECT_STREQ(text, "");
}

// The host that is asked may change what it is asked about.
TEST_F(ClassFiles, AskingMayChangeThePath) {
    static ClassFiles* test;
    test = this;
    const struct {
        vpIsClassFcn isClass;
        const char* file;
    } rows[] = {
        {[](const char*) { return vpRemoveDir(test->dir("/a")), true; }, "/b/@K/K.v"},
        {[](const char*) { return vpRemovePath(test->path), true; }, "-"},
        {[](const char* name) {
             if (*std::strrchr(name, '@') == '\0') return true;
             test->host.remove("/a/K.v");
             vpRefreshDirectory(test->dir("/a"), vpRefreshAlways);
             return false;
         },
         "-"},
    };
    for (const auto& row : rows) {
        vpTerminate();
        host.reset();
        run("tree /a/K.v /b/@K/K.v ; path /a:/b");
        vpSetIsClassFcn(row.isClass);
        const char* exts[] = {"v", nullptr};
        char found[64];
        EXPECT_STREQ(vpGetClassFile(path, "K", found, sizeof found, exts) ? found : "-", row.file);
    }
}

TEST_F(ClassFiles, InPackagesAndInTheCurrentDirectory) {
    run(R"(
tree /a/+p/C.v /a/+p/@D/D.v /a/+p/@E/x.v /a/+p/E.v /a/+p/+q/F.p /b/+p/G.v /a/+p/not.v /b/+p/not.txt
tree /two/+k/H.v /two/@K/K.v ; path /a:/b)");
    // clang-format off
    const char* rows[][2] = {
        {"p.C", "/a/+p/C.v"}, {"p.D", "/a/+p/@D/D.v"}, {"p.E", "-"}, {"p.q.F", "/a/+p/+q/F.p"},
        {"p.G", "/b/+p/G.v"}, {"p.not", "-"}, {"p.q.C", "-"}, {"q.F", "-"}, {"p.", "-"},
        {".C", "-"}, {"C", "-"}, {"p..C", "-"}, {"p.q..F", "-"}};
    // clang-format on
    for (const auto& row : rows) EXPECT_EQ(file(row[0]), row[1]) << row[0];
    // Code runs inside a package or class directory: what lies there is no class of its own.
    run("cwd /two/+k =>");
    EXPECT_EQ(file("H"), "-");
    run("cwd /two/@K =>");
    EXPECT_EQ(file("K"), "-");
    EXPECT_EQ(file("p.C"), "/a/+p/C.v");
    run("cwd /two =>");
    EXPECT_EQ(file("K"), "/two/@K/K.v");
    vpSetIsClassFcn(nullptr);
    vpRefreshDirectory(dir("/two/@K"), vpRefreshAlways);
    EXPECT_EQ(file("K"), "-") << "nobody to ask";
}

}  // namespace
