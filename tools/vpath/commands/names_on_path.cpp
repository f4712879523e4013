#include "commands/names_on_path.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <hostkit/hostkit.h>
#include <vpath/search.h>

#include "loading/inner_dirs.h"
#include "loading/open_search.h"
#include "loading/path_names.h"
#include "output/interruption.h"

namespace {

class NameCollector {
  public:
    NameCollector(ExtensionArray extensions, bool ignoreCase)
        : extensions_(std::move(extensions)), ignoreCase_(ignoreCase) {}

    // What lies directly in a directory of the path or a package directory, and in its classes.
    void addDir(const vpDir& dir) {
        const std::string prefix = PackagePrefix(dir);
        addFiles(dir, prefix);
        vpDir classDir = vpGetMethodDirs(dir, dir);
        for (; vpGetDirType(classDir) != vpDirTypeNone; classDir = vpGetMethodDirs(dir, classDir)) {
            const std::string className = vpGetBaseDirName(classDir);
            add(prefix + className);
            // The constructor of a class answers to its bare name, whatever package it is in.
            if (!prefix.empty()) add(className);
            addFiles(classDir, std::string(prefix).append("@").append(className).append("/"));
        }
    }

    std::vector<NameOnPath> take() { return std::move(names_); }

  private:
    // "+geo/+flat/" for the package geo.flat.
    static std::string PackagePrefix(const vpDir& dir) {
        std::string prefix;
        vpDir at = dir;
        for (; vpGetDirType(at) == vpDirTypePackage; at = vpGetParentDir(at)) {
            prefix = std::string("+").append(vpGetBaseDirName(at)).append("/").append(prefix);
        }
        return prefix;
    }

    void addFiles(const vpDir& dir, const std::string& prefix) {
        const Search files(vpCreateDirSearch(dir, nullptr, extensions_.data(), vpReadCheckSkip));
        char file[kNameRoom];
        while (vpFindNextFile(files.get(), nullptr, file) != 0) add(prefix + StemOf(file));
    }

    void add(const std::string& name) {
        std::string key = name;
        if (ignoreCase_) hkLowerCase(key.data());
        const auto [at, isNew] = index_.try_emplace(std::move(key), names_.size());
        if (isNew) names_.push_back({name, 0});
        ++names_[at->second].places;
    }

    ExtensionArray extensions_;
    const bool ignoreCase_;
    std::unordered_map<std::string, size_t> index_;  // in names_
    std::vector<NameOnPath> names_;
};

}  // namespace

std::vector<NameOnPath> NamesOnPath(const vpPath& path, const ExtensionArray& extensions,
                                    bool ignoreCase) {
    NameCollector names(extensions, ignoreCase);
    vpDir dir = NextDirOrPackage(vpGetNullDir(path));
    for (; vpGetDirType(dir) != vpDirTypeNone; dir = NextDirOrPackage(dir)) {
        EndIfInterrupted();
        names.addDir(dir);
    }
    return names.take();
}

std::vector<std::string> FilesOf(const vpPath& path, const std::string& name,
                                 ExtensionArray extensions, vpCaseSensitivity caseRule,
                                 size_t limit) {
    // The final dot keeps a dot inside the name from being taken for an extension's.
    const Search search(
        vpCreateDirnameVisibleSearchIterator(path, /*dirName=*/nullptr, (name + ".").c_str(),
                                             extensions.data(), vpReadCheckSkip, caseRule));
    std::vector<std::string> files;
    std::unordered_set<std::string> seen;
    char file[kNameRoom];
    while (files.size() < limit && vpFindNextFile(search.get(), nullptr, file) != 0) {
        std::string fullName = FullFileName(file);
        if (seen.insert(fullName).second) files.push_back(std::move(fullName));
    }
    return files;
}
