#include "report/report_data.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <utility>

#include <vpath/search.h>

#include "commands/names_on_path.h"
#include "loading/host_calls.h"
#include "loading/open_search.h"
#include "loading/path_names.h"

namespace {

// A name may be in thousands of places: the first ones tell what there is to know.
constexpr size_t kPlacesShown = 20;

void AddContents(const vpDir& pathDir, ExtensionArray extensions, ReportDirectory& directory) {
    std::vector<vpDir> left = {pathDir};
    while (!left.empty()) {
        const vpDir dir = left.back();
        left.pop_back();
        const auto time = ListingTimes().find(NameOfDir(dir));
        if (time != ListingTimes().end()) {
            ++directory.listed;
            // The current directory may be on the path once more.
            directory.listingSeconds +=
                time->second.seconds / static_cast<double>(time->second.listings);
        }
        const Search files(vpCreateDirSearch(dir, nullptr, extensions.data(), vpReadCheckSkip));
        char file[kNameRoom];
        while (vpFindNextFile(files.get(), nullptr, file) != 0) ++directory.files;

        const Search inner(vpCreateDirSearch(dir, nullptr, nullptr, vpReadCheckSkip));
        vpDir inside;
        while (vpFindNextDir(inner.get(), &inside) != 0) {
            ++directory.special;
            left.push_back(inside);
        }
    }
}

// Finds the directories of the path by what lies in them, special directories between or not.
class OwnerIndex {
  public:
    explicit OwnerIndex(const std::vector<ReportDirectory>& directories) {
        for (size_t i = 0; i < directories.size(); ++i) byName_.emplace(directories[i].name, i);
    }

    // Of a full name in a directory of the path. Nothing for one that has left the disk meanwhile,
    // if it was added under a relative name.
    std::optional<size_t> ownerOf(std::string name) const {
        while (!name.empty() && name != "/") {
            const size_t slash = name.rfind('/');
            name.resize(slash == std::string::npos ? 0 : std::max<size_t>(slash, 1));
            const auto found = byName_.find(name);
            if (found != byName_.end()) return found->second;
        }
        return std::nullopt;
    }

  private:
    std::unordered_map<std::string, size_t> byName_;  // the first of equal ones
};

std::string KindOf(const std::vector<ShadowPlace>& places) {
    std::string kind;
    for (const char* grade : {"hidden", "differs in case", "file against class"}) {
        if (std::none_of(places.begin(), places.end(), [&](const ShadowPlace& place) {
                return std::strcmp(place.grade, grade) == 0;
            })) {
            continue;
        }
        kind.append(kind.empty() ? "" : ", ").append(grade);
    }
    return kind;
}

}  // namespace

ReportData ReportDataOf(const LoadedPath& loaded, const PathOptions& options) {
    ReportData data;
    int position = 0;
    vpDir dir = vpGetNullDir(loaded.path);
    while (vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone) {
        // An empty slot is passed over and keeps its place.
        if (position == 0 && vpGetDirType(dir) != vpDirTypeCurrent) ++position;
        ReportDirectory directory{position++, FullNameOf(dir), !vpIsAbsoluteDir(dir),
                                  vpIsFrozen(dir)};
        AddContents(dir, options.extensionArray(), directory);
        data.directories.push_back(std::move(directory));
    }

    const OwnerIndex owners(data.directories);
    const ShadowFinder finder(loaded.path, options, /*compare=*/false);
    const std::vector<NameOnPath> names =
        NamesOnPath(loaded.path, options.extensionArray(), /*ignoreCase=*/true);
    data.distinctNames = names.size();
    for (const NameOnPath& name : names) {
        if (name.places < 2) continue;
        std::vector<ShadowPlace> places = finder.placesOf(name.name);
        if (places.size() < 2) continue;
        for (const ShadowPlace& place : places) {
            if (std::strcmp(place.grade, "hidden") != 0) continue;
            const auto owner = owners.ownerOf(place.file);
            if (owner) ++data.directories[*owner].hidden;
        }
        ReportName shadow{places[0].name, places.size(), KindOf(places), {}};
        places.resize(std::min(places.size(), kPlacesShown));
        shadow.shown = std::move(places);
        data.names.push_back(std::move(shadow));
    }
    return data;
}
