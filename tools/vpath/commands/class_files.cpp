#include "commands/class_files.h"

#include <vpath/search.h>

#include "loading/inner_dirs.h"
#include "loading/open_search.h"
#include "loading/path_names.h"

namespace {

// The extensions of class files, in ascending order of preference.
const std::vector<std::string> kClassExtensions = {"v", "p"};

// The first file that could define the class by its place, as the search names it; "" for none.
std::string Candidate(const vpPath& path, const std::string& className,
                      vpCaseSensitivity caseRule) {
    const std::string dirName = ClassDirName(className);
    if (dirName.empty()) return "";
    const size_t mark = dirName.rfind('@');
    const std::string inClassDir = dirName + "/" + dirName.substr(mark + 1);
    const std::string inPackage = dirName.substr(0, mark) + dirName.substr(mark + 1);
    ExtensionArray extensions(kClassExtensions);
    for (const std::string& place : {inClassDir, inPackage}) {
        const Search search(vpCreateAllSearchIterator(path, place.c_str(), extensions.data(),
                                                      vpReadCheckSkip, caseRule));
        char file[kNameRoom];
        if (vpFindNextFile(search.get(), nullptr, file) != 0) return file;
    }
    return "";
}

std::optional<std::string> FindClassFile(const vpPath& path, const std::string& className,
                                         const std::vector<std::string>& extensions) {
    ExtensionArray array(extensions);
    char file[kNameRoom];
    const bool found =
        vpGetClassFile(path, className.c_str(), file, sizeof file, array.data()) && *file != '\0';
    return found ? std::optional<std::string>(file) : std::nullopt;
}

}  // namespace

std::optional<std::string> ClassFile(const vpPath& path, const std::string& className,
                                     const PathOptions& options) {
    return FindClassFile(path, className,
                         options.anyExtension ? kClassExtensions : options.extensions);
}

std::string WhyNoClassFile(const vpPath& path, const std::string& className,
                           const PathOptions& options) {
    if (!options.anyExtension) {
        const auto file = FindClassFile(path, className, kClassExtensions);
        if (file) return *file + " has another extension; list it in --ext";
    }
    const std::string file = Candidate(path, className, vpCaseOfPath);
    if (!file.empty()) {
        return FullFileName(file.c_str()) + (vpIsFileClassdef(path, file.c_str())
                                                 ? " declares it, but does not count on this path"
                                                 : " does not begin with 'classdef'");
    }
    const std::string other =
        options.ignoreCase ? "" : Candidate(path, className, vpCaseInsensitive);
    if (!other.empty()) {
        return FullFileName(other.c_str()) + " differs in case; use --ignore-case";
    }
    return "add its directory with --path";
}
