// vpath shadows: names found in more than one place.
#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "inner_dirs.h"
#include "name_arguments.h"
#include "names_on_path.h"
#include "path_names.h"

namespace {

struct ShadowsOptions {
    std::vector<std::string> names;
    bool compare = false;
};

const char* Compared(const std::string& a, const std::string& b) {
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

// A file, or a class directory that has no file of its own name.
struct Place {
    std::string name;  // spelled as here
    std::string file;
    bool isClass;  // the directory, or the constructor in it
};

// Answers about names one by one.
class ShadowFinder {
  public:
    ShadowFinder(const vpPath& path, const ShadowsOptions& options, Context& context)
        : path_(path),
          compare_(options.compare),
          ignoreCase_(context.options.ignoreCase),
          extensions_(context.options.extensionArray()),
          output_(context.output()) {}

    // The number of places; they are printed when there are more than one.
    size_t answer(const std::string& name) {
        const std::vector<Place> places = placesOf(name);
        std::unordered_map<std::string, const Place*> winners;  // by spelling
        for (const Place& place : places) {
            if (places.size() < 2) break;
            const Place* winner =
                winners.try_emplace(ignoreCase_ ? "" : place.name, &place).first->second;
            const char* grade = &place == &places[0] ? "wins"
                                : winner == &place   ? "differs in case"
                                                     : Grade(*winner, place);
            output_.print(Record("shadow")
                              .column("name", place.name, Style::kName)
                              .column("file", place.file, Style::kFile)
                              .column("grade", grade, Style::kNote)
                              .faint(&place != &places[0]));
        }
        return places.size();
    }

  private:
    std::vector<Place> placesOf(const std::string& name) const {
        const size_t slash = name.rfind('/') + 1;  // 0 when there is none
        const std::string prefix = name.substr(0, slash);
        const bool isMethod = prefix.starts_with('@') || prefix.find("/@") != std::string::npos;
        std::vector<Place> places;
        std::unordered_set<std::string> classDirs;
        for (std::string& file : FilesOf(path_, name, extensions_, vpCaseInsensitive)) {
            std::string stem = StemOf(file);
            const size_t end = file.rfind('/');
            const std::string dir = file.substr(0, end);
            const bool isClass = !isMethod && dir[dir.rfind('/') + 1] == '@';
            if (isClass) classDirs.insert(dir);
            places.push_back({prefix + stem, std::move(file), isClass});
        }
        // The directories of a class complete each other: alone they compete with nothing.
        if (std::all_of(places.begin(), places.end(),
                        [&](const Place& place) { return isMethod || place.isClass; })) {
            return places;
        }
        for (const vpDir& dir : ClassDirs(path_, dotted(name), vpCaseInsensitive)) {
            const std::string dirName = FullNameOf(dir);
            if (!classDirs.insert(dirName).second) continue;
            places.push_back({prefix + vpGetBaseDirName(dir), dirName, true});
        }
        return places;
    }

    // "geo.area" for "+geo/area", "" for a name that no class can have.
    static std::string dotted(std::string name) {
        if (name.find('.') != std::string::npos) return "";
        std::erase(name, '+');
        std::replace(name.begin(), name.end(), '/', '.');
        return name;
    }

    const char* Grade(const Place& winner, const Place& hidden) const {
        if (winner.isClass != hidden.isClass) return "file against class";
        if (!compare_ || winner.isClass) return "hidden";
        return Compared(winner.file, hidden.file);
    }

    const vpPath path_;
    const bool compare_;
    const bool ignoreCase_;
    const ExtensionArray extensions_;
    Output& output_;
};

ExitStatus RunShadows(const ShadowsOptions& options, Context& context) {
    CheckNameArguments(options.names, "NAME", "a file");
    const vpPath path = context.loaded().path;
    ShadowFinder finder(path, options, context);
    ExitStatus status = kExitFound;
    for (const std::string& name : options.names) {
        const size_t places = finder.answer(name);
        if (places == 0) {
            context.output().miss(name, "not found on the path", "'vpath which' says more");
        }
        if (places != 1) status = kExitNotFound;
    }
    if (!options.names.empty()) return status;
    for (const NameOnPath& name :
         NamesOnPath(path, context.options.extensionArray(), /*ignoreCase=*/true)) {
        if (name.places > 1 && finder.answer(name.name) > 1) status = kExitNotFound;
    }
    return status;
}

}  // namespace

Command AddShadowsCommand(CLI::App& app) {
    const auto options = std::make_shared<ShadowsOptions>();
    CLI::App* shadows = app.add_subcommand("shadows", "Names in several places");
    shadows->fallthrough();
    AddNameArguments(*shadows, "NAME", options->names,
                     "'foo', '+pkg/foo', '@cls/foo'; if none is given, all")
        ->required(false);
    shadows->add_flag("--compare", options->compare, "compare the contents of the files");
    shadows->footer(
        "Prints each name that is found in several places: the name, the place and what\n"
        "that is, tabs between them. The first \"wins\"; others are \"hidden\" (--compare:\n"
        "\"same content\", \"different content\" or \"unreadable\"), or have a name that only\n"
        "\"differs in case\", or are a \"file against class\": one of the two is a class\n"
        "directory or in it. Exit status: 1 when there are any.\n"
        "Example: the sources that hide others which are not the same\n"
        "  vpath --path /w/lib:/w/tools --ext v,p shadows --compare | grep different");
    return {shadows, [options](Context& context) { return RunShadows(*options, context); }};
}
