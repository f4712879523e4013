#include <pwd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <vpath/pathname.h>

#include "base/reporting.h"
#include "pathname/compare.h"
#include "pathname/components.h"
#include "pathname/folded_name.h"
#include "pathname/join.h"
#include "pathname/normalize.h"
#include "pathname/path_list.h"
#include "support/temp_tree.h"

namespace {

const std::string kTooLong = "Directory name too long";

std::string g_sent;  // every message behind the letter of its channel

// Collects messages, and gives the process back its HOME and its directory.
class Pathname : public testing::Test {
  protected:
    Pathname() {
        g_sent.clear();
        MessageFunctions() = {[](const char* text) { g_sent += std::string("E:") + text; },
                              [](const char* text) { g_sent += std::string("W:") + text; },
                              [](const char* text) { g_sent += std::string("I:") + text; }};
    }
    ~Pathname() override {
        MessageFunctions() = functions_;
        std::filesystem::current_path(directory_);
        setenv("HOME", home_.c_str(), 1);
    }

  private:
    const vpEnvironmentFcns functions_ = MessageFunctions();
    const std::filesystem::path directory_ = std::filesystem::current_path();
    const std::string home_ = std::getenv("HOME") ? std::getenv("HOME") : "";
};

TEST_F(Pathname, KindsOfNamesAndSeparators) {
    for (const std::string name : {"/", "/a", "", "a/b", "~/a", "//host/a", "\\\\host\\a"}) {
        EXPECT_EQ(vpIsAbsolutePath(name.c_str()), name[0] == '/' || name[0] == '~') << name;
        EXPECT_FALSE(vpIsWinPathRemote(name.c_str())) << name;
        for (size_t at = 0; at <= name.size(); ++at) {
            EXPECT_EQ(vpIsPathNameSep(name.c_str(), name.c_str() + at), name.c_str()[at] == '/');
        }
    }
    EXPECT_FALSE(vpIsAbsolutePath(nullptr) || vpIsWinPathRemote(nullptr));
    EXPECT_FALSE(vpIsPathNameSep(nullptr, nullptr));
}

TEST_F(Pathname, NullArgumentsGiveNothing) {
    char dst[16] = "as it was";
    char home[] = "~";
    EXPECT_TRUE(!vpChangeFileExtension("f.v", nullptr, ".p") && !vpGetBaseFileName("f", nullptr) &&
                !vpExtractSubdir(nullptr, "a") && !vpConcatPathName(nullptr, "a") &&
                !vpCombinePathName(nullptr, "a", "b") && !vpSeparatePathName(nullptr, nullptr));
    EXPECT_FALSE(vpCombineDirectory(nullptr, "a", "b") || vpCombineDirectory(dst, nullptr, "b") ||
                 vpCombineDirectory(dst, "a", nullptr));
    EXPECT_TRUE(!vpFullPath(nullptr, "/a", 9) && !vpFullPath(dst, nullptr, 9) &&
                !vpTildeExpansion(dst, nullptr) && vpTildeExpansion(nullptr, home) == home &&
                !vpNormalizeDirName("a", false, 0, nullptr, nullptr) &&
                !NextPathListEntry(nullptr));
    EXPECT_TRUE(!vpGetPackageNameFromFullName("+p/f", nullptr, 9) &&
                !vpGetClassNameFromFullName("@C/f", nullptr, 9) &&
                !vpGetObjectNameFromPath({}, "@C/f", nullptr, 9) &&
                !vpGetObjectNameFromPath({}, "@C/f", dst, 0) &&
                !vpGetQualifiedNameFromPath("@C/f", nullptr));
    EXPECT_STREQ(dst, "as it was");
    EXPECT_EQ(vpSeparatePathName(nullptr, dst), nullptr);
    EXPECT_STREQ(vpCombinePathName(dst, nullptr, nullptr), "");
}

TEST_F(Pathname, ExtensionsAndLastComponents) {
    // clang-format off
    // Name, what precedes its extension (null: it has none), what precedes the last '.', the last
    // component.
    const char* const rows[][4] = {
        {"", nullptr, "", ""}, {"a.b/c", nullptr, "a", "c"}, {"c.v", "c", "c", "c.v"},
        {"f.tar.gz", "f.tar", "f.tar", "f.tar.gz"}, {".cshrc", "", ".cshrc", ".cshrc"},
        {"/.v", "/", "/", ".v"}, {"f.", "f", "f", "f."}, {"a/", nullptr, "a/", "a"},
        {"/a/c/", nullptr, "/a/c/", "c"}, {"/a//", nullptr, "/a//", ""}, {"/", nullptr, "/", ""}};
    // clang-format on
    for (const auto& [name, stem, base, last] : rows) {
        char dst[32];
        const int dot = stem ? static_cast<int>(std::strlen(stem)) : -1;
        EXPECT_EQ(vpFindFileExt(name), dot) << name;
        EXPECT_EQ(vpChangeFileExtension(name, dst, ".p"), stem ? dst + dot : dst);
        EXPECT_EQ(dst, std::string(stem ? stem : name) + ".p");
        EXPECT_STREQ(vpGetBaseFileName(name, dst), base) << name;
        EXPECT_STREQ(vpExtractSubdir(dst, name), last) << name;
    }
    char dst[] = "#";
    EXPECT_STREQ(vpExtractSubdir(dst, nullptr), "");
    EXPECT_EQ(vpExtractSubdir(nullptr, "a"), nullptr);
    EXPECT_EQ(vpFindFileExt(nullptr), -1);
    EXPECT_TRUE(IsPrivateName(LastComponent("/a/PRIVATE/")));
    EXPECT_FALSE(IsPrivateName("privat") || IsPrivateName("privates"));
}

// The rule in other words: of the separators at the seam each side loses one, and one is put in.
std::string Joined(std::string dir, const std::string& name) {
    if (dir.empty()) return name;
    if (dir.back() == '/') dir.pop_back();
    return dir + "/" + (name.starts_with('/') ? name.substr(1) : name);
}

TEST_F(Pathname, JoiningAgreesWithTheRuleOnAllShortNames) {
    std::vector<std::string> names{""};
    for (size_t i = 0; names[i].size() < 4; ++i) {
        for (const char c : {'/', 'a', 'b'}) names.push_back(names[i] + c);
    }
    for (const std::string& dir : names) {
        for (const std::string& name : names) {
            const std::string expected = Joined(dir, name);
            char dst[16];
            ASSERT_EQ(vpCombinePathName(dst, dir.c_str(), name.c_str()), expected);
            ASSERT_EQ(vpConcatPathSubdir(std::strcpy(dst, dir.c_str()), name.c_str()), expected);
            std::strcpy(dst + 1, dir.c_str());  // overlapping
            ASSERT_EQ(vpCombinePathName(dst, dst + 1, name.c_str()), expected);
            HkString grown(dir.c_str());
            AppendPathName(grown, name);
            ASSERT_EQ(grown.c_str(), expected);
        }
    }
}

TEST_F(Pathname, CombiningDirectories) {
    const std::string longest(4352, '/'), name(4349, 'x');
    // clang-format off
    const std::string rows[][2] = {  // an empty result: too long
        {"x", "/b/x"}, {"./x", "./x"}, {"../x", "../x"}, {".", "/b/."}, {"..", "/b/.."},
        {".x", "/b/.x"}, {"..x", "/b/..x"}, {"/x", "/x"}, {"~u", "~u"}, {"", "/b/"},
        {longest, longest}, {longest + "/", ""}, {name, "/b/" + name}, {name + "x", ""}};
    // clang-format on
    for (const auto& [rel, expected] : rows) {
        char dst[4400] = "#";
        EXPECT_EQ(vpCombineDirectory(dst, "/b", rel.c_str()), !expected.empty());
        EXPECT_EQ(dst, expected.empty() ? "#" : expected);
    }
}

TEST_F(Pathname, Separating) {
    // clang-format off
    // Name, what precedes its last separator, what follows it; then directory part and leaf of the
    // search name (null: nothing is left).
    const char* const rows[][5] = {
        {"f.v", "", "f.v", "", "f.v"}, {"/", "/", "", "/", ""}, {"/f", "/", "f", "/", "f"},
        {"+p//f/", "+p//f", "", "+p//", "f"}, {"a/f:", "a", "f:", "a/", "f:"},
        {"//", "/", "", nullptr, ""}, {"a/", "a", "", "", "a"}, {"//f", "/", "f", "//", "f"},
        {"\x01/\xFF/f", "\x01/\xFF", "f", "\x01/\xFF/", "f"}, {"\xE3/a", "\xE3", "a", "\xE3/", "a"},
        {"\xC3\xA4/\xE3", "\xC3\xA4", "\xE3", "\xC3\xA4/", "\xE3"}};
    // clang-format on
    char unset = '#';
    char* kept = &unset;
    int leafLength = -1;
    for (const auto& [name, dir, file, searchDir, leaf] : rows) {
        std::string path = name;
        char* const start = path.data() + path.size() - std::strlen(file);
        char dst[16] = "#";
        EXPECT_EQ(vpSeparatePathName(path.data(), dst), start) << name;
        EXPECT_STREQ(dst, dir) << name;
        EXPECT_EQ(vpSeparatePathName(path.data(), nullptr), start) << name;
        EXPECT_EQ(path, name);
        // In place, a file directly in the root falls victim to the NUL.
        EXPECT_EQ(vpSeparatePathName(path.data(), path.data()), start) << name;
        EXPECT_STREQ(start, std::string(name) == "/f" ? "" : file) << name;
        EXPECT_STREQ(path.c_str(), std::strchr(name, '/') ? dir : name) << name;

        const int dirLength = searchDir ? static_cast<int>(std::strlen(searchDir)) : -1;
        EXPECT_EQ(SplitNormalizedDirName(name, &kept, &leafLength), dirLength) << name;
        EXPECT_EQ(leafLength, static_cast<int>(std::strlen(leaf))) << name;
        EXPECT_EQ(kept ? kept : "null", searchDir ? std::string(searchDir) + leaf : "null");
        vpFreeNormalizedDirName(kept);
    }
    for (const char* empty : {"", static_cast<const char*>(nullptr)}) {
        kept = &unset;
        leafLength = -1;
        EXPECT_EQ(SplitNormalizedDirName(empty, &kept, &leafLength), 0);
        EXPECT_TRUE(kept == nullptr && leafLength == 0);
    }
    char dst[] = "#";
    EXPECT_EQ(vpSeparatePathName(nullptr, dst), nullptr);
    EXPECT_EQ(dst + g_sent, "");
}

TEST_F(Pathname, TildeExpansion) {
    setenv("HOME", "/h", 1);
    // An empty expectation: not expanded.
    std::vector<std::pair<std::string, std::string>> rows = {
        {"~", "/h"},          {"~/x", "/h/x"}, {"~abcdefgh/x", ""},
        {"~abcdefghi/x", ""}, {"x/~", ""},     {"", ""}};
    while (const passwd* entry = getpwent()) {
        const std::string name = entry->pw_name;
        const std::string home = name.size() > 8 ? "" : entry->pw_dir;
        rows.emplace_back("~" + name, home);
        rows.emplace_back("~" + name + "/x//", home.empty() ? "" : home + "/x//");
    }
    endpwent();
    for (const auto& [name, expected] : rows) {
        std::string given = name;
        char dst[256] = "#";
        const bool expands = !expected.empty();
        EXPECT_EQ(vpTildeExpansion(dst, given.data()), expands ? dst : given.data()) << name;
        EXPECT_EQ(dst, expands ? expected : "#") << name;
        std::strcpy(dst, name.c_str());
        EXPECT_EQ(vpTildeExpansion(dst, dst), expands ? expected : name);
    }
    unsetenv("HOME");
    char unknown[] = "~/x";
    EXPECT_EQ(vpTildeExpansion(unknown, unknown), std::string("~/x"));
}

std::string Normalized(const std::string& name, bool strip = false) {
    char* text = nullptr;
    int length = -1;
    const char* failure = vpNormalizeDirName(name.c_str(), strip, 0, &length, &text);
    const std::string result = text == nullptr ? "none" : text;
    EXPECT_EQ(length, text == nullptr ? 0 : static_cast<int>(result.size())) << name;
    vpFreeNormalizedDirName(text);
    return failure == nullptr ? result : failure + (text ? " and " + result : "");
}

TEST_F(Pathname, Normalizing) {
    setenv("HOME", "/h/", 1);
    // clang-format off
    // Name, its normal form, and that with list separators stripped.
    const char* const rows[][3] = {
        {"", "none", "none"}, {"/", "/", "/"}, {"//", "", ""}, {"/a/b///", "/a/b", "/a/b"},
        {"/a/:;", "/a/:;", "/a"}, {":;", ":;", ""}, {"/:", "/:", "/"}, {"//;", "//;", ""},
        {"a:/", "a:", "a:"}, {"./a//..", "./a//..", "./a//.."}, {"~", "/h", "/h"},
        {"~/:", "/h//:", "/h"}, {"\xFF/", "\xFF", "\xFF"}, {"\x01 ", "\x01 ", "\x01 "}};
    // clang-format on
    for (const auto& [name, kept, stripped] : rows) {
        EXPECT_EQ(Normalized(name), kept) << name;
        EXPECT_EQ(Normalized(name, true), stripped) << name;
    }
    const std::string longest(4096, 'x');
    EXPECT_EQ(Normalized(longest), longest);
    EXPECT_EQ(Normalized(longest + "/"), kTooLong);  // counted as given
    EXPECT_EQ(Normalized("~/" + longest.substr(4)), "/h//" + longest.substr(4));
    EXPECT_EQ(Normalized("~/" + longest.substr(3)), kTooLong);

    // The report cuts the name.
    const std::string endless(5000, 'x');
    const std::string line = kTooLong + ": " + endless.substr(0, 4353);
    char* name = nullptr;
    int leaf = -1;
    EXPECT_EQ(NormalizeDirNameOrReport(endless.c_str(), false, &name), 0);
    EXPECT_EQ(SplitNormalizedDirName(endless.c_str(), &name, &leaf), -1);
    EXPECT_EQ(g_sent, "E:" + line + "W:" + line);
    EXPECT_TRUE(name == nullptr && leaf == 0);
}

TEST_F(Pathname, FullPath) {
    TempTree tree;
    tree.add({"d/f", "d/.a/"});
    std::filesystem::current_path(tree.root());
    const std::string real = std::filesystem::current_path();
    const char* const rows[][2] = {{"d/f", "/d/f"},   {"./d//f", "/d/f"}, {"d/../d/.", "/d"},
                                   {".", ""},         {"d/", "/d"},       {"d/x/..", "/d"},
                                   {"d/y", nullptr},  {"", nullptr},      {nullptr, nullptr},
                                   {"d/.a/..", "/d"}, {"b./../d", "/d"}};
    for (const auto& [name, expected] : rows) {
        const std::string full = real + (expected ? expected : "");
        char dst[512];
        EXPECT_EQ(vpFullPath(dst, name, full.size() + 1), expected ? dst : nullptr) << name;
        EXPECT_TRUE(expected == nullptr || dst == full) << name << " gives " << dst;
        EXPECT_EQ(vpFullPath(dst, name, full.size()), nullptr) << name;
    }
    char dst[8] = "#######";
    EXPECT_EQ(vpFullPath(dst, "~/x", 4), std::string("~/x"));
    EXPECT_EQ(vpFullPath(dst, "/none/there", 5), dst);  // fills the buffer: no NUL
    EXPECT_STREQ(dst, "/none##");
    std::filesystem::remove_all(tree.root());
    EXPECT_EQ(vpFullPath(dst, "f", sizeof dst), nullptr);  // the current directory is gone
}

TEST_F(Pathname, PathLists) {
    const std::string longest(4096, 'x');
    const std::string list = "a:;b;" + longest + ":c";
    std::string starts;
    for (const char* at = list.c_str(); *at != '\0';) {
        starts += std::to_string((at = NextPathListEntry(at)) - list.c_str()) + " ";
    }
    EXPECT_EQ(starts + g_sent, "2 3 5 4102 4103 ");
    EXPECT_EQ(NextPathListEntry((longest + "x:c").c_str()), nullptr);
    EXPECT_EQ(NextPathListEntry((longest + longest).c_str()), nullptr);
    EXPECT_EQ(g_sent, "W:" + kTooLong + ": " + longest + "x:c" + "W:" + kTooLong + ": " +
                          (longest + longest).substr(0, 4348) + "...");
}

TEST_F(Pathname, ComparingAndFoldingAreAsciiOnly) {
    // clang-format off
    const struct { const char *a, *b; int exact, folded; } rows[] = {  // signs
        {"a", "A", 1, 0}, {"Z", "z", -1, 0}, {"a", "ab", -1, -1}, {nullptr, "", 0, 0},
        {"a", nullptr, 1, 1}, {"_", "A", 1, -1}, {"\xFF", "a", 1, 1},
        {"\xC3\x84", "\xC3\xA4", -1, -1}};
    // clang-format on
    const auto sign = [](int n) { return (n > 0) - (n < 0); };
    for (const auto& row : rows) {
        EXPECT_EQ(sign(CompareNames(row.a, row.b, true)), row.exact) << row.a;
        EXPECT_EQ(sign(CompareNames(row.b, row.a, false)), -row.folded) << row.a;
        EXPECT_EQ(sign(CompareNamePrefix(row.a, row.b, 9, false)), row.folded) << row.a;
        EXPECT_EQ(CompareNamePrefix(row.a, row.b, 0, false), 0);
    }
    EXPECT_EQ(CompareNamePrefix("ABx", "aby", 2, false), 0);
    EXPECT_NE(CompareNamePrefix("ABx", "aby", 2, true), 0);
    for (const size_t length : {0U, 1U, 127U, 128U, 5000U}) {
        const std::string lower(length, 'q');
        const FoldedName folded(std::string(length, 'Q').c_str());
        EXPECT_EQ(folded.text(), lower);
        EXPECT_EQ(folded.hash(), hk_hash_string(0, lower.c_str()));
        EXPECT_EQ(FoldedName(std::string_view(lower)).hash(), folded.hash());
    }
    EXPECT_STREQ(FoldedName(nullptr).text(), "");
}

}  // namespace
