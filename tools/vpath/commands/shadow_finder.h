// Names that are found in more than one place.
#pragma once

#include <string>
#include <vector>

#include <vpath/path.h>

#include "options/path_options.h"

// A file, or a class directory that has no file of its own name.
struct ShadowPlace {
    std::string name;  // spelled as here
    std::string file;
    bool isClass;  // the directory, or the constructor in it
    const char* grade;
};

// Answers about names one by one.
class ShadowFinder {
  public:
    // `compare`: grade hidden files by what is in them, too.
    ShadowFinder(const vpPath& path, const PathOptions& options, bool compare);

    // The places of a name as NamesOnPath spells it, in order of precedence. Of several the first
    // "wins"; the grade of the others is "hidden", "differs in case" or "file against class", or
    // with `compare` "same content", "different content" or "unreadable" for hidden ones.
    std::vector<ShadowPlace> placesOf(const std::string& name) const;

  private:
    std::vector<ShadowPlace> find(const std::string& name) const;
    const char* grade(const ShadowPlace& winner, const ShadowPlace& hidden) const;

    const vpPath path_;
    const bool compare_;
    const bool ignoreCase_;
    const ExtensionArray extensions_;
};
