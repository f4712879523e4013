// How names are asked for: from where, and by which rules.
#pragma once

#include <string>

#include <vpath/path.h>

#include "loading/open_search.h"
#include "options/extension_array.h"

namespace CLI {
class App;
}

struct FromOptions {
    std::string dir;
    std::string file;
};

// Adds --from and --from-file. They write to `options`, which must outlive the parse.
void AddFromOptions(CLI::App& command, FromOptions& options);

// The directory from which to look; the null directory when none is given. Throws CommandError when
// it is not one of the path.
vpDir StartDirectory(const vpPath& path, const FromOptions& options);

class Query {
  public:
    // `from` may be the null directory: nowhere in particular.
    Query(const vpPath& path, const vpDir& from, vpReadCheck readCheck,
          const ExtensionArray& extensions)
        : path_(path), from_(from), readCheck_(readCheck), extensions_(extensions) {}

    bool filtersExtensions() const { return !extensions_.isAny(); }

    Search search(const std::string& name) { return open(name, extensions_.data(), vpCaseOfPath); }
    Search searchAnyCase(const std::string& name) {
        return open(name, extensions_.data(), vpCaseInsensitive);
    }

    // First matches under looser rules, "" for none.
    std::string firstOfAnyExtension(const std::string& name);
    std::string firstOfAnyCase(const std::string& name);
    std::string firstPrivate(const std::string& name);

  private:
    Search open(const std::string& name, const char** extensions, vpCaseSensitivity caseRule);

    const vpPath path_;
    const vpDir from_;
    const vpReadCheck readCheck_;
    ExtensionArray extensions_;
};
