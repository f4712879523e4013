// What a report tells of a path.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "commands/shadow_finder.h"
#include "loading/loaded_path.h"

struct ReportDirectory {
    int position;
    std::string name;
    bool isRelative;
    bool isFrozen;
    size_t files = 0;    // all counts with what is in the special directories inside
    size_t special = 0;  // private, class and package directories
    size_t hidden = 0;   // files that others hide
    size_t listed = 0;   // directories that the disk was asked for, this one and those inside
    double listingSeconds = 0;  // what that took

    const char* answeredBy() const {
        return listed == 0 ? "cache" : listed <= special ? "cache and disk" : "disk";
    }
};

struct ReportName {
    std::string name;
    size_t places;
    std::string kind;                // the grades that occur, as "hidden, differs in case"
    std::vector<ShadowPlace> shown;  // the first of the places
};

struct ReportData {
    std::vector<ReportDirectory> directories;  // in path order
    std::vector<ReportName> names;             // in the order in which they come on the path
    size_t distinctNames = 0;
};

// Reads nothing but what the path holds. Times are known when KeepListingTimes was called before
// the path was loaded. Cost: the entries and, for each name found in several places, a search.
ReportData ReportDataOf(const LoadedPath& loaded, const PathOptions& options);
