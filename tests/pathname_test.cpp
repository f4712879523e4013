#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
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

namespace {

const std::string kTooLong = "Directory name too long";

std::string g_sent;  // every message behind the letter of its channel

// Collects messages, and gives the process back its HOME and its directory.
class Pathname : public testing::Test {
  protected:
    Pathname() : functions_(MessageFunctions()), directory_(std::filesystem::current_path()) {
        if (const char* home = std::getenv("HOME")) home_ = home;
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
    vpEnvironmentFcns functions_;
    std::filesystem::path directory_;
    std::string home_;
};

TEST_F(Pathname, Extensions) {
    // Name, what precedes its extension (null: it has none), what precedes the last '.'.
    const char* const rows[][3] = {{"", nullptr, ""},        {"a.b/c", nullptr, "a"},
                                   {"c.v", "c", "c"},        {"f.tar.gz", "f.tar", "f.tar"},
                                   {".cshrc", "", ".cshrc"}, {"/.v", "/", "/"},
                                   {"f.", "f", "f"},         {"a/", nullptr, "a/"}};
    for (const auto& [name, stem, base] : rows) {
        char dst[32];
        const int dot = stem ? static_cast<int>(std::strlen(stem)) : -1;
        EXPECT_EQ(vpFindFileExt(name), dot) << name;
        EXPECT_EQ(vpChangeFileExtension(name, dst, ".p"), stem ? dst + dot : dst);
        EXPECT_EQ(dst, std::string(stem ? stem : name) + ".p");
        EXPECT_STREQ(vpGetBaseFileName(name, dst), base) << name;
    }
    EXPECT_EQ(vpFindFileExt(nullptr), -1);
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
            std::strcpy(dst, dir.c_str());
            ASSERT_EQ(vpConcatPathSubdir(dst, name.c_str()), expected);
            std::strcpy(dst + 1, dir.c_str());  // overlapping
            ASSERT_EQ(vpCombinePathName(dst, dst + 1, name.c_str()), expected);
            HkString grown(dir.c_str());
            AppendPathName(grown, name);
            ASSERT_EQ(grown.c_str(), expected);
        }
    }
}

TEST_F(Pathname, LastComponents) {
    const char* const rows[][2] = {{"/a/b/c", "c"}, {"/a/b/c/", "c"}, {"c", "c"}, {"/c", "c"},
                                   {"/a//", ""},    {"/", ""},        {"", ""},   {nullptr, ""}};
    for (const auto& [name, expected] : rows) {
        char dst[16] = "#";
        EXPECT_STREQ(vpExtractSubdir(dst, name), expected) << name;
    }
    EXPECT_EQ(vpExtractSubdir(nullptr, "a"), nullptr);
    EXPECT_TRUE(IsPrivateName(LastComponent("/a/PRIVATE/")));
    EXPECT_FALSE(IsPrivateName("privat") || IsPrivateName("privates"));
}

TEST_F(Pathname, CombiningDirectories) {
    const char* const rows[][2] = {
        {"x", "/b/x"},   {"./x", "./x"},    {"../x", "../x"}, {".", "/b/."}, {"..", "/b/.."},
        {".x", "/b/.x"}, {"..x", "/b/..x"}, {"/x", "/x"},     {"~u", "~u"},  {"", "/b/"}};
    char dst[4400] = "#";
    const std::string longest(4352, '/');
    EXPECT_FALSE(vpCombineDirectory(dst, "/b", (longest + "/").c_str()));
    EXPECT_FALSE(vpCombineDirectory(dst, "/b", std::string(4350, 'x').c_str()));
    EXPECT_STREQ(dst, "#");
    EXPECT_TRUE(vpCombineDirectory(dst, "/b", longest.c_str()));
    EXPECT_EQ(dst, longest);
    EXPECT_TRUE(vpCombineDirectory(dst, "/b", std::string(4349, 'x').c_str()));
    EXPECT_EQ(dst, "/b/" + std::string(4349, 'x'));
    for (const auto& [rel, expected] : rows) {
        EXPECT_TRUE(vpCombineDirectory(dst, "/b", rel));
        EXPECT_STREQ(dst, expected);
    }
}

TEST_F(Pathname, Separating) {
    const char* const rows[][3] = {{"/a/f.v", "/a", "f.v"},
                                   {"f", "", "f"},
                                   {"/f", "/", "f"},
                                   {"a/", "a", ""},
                                   {"", "", ""},
                                   {"//f", "/", "f"},
                                   {"\x01/\xFF/f", "\x01/\xFF", "f"},
                                   {"\xE3/\xC3\xA4", "\xE3", "\xC3\xA4"}};
    for (const auto& [name, dir, file] : rows) {
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
    }
    char dst[4] = "#";
    EXPECT_EQ(vpSeparatePathName(nullptr, dst), nullptr);
    EXPECT_STREQ(dst, "");
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
    // Name, its normal form, and that with list separators stripped.
    const char* const rows[][3] = {{"", "none", "none"},
                                   {"/", "/", "/"},
                                   {"//", "", ""},
                                   {"/a/b///", "/a/b", "/a/b"},
                                   {"/a/:;", "/a/:;", "/a"},
                                   {":;", ":;", ""},
                                   {"/:", "/:", "/"},
                                   {"//;", "//;", ""},
                                   {"a:/", "a:", "a:"},
                                   {"./a//..", "./a//..", "./a//.."},
                                   {"~", "/h", "/h"},
                                   {"~/:", "/h//:", "/h"},
                                   {"\xFF/", "\xFF", "\xFF"},
                                   {"\x01 ", "\x01 ", "\x01 "}};
    for (const auto& [name, kept, stripped] : rows) {
        EXPECT_EQ(Normalized(name), kept) << name;
        EXPECT_EQ(Normalized(name, true), stripped) << name;
    }
    const std::string longest(4096, 'x');
    EXPECT_EQ(Normalized(longest), longest);
    EXPECT_EQ(Normalized(longest + "/"), kTooLong);  // counted as given
    EXPECT_EQ(Normalized("~/" + longest.substr(4)), "/h//" + longest.substr(4));
    EXPECT_EQ(Normalized("~/" + longest.substr(3)), kTooLong);
}

