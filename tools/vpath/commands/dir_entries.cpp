#include "commands/dir_entries.h"

#include <string_view>

#include "loading/open_search.h"
#include "loading/path_names.h"

namespace {

Search Everything(const vpDir& dir, const char** extensions) {
    return Search(vpCreateDirSearch(dir, nullptr, extensions, vpReadCheckSkip));
}

}  // namespace

const char* KindOf(const vpDir& dir) {
    switch (vpGetDirType(dir)) {
        case vpDirTypeCurrent:
            return "current";
        case vpDirTypePath:
            return "path";
        case vpDirTypePackage:
            return "package";
        case vpDirTypeClass:
            return "class";
        case vpDirTypePrivate:
            return "private";
        default:
            return "none";
    }
}

void ForEachEntry(const vpDir& dir, ExtensionArray extensions,
                  const std::function<void(const char* kind, const std::string& fullName)>& call) {
    std::string prefix = FullNameOf(dir);
    if (prefix != "/") prefix += '/';
    const auto fullName = [&prefix](std::string_view found) {
        return prefix + std::string(found.substr(found.rfind('/') + 1));
    };
    char name[kNameRoom];
    const Search files = Everything(dir, extensions.data());
    while (vpFindNextFile(files.get(), nullptr, name) != 0) call("file", fullName(name));

    const Search special = Everything(dir, nullptr);
    vpDir inside;
    while (vpFindNextDir(special.get(), &inside) != 0) call(KindOf(inside), FullNameOf(inside));

    const Search plain = Everything(dir, nullptr);
    while (vpFindNextSubdirectory(plain.get(), nullptr, name) != 0) {
        call("directory", fullName(name));
    }
}
