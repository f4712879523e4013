#include <algorithm>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <vpath/path.h>
#include <vpath/pathname.h>

namespace {

// clang-format off
// Name, package, class, object; null: none.
const char* const kRows[][4] = {
    {"", nullptr, nullptr, nullptr}, {nullptr, nullptr, nullptr, nullptr},
    {"/r/+p/+q/f.v", "p.q", nullptr, nullptr}, {"+p", "p", nullptr, nullptr},
    {"/a/+p/b/+q/f", "p", nullptr, nullptr}, {"//r///+p//+q/@C//f.v", "p.q", "p.q.C", nullptr},
    {"/r/+p/a/@C/f.v", "p", nullptr, "C"}, {"/r/@C/f.v", nullptr, "C", "C"},
    {"/r/@A/@B", nullptr, "A.B", "A.B"}, {"/r/@A/x/@B/f", nullptr, "A", "B"},
    {"/r/@A/+p/@B/f", "p", "p.B", "B"}, {"/r/+p/+/+q/f", "p", nullptr, nullptr},
    {"/r/@/f", nullptr, nullptr, nullptr}, {"/r/@A/@/@B/f", nullptr, "A", "B"},
    {"/r/@C/sub/f.v", nullptr, "C", nullptr}, {"/r/@C/PRIVATE/x/f.v", nullptr, "C", "C"},
    {"/r/x@C/f.v", nullptr, nullptr, nullptr}, {"/r/x@A/@B/f", nullptr, "B", "B"},
    {"/r/@A@x/@B/f", nullptr, "A@x.B", "A@x.B"}, {"/r/@A/f@x", nullptr, "A", nullptr},
    {"@A/@B/@C/private/f", nullptr, "A.B.C", "A.B.C"}};

// Name, what vpGetQualifiedNameFromPath makes of it.
const char* const kQualified[][2] = {
    {"/r/@C/f.v", "C/f.v"}, {"/r/a@b", "b"}, {"/r/@", ""}, {"/r/Private/f", nullptr},
    {"/r/d/private/f.v", "d/private/f.v"}, {"d/private/f", "d/private/f"},
    {"private/f", "private/f"}, {"/private/f", "/private/f"}, {nullptr, nullptr},
    {"/r/privateer/f.v", "r/privateer/f.v"}, {"/r/myprivate/f", "myprivate/f"},
    {"/a/b/private/private/f", "b/private/private/f"}};
// clang-format on

// `shortest` is the smallest size that is enough. Bytes behind it must stay as they were.
template <class Derive>
void CheckDerived(Derive derive, const char* name, const char* expected, size_t shortest) {
    for (const size_t size : {shortest + 40, shortest, shortest - 1, size_t{0}}) {
        SCOPED_TRACE(std::string(name ? name : "null") + " size " + std::to_string(size));
        char dst[200];
        std::memset(dst, '#', sizeof dst);
        const bool fits = expected != nullptr && size >= shortest;
        EXPECT_EQ(derive(name, dst, size), fits ? dst : nullptr);
        EXPECT_EQ(dst[size], '#');
        if (size > 0) dst[size] = '\0';
        EXPECT_TRUE(size == 0 || !std::strcmp(dst, fits ? expected : "")) << dst;
    }
}

TEST(QualifiedNames, DottedNamesAndTheirSizes) {
    const auto object = [](auto... args) { return vpGetObjectNameFromPath(vpPath(), args...); };
    for (const auto& [name, package, klass, objectName] : kRows) {
        const auto need = [](const char* text) { return text ? std::strlen(text) + 1 : 1; };
        CheckDerived(vpGetPackageNameFromFullName, name, package, need(package));
        CheckDerived(vpGetClassNameFromFullName, name, klass, need(klass));
        // Object names are measured as they stand in the name, "/@" for each '.'.
        const std::string dotted = objectName ? objectName : "";
        const auto dots = std::count(dotted.begin(), dotted.end(), '.');
        CheckDerived(object, name, objectName, need(objectName) + static_cast<size_t>(dots));
    }
}

TEST(QualifiedNames, QualifiedPart) {
    for (const auto& [name, expected] : kQualified) {
        char dst[64] = "#";
        EXPECT_EQ(vpGetQualifiedNameFromPath(name, dst), expected ? dst : nullptr) << name;
        EXPECT_STREQ(dst, expected ? expected : "") << name;
    }
}

TEST(QualifiedNames, MarkedDirectories) {
    for (const char* name : {"@c", "/a/b@c/@d/e", "/@"})
        EXPECT_TRUE(vpIsDirNameMethodDirName(name));
    for (const char* name : {"/a/b@c", "", "+p"}) EXPECT_FALSE(vpIsDirNameMethodDirName(name));
    for (const char* name : {"+p", "/a/x+y/+p/+q", "/a//+p"}) {
        EXPECT_EQ(vpGetPackageDirName(name), std::strstr(name, "+p"));
        EXPECT_TRUE(vpIsDirNamePackageDirName(name));
    }
    for (const char* name : {"/a+/b", "", "@c"}) EXPECT_FALSE(vpIsDirNamePackageDirName(name));
}

}  // namespace
