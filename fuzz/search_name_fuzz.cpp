// Search names with extensions: every search ends, and the look-ups answer what it answers first.
#include <cstring>
#include <vector>

#include "fuzzed_path.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static auto* const on = [] {
        auto* const made = new FuzzedPath;
        made->host.add({"/a/f.v", "/a/F.V", "/a/f", "/a/g.tar.gz", "/a/private/f.v", "/a/@C/C.v",
                        "/a/@C/f.p", "/a/@C/private/f.v", "/a/+p/f.v", "/a/+p/@C/C.p",
                        "/a/+p/+q/f.v", "/a/+p/private/f.v", "/a/d/", "/b/f.v", "/b/f.p", "/b/c.",
                        "/b/C.v", "/b/@C/f.v", "/b/private/f/"});
        vpAddDirsString(made->path, "/a:/b", vpAddAtEnd);
        return made;
    }();
    const vpPath& path = on->path;
    Input input(data, size);
    const auto rule = static_cast<vpCaseSensitivity>(input.below(4));
    const auto check = static_cast<vpReadCheck>(input.below(2));
    vpSetCaseSensitivity(path, input.below(2) == 0);
    const std::string name = input.text();
    const std::string place = input.text();
    std::vector<std::string> texts;
    std::vector<const char*> extensions;
    while (!input.empty() && texts.size() < 8) texts.push_back(input.text());
    for (const std::string& text : texts) extensions.push_back(text.c_str());
    extensions.push_back(nullptr);
    const char** const exts = texts.empty() ? nullptr : extensions.data();

    const vpDir from = vpFindDirFullName(path, place.c_str());
    for (const auto create : {vpCreateVisibleSearchIterator, vpCreatePrivateSearchIterator,
                              vpCreateDirSearchIterator}) {
        FuzzedPath::Drain(create(from, name.c_str(), exts, check, rule));
    }
    for (const auto create : {vpCreateDirnameSearchIterator, vpCreateDirnameVisibleSearchIterator,
                              vpCreateFilenameVisibleSearchIterator}) {
        FuzzedPath::Drain(create(path, place.c_str(), name.c_str(), exts, check, rule));
    }
    FuzzedPath::Drain(vpCreateMethodSearch(path, name.c_str(), exts, check));

    char first[2 * 4352] = "";
    char found[2 * 4352] = "";
    vpDir firstDir;
    vpDir foundDir;
    vpSearch* search = vpCreateAllSearch(path, name.c_str(), exts, check);
    const unsigned int result = vpFindNextFile(search, &firstDir, first);
    vpDestroySearch(&search);
    CHECK(vpFindFirstFileInAll(path, name.c_str(), exts, check, &foundDir, found) == result);
    CHECK(std::strcmp(first, found) == 0 && vpIsSameDir(firstDir, foundDir));

    char classFile[64];
    vpDoesClassFileExist(path, name.c_str(), exts);
    if (vpGetClassFile(path, name.c_str(), classFile, sizeof classFile, exts)) {
        CHECK(std::strlen(classFile) < sizeof classFile);
    }
    on->check();
    return 0;
}