TEST_F(Pathname, FailedNormalizingIsReportedWithTheNameCut) {
    const std::string endless(5000, 'x');
    const std::string line = kTooLong + ": " + endless.substr(0, 4353);
    char* name = nullptr;
    int leaf = -1;
    EXPECT_EQ(NormalizeDirNameOrReport(endless.c_str(), false, &name), 0);
    EXPECT_EQ(SplitNormalizedDirName(endless.c_str(), &name, &leaf), -1);
    EXPECT_EQ(g_sent, "E:" + line + "W:" + line);
    EXPECT_TRUE(name == nullptr && leaf == 0);
}

TEST_F(Pathname, SplittingSearchNames) {
    // Name, directory part, leaf; null: nothing is left.
    const char* const rows[][3] = {{"f.v", "", "f.v"},
                                   {"/", "/", ""},
                                   {"/f", "/", "f"},
                                   {"+p//f/", "+p//", "f"},
                                   {"a/f:", "a/", "f:"},
                                   {"//", nullptr, ""},
                                   {"\xC3\xA4/\xE3", "\xC3\xA4/", "\xE3"},
                                   {"\xE3/a", "\xE3/", "a"}};
    for (const auto& [name, dir, leaf] : rows) {
        char* kept = nullptr;
        int leafLength = -1;
        const int dirLength = dir ? static_cast<int>(std::strlen(dir)) : -1;
        EXPECT_EQ(SplitNormalizedDirName(name, &kept, &leafLength), dirLength) << name;
        EXPECT_EQ(leafLength, static_cast<int>(std::strlen(leaf))) << name;
        EXPECT_EQ(kept ? kept : "null", dir ? std::string(dir) + leaf : "null");
        vpFreeNormalizedDirName(kept);
    }
    for (const char* empty : {"", static_cast<const char*>(nullptr)}) {
        char* kept = nullptr;
        int leafLength = -1;
        EXPECT_EQ(SplitNormalizedDirName(empty, &kept, &leafLength), 0);
        EXPECT_TRUE(kept == nullptr && leafLength == 0);
    }
    EXPECT_EQ(g_sent, "");
}

TEST_F(Pathname, FullPath) {
    namespace fs = std::filesystem;
    const fs::path top = fs::temp_directory_path() / ("pathname_test." + std::to_string(getpid()));
    fs::create_directories(top / "d");
    std::ofstream(top / "d" / "f");
    fs::current_path(top);
    const std::string real = fs::current_path();
    const char* const rows[][2] = {{"d/f", "/d/f"},  {"./d//f", "/d/f"}, {"d/../d/.", "/d"},
                                   {".", ""},        {"d/", "/d"},       {"d/x/..", "/d"},
                                   {"d/y", nullptr}, {"", nullptr},      {nullptr, nullptr}};
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
    fs::remove_all(top);
    EXPECT_EQ(vpFullPath(dst, "f", sizeof dst), nullptr);  // the current directory is gone
}

TEST_F(Pathname, PathLists) {
    const std::string longest(4096, 'x');
    const std::string list = "a:;b;" + longest + ":c";
    std::string starts;
    for (const char* at = list.c_str(); *at != '\0';
         starts += std::to_string(at - list.c_str()) + " ") {
        at = NextPathListEntry(at);
    }
    EXPECT_EQ(starts + g_sent, "2 3 5 4102 4103 ");
    EXPECT_EQ(NextPathListEntry((longest + "x:c").c_str()), nullptr);
    EXPECT_EQ(g_sent, "W:" + kTooLong + ": " + longest + "x:c");
    g_sent.clear();
    EXPECT_EQ(NextPathListEntry((longest + longest).c_str()), nullptr);
    EXPECT_EQ(g_sent, "W:" + kTooLong + ": " + (longest + longest).substr(0, 4348) + "...");
}

TEST_F(Pathname, ComparingAndFoldingAreAsciiOnly) {
    const struct {
        const char *a, *b;
        int exact, folded;  // signs
    } rows[] = {{"a", "A", 1, 0},
                {"Z", "z", -1, 0},
                {"a", "ab", -1, -1},
                {nullptr, "", 0, 0},
                {"a", nullptr, 1, 1},
                {"_", "A", 1, -1},
                {"\xC3\x84", "\xC3\xA4", -1, -1},
                {"\xFF", "a", 1, 1}};
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
