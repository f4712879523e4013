#include "loading/path_names.h"

#include <vpath/pathname.h>

std::optional<std::string> FullDirName(const std::string& name) {
    char* normalized = nullptr;
    const char* failure = vpNormalizeDirName(name.c_str(), true, 0, nullptr, &normalized);
    if (failure != nullptr || normalized == nullptr) return std::nullopt;
    const std::string dirName = normalized;
    vpFreeNormalizedDirName(normalized);
    if (vpIsAbsolutePath(dirName.c_str())) return dirName;

    char full[kNameRoom];
    if (vpFullPath(full, dirName.c_str(), sizeof full) == nullptr) return std::nullopt;
    return full;
}

std::string NameOfDir(const vpDir& dir) {
    std::string name(static_cast<size_t>(vpGetDirNameLen(dir)) + 1, '\0');
    vpGetDirName(dir, name.data());
    name.pop_back();
    return name;
}

vpDir FindDir(const vpPath& path, const std::string& name) {
    vpDir found = vpFindDirFullName(path, name.c_str());
    const auto fullName = FullDirName(name);
    if (vpGetDirType(found) != vpDirTypeNone || !fullName) return found;
    found = vpFindDirFullName(path, fullName->c_str());
    const std::string current = JoinNames(FullDirName(".").value_or("/"), "");
    if (vpGetDirType(found) == vpDirTypeNone && fullName->starts_with(current)) {
        found = vpFindDirFullName(path, fullName->c_str() + current.size());
    }
    vpDir dir = vpGetNullDir(path);
    while (vpGetDirType(found) == vpDirTypeNone) {
        dir = vpGetNextPathDir(dir);
        if (vpGetDirType(dir) == vpDirTypeNone) break;
        if (vpIsAbsoluteDir(dir)) continue;
        const std::string relativeName = NameOfDir(dir);
        const auto start = FullDirName(relativeName);
        if (!start || fullName->compare(0, start->size(), *start) != 0) continue;
        const std::string rest = fullName->substr(start->size());
        if (!rest.empty() && rest[0] != '/') continue;
        found = vpFindDirFullName(path, (relativeName + rest).c_str());
    }
    return found;
}

std::string FullNameOf(const vpDir& dir) {
    std::string name = NameOfDir(dir);
    return vpIsAbsoluteDir(dir) ? name : FullDirName(name).value_or(name);
}

std::string JoinNames(const std::string& dir, const std::string& name) {
    return dir.ends_with('/') ? dir + name : dir + "/" + name;
}

std::string DirOfFile(const std::string& fileName) {
    const size_t slash = fileName.rfind('/');
    if (slash == std::string::npos) return ".";
    return fileName.substr(0, slash == 0 ? 1 : slash);
}

std::string LastComponent(const std::string& name) { return name.substr(name.rfind('/') + 1); }

std::string StemOf(const std::string& fileName) {
    std::string name = LastComponent(fileName);
    const int extension = vpFindFileExt(name.c_str());
    if (extension > 0) name.resize(static_cast<size_t>(extension));
    return name;
}

std::string FullFileName(const char* found) {
    if (vpIsAbsolutePath(found)) return found;
    const std::string name = found;
    // The file itself need not exist: links may dangle.
    const auto dirName = FullDirName(DirOfFile(name));
    return dirName ? JoinNames(*dirName, LastComponent(name)) : name;
}
