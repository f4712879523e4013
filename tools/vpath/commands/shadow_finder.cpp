#include "commands/shadow_finder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "commands/names_on_path.h"
#include "loading/inner_dirs.h"
#include "loading/path_names.h"

namespace {

const char* Compared(const std::string& a, const std::string& b) {
    // Others may have no end, or wait for a writer.
    std::error_code failed;
    for (const std::string& file : {a, b}) {
        if (!std::filesystem::is_regular_file(file, failed)) return "unreadable";
    }
    std::ifstream first(a, std::ios::binary);
    std::ifstream second(b, std::ios::binary);
    std::vector<char> firstBytes(1 << 16);
    std::vector<char> secondBytes(1 << 16);
    while (first && second) {
        first.read(firstBytes.data(), static_cast<std::streamsize>(firstBytes.size()));
        second.read(secondBytes.data(), static_cast<std::streamsize>(secondBytes.size()));
        if (first.bad() || second.bad()) return "unreadable";
        const auto end = firstBytes.begin() + first.gcount();
        if (first.gcount() != second.gcount() ||
            !std::equal(firstBytes.begin(), end, secondBytes.begin())) {
            return "different content";
        }
        if (first.eof() && second.eof()) return "same content";
    }
    return "unreadable";
}

// "geo.area" for "+geo/area", "" for a name that no class can have.
std::string Dotted(std::string name) {
    if (name.find('.') != std::string::npos) return "";
    std::erase(name, '+');
    std::replace(name.begin(), name.end(), '/', '.');
    return name;
}

}  // namespace

ShadowFinder::ShadowFinder(const vpPath& path, const PathOptions& options, bool compare)
    : path_(path),
      compare_(compare),
      ignoreCase_(options.ignoreCase),
      extensions_(options.extensionArray()) {}

std::vector<ShadowPlace> ShadowFinder::placesOf(const std::string& name) const {
    std::vector<ShadowPlace> places = find(name);
    if (places.size() < 2) return places;
    std::unordered_map<std::string, const ShadowPlace*> winners;  // by spelling
    for (ShadowPlace& place : places) {
        const ShadowPlace* winner =
            winners.try_emplace(ignoreCase_ ? "" : place.name, &place).first->second;
        place.grade = &place == places.data() ? "wins"
                      : winner == &place      ? "differs in case"
                                              : grade(*winner, place);
    }
    return places;
}

std::vector<ShadowPlace> ShadowFinder::find(const std::string& name) const {
    const size_t slash = name.rfind('/') + 1;  // 0 when there is none
    const std::string prefix = name.substr(0, slash);
    const bool isMethod = prefix.starts_with('@') || prefix.find("/@") != std::string::npos;
    std::vector<ShadowPlace> places;
    std::unordered_set<std::string> classDirs;
    for (std::string& file : FilesOf(path_, name, extensions_, vpCaseInsensitive)) {
        std::string stem = StemOf(file);
        const size_t end = file.rfind('/');
        const std::string dir = file.substr(0, end);
        const bool isClass = !isMethod && dir[dir.rfind('/') + 1] == '@';
        if (isClass) classDirs.insert(dir);
        places.push_back({prefix + stem, std::move(file), isClass, ""});
    }
    // The directories of a class complete each other: alone they compete with nothing.
    if (std::all_of(places.begin(), places.end(),
                    [&](const ShadowPlace& place) { return isMethod || place.isClass; })) {
        return places;
    }
    for (const vpDir& dir : ClassDirs(path_, Dotted(name), vpCaseInsensitive)) {
        const std::string dirName = FullNameOf(dir);
        if (!classDirs.insert(dirName).second) continue;
        places.push_back({prefix + vpGetBaseDirName(dir), dirName, true, ""});
    }
    return places;
}

const char* ShadowFinder::grade(const ShadowPlace& winner, const ShadowPlace& hidden) const {
    if (winner.isClass != hidden.isClass) return "file against class";
    if (!compare_ || winner.isClass) return "hidden";
    return Compared(winner.file, hidden.file);
}
