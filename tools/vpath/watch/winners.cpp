#include "watch/winners.h"

#include <utility>

#include <vpath/search.h>

#include "loading/open_search.h"
#include "loading/path_names.h"

Winners::Winners(const vpPath& path, const PathOptions& options,
                 const std::vector<std::string>& names, DirNamer nameOfDir)
    : path_(path), nameOfDir_(std::move(nameOfDir)), extensions_(options.extensionArray()) {
    for (const std::string& name : names) winners_.push_back({name, ""});
}

std::vector<WinnerChange> Winners::update() {
    std::vector<WinnerChange> changes;
    for (Winner& winner : winners_) {
        std::string file = find(winner.name);
        if (file == winner.file) continue;
        changes.push_back({winner.name, winner.file, file});
        winner.file = std::move(file);
    }
    return changes;
}

std::vector<WinnerChange> Winners::all() const {
    std::vector<WinnerChange> all;
    for (const Winner& winner : winners_) all.push_back({winner.name, "", winner.file});
    return all;
}

std::string Winners::find(const std::string& name) {
    const Search search(vpCreateDirnameVisibleSearchIterator(path_, /*dirName=*/nullptr,
                                                             name.c_str(), extensions_.data(),
                                                             vpReadCheckSkip, vpCaseOfPath));
    vpDir dir;
    char file[kNameRoom];
    if (vpFindNextFile(search.get(), &dir, file) == 0) return "";
    return JoinNames(nameOfDir_(dir), LastComponent(file));
}
