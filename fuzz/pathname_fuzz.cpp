// The pathname functions: the room that the header tells of is enough, and what was split joins.
#include <vpath/path.h>
#include <vpath/pathname.h>

#include <cstring>
#include <filesystem>
#include <sstream>

#include "input.h"

namespace {

void Extensions(const std::string& name, const std::string& extension) {
    const int at = vpFindFileExt(name.c_str());
    CHECK(at >= -1 && at < static_cast<int>(name.size()));
    CHECK(at == -1 || name[static_cast<size_t>(at)] == '.');
    Room changed(name.size() + extension.size() + 1);
    const char* const place = vpChangeFileExtension(name.c_str(), changed, extension.c_str());
    CHECK(place >= static_cast<char*>(changed));
    const std::string stem = at == -1 ? name : name.substr(0, static_cast<size_t>(at));
    CHECK(stem + extension == static_cast<char*>(changed));
    Room base(name.size() + 1);
    vpGetBaseFileName(name.c_str(), base);
    CHECK(name.compare(0, std::strlen(base), base) == 0);
}

void Joining(const std::string& dir, const std::string& name) {
    Room joined(dir.size() + name.size() + 2);
    vpCombinePathName(joined, dir.c_str(), name.c_str());
    Room inPlace(dir.size() + name.size() + 2, dir);
    vpConcatPathName(inPlace, name.c_str());
    CHECK(std::strcmp(joined, inPlace) == 0);
    Room subdir(dir.size() + name.size() + 2, dir);
    vpConcatPathSubdir(subdir, name.c_str());
    CHECK(std::strcmp(joined, subdir) == 0);
    Room last(dir.size() + 2);
    CHECK(dir.find(vpExtractSubdir(last, dir.c_str())) != std::string::npos);
    Room path(dir.size() + 1, dir);
    Room dirPart(dir.size() + 2);
    const std::string fileName = vpSeparatePathName(path, dirPart);
    const size_t slash = dir.rfind('/');
    CHECK(fileName == (slash == std::string::npos ? dir : dir.substr(slash + 1)));
    Room cut(dir.size() + 2, dir);
    vpSeparatePathName(cut, cut);
    CHECK(std::strcmp(cut, slash == std::string::npos ? dir.c_str() : dirPart) == 0);
    Room relative(4352 + 1);
    if (!vpCombineDirectory(relative, dir.c_str(), name.c_str())) {
        CHECK(dir.size() + 1 + name.size() > 4352);
    }
}

// Whether a relative name ends where it begins, as "a/.." does: such a name exists.
bool LeadsBack(const std::string& name) {
    int depth = 0;
    std::istringstream components(name);
    for (std::string each; std::getline(components, each, '/');) {
        if (each.empty() || each == ".") continue;
        depth += each == ".." ? -1 : 1;
        if (depth < 0) return false;
    }
    return !name.empty() && depth == 0;
}

void Normalising(const std::string& name) {
    int length = -1;
    char* kept = nullptr;
    const char* const fault = vpNormalizeDirName(name.c_str(), true, 0, &length, &kept);
    CHECK(fault == nullptr || kept == nullptr);
    if (kept != nullptr) {
        const std::string once = kept;
        CHECK(length == static_cast<int>(once.size()));
        vpFreeNormalizedDirName(kept);
    }
    Room own(name.size() + 1, name);
    Room expanded(name.size() + 4096);
    vpTildeExpansion(expanded, own);
    Room full(4096);
    const bool exists = vpFullPath(full, name.c_str(), 4096) != nullptr;
    if (!vpIsAbsolutePath(name.c_str())) {
        if (LeadsBack(name))
            CHECK(exists && std::filesystem::current_path() == static_cast<char*>(full));
        if (exists) CHECK(*static_cast<char*>(full) == '/');
    }
    for (const char& c : name) CHECK(vpIsPathNameSep(name.c_str(), &c) == (c == '/'));
    CHECK(!vpIsWinPathRemote(name.c_str()));
}

void Qualifying(const std::string& name, size_t size) {
    Room dst(size);
    for (const auto function : {vpGetPackageNameFromFullName, vpGetClassNameFromFullName}) {
        const char* const answer = function(name.c_str(), dst, size);
        if (answer != nullptr) CHECK(std::strlen(answer) < size);
    }
    const char* const object = vpGetObjectNameFromPath(vpPath(), name.c_str(), dst, size);
    if (object != nullptr) CHECK(std::strlen(object) < size);
    Room qualified(name.size() + 1);
    const char* const answer = vpGetQualifiedNameFromPath(name.c_str(), qualified);
    if (answer != nullptr) CHECK(name.find(answer) != std::string::npos);
    const bool isPackage = vpIsDirNamePackageDirName(name.c_str());
    CHECK(isPackage == (vpGetPackageDirName(name.c_str()) != nullptr));
    vpIsDirNameMethodDirName(name.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const size_t room = input.byte();
    const std::string first = input.text();
    const std::string second = input.text();
    Extensions(first, second);
    Joining(first, second);
    Normalising(first);
    Qualifying(first, room);
    return 0;
}
