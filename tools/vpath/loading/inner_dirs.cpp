#include "loading/inner_dirs.h"

#include <algorithm>

#include <vpath/search.h>

#include "loading/open_search.h"

vpDir NextDirOrPackage(vpDir dir) {
    const vpDir child = vpGetPackageDirs(dir, dir);
    if (vpGetDirType(child) != vpDirTypeNone) return child;
    vpDir at = dir;
    while (vpGetDirType(at) == vpDirTypePackage) {
        const vpDir parent = vpGetParentDir(at);
        const vpDir sibling = vpGetPackageDirs(parent, at);
        if (vpGetDirType(sibling) != vpDirTypeNone) return sibling;
        at = parent;
    }
    return vpGetNextPathDir(at);
}

std::string DottedName(const vpDir& dir) {
    std::vector<std::string> names;
    vpDir at = dir;
    for (; vpGetDirType(at) >= vpDirTypePackage; at = vpGetParentDir(at)) {
        names.emplace_back(vpGetBaseDirName(at));
    }
    std::string dotted;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (!dotted.empty()) dotted += '.';
        dotted += *name;
    }
    return dotted;
}

std::string ClassDirName(const std::string& className) {
    std::string name;
    for (size_t begin = 0;;) {
        const size_t dot = className.find('.', begin);
        const std::string part = className.substr(begin, dot - begin);
        if (part.empty() || part.find('/') != std::string::npos) return "";
        if (dot == std::string::npos) return name.append("@").append(part);
        name.append("+").append(part).append("/");
        begin = dot + 1;
    }
}

std::vector<vpDir> ClassDirs(const vpPath& path, const std::string& className,
                             vpCaseSensitivity caseRule) {
    std::vector<vpDir> found;
    const std::string name = ClassDirName(className);
    if (name.empty()) return found;
    const Search search(
        vpCreateAllSearchIterator(path, name.c_str(), nullptr, vpReadCheckSkip, caseRule));
    vpDir dir;
    while (vpFindNextDir(search.get(), &dir) != 0) {
        if (IsAsDeepAs(dir, className)) found.push_back(dir);
    }
    return found;
}

bool IsAsDeepAs(const vpDir& classDir, const std::string& className) {
    if (vpGetDirType(classDir) != vpDirTypeClass) return false;
    const auto packages = std::count(className.begin(), className.end(), '.');
    std::ptrdiff_t depth = 0;
    vpDir at = vpGetParentDir(classDir);
    for (; vpGetDirType(at) == vpDirTypePackage; at = vpGetParentDir(at)) ++depth;
    return depth == packages;
}
