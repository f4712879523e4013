// vpath cache check: whether a cache file still tells what is on the disk.
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <vpath/path.h>
#include <vpath_posix/posix_host.h>
#include <CLI/CLI.hpp>

#include "cachefile/cache_commands.h"
#include "cachefile/cache_file.h"
#include "cachefile/dir_contents.h"
#include "loading/path_names.h"

namespace {

// Compares the directories of a path with a cache file, and prints where they differ.
class CacheChecker {
  public:
    // `cached` answers from the file and holds no directories.
    CacheChecker(const vpPath& onDisk, const vpPath& cached, const CacheArguments& arguments,
                 Output& output)
        : onDisk_(onDisk), cached_(cached), toolbox_(arguments.toolbox), output_(output) {
        CacheFile file(arguments.file);
        while (const auto element = file.next()) {
            if (element->kind != CacheFile::Element::kOpening || element->depth != 0) continue;
            if (checked_.emplace(element->name, false).second) names_.push_back(element->name);
        }
    }

    // First the directories of the path, then those that only the file knows.
    ExitStatus check();

  private:
    void checkDirectoryOnPath(const vpDir& dir);
    void checkDirectoryOfFile(const std::string& nameInToolbox);
    void compare(const vpDir& dir);
    void tell(const std::string& name, std::optional<std::string> inCache,
              std::optional<std::string> onDisk);

    const vpPath onDisk_;
    const vpPath cached_;
    const Toolbox& toolbox_;
    Output& output_;
    std::vector<std::string> names_;                 // of the file's directories, in its order
    std::unordered_map<std::string, bool> checked_;  // those, and whether they were compared
    std::unordered_set<std::string> told_;
    ExitStatus status_ = kExitFound;
};

ExitStatus CacheChecker::check() {
    vpDir dir = vpGetNextPathDir(vpGetNullDir(onDisk_));
    for (; vpGetDirType(dir) != vpDirTypeNone; dir = vpGetNextPathDir(dir)) {
        if (vpGetDirType(dir) == vpDirTypePath) checkDirectoryOnPath(dir);
    }
    for (const std::string& name : names_) {
        if (!checked_[name]) checkDirectoryOfFile(name);
    }
    return status_;
}

void CacheChecker::checkDirectoryOnPath(const vpDir& dir) {
    const std::string fullName = FullNameOf(dir);
    const std::string name(toolbox_.nameIn(fullName));
    if (name.empty() || !vpIsAbsoluteDir(dir)) return;
    const auto known = checked_.find(name);
    if (known != checked_.end()) {
        known->second = true;
        compare(dir);
        return;
    }
    // What a new file would leave out as well is not missed.
    const std::vector<ContentItem> contents = ContentsOf(dir);
    const bool canBeTold =
        WhyNotInCache({name, ContentItem::kSubdirectory}).empty() &&
        std::all_of(contents.begin(), contents.end(),
                    [](const ContentItem& item) { return WhyNotInCache(item).empty(); });
    if (canBeTold) tell(fullName, std::nullopt, "directory");
}

void CacheChecker::checkDirectoryOfFile(const std::string& nameInToolbox) {
    const std::string fullName = toolbox_.dir + "/" + nameInToolbox;
    if (vpPosixAccessibility(onDisk_, fullName.c_str()) == vpDirNonexistent) {
        struct stat status;
        const bool isThere = stat(fullName.c_str(), &status) == 0;
        tell(fullName, "directory", isThere ? std::optional<std::string>("file") : std::nullopt);
        return;
    }
    const vpDir dir = vpAddDir(onDisk_, fullName.c_str(), vpAddAtEnd);
    if (vpGetDirType(dir) == vpDirTypePath) {
        compare(dir);
        vpRemoveDir(dir);
    } else {
        status_ = kExitFailure;  // the library has said why
    }
}

void CacheChecker::compare(const vpDir& dir) {
    const std::string fullName = FullNameOf(dir);
    const vpDir known = vpAddDir(cached_, fullName.c_str(), vpAddAtEnd);
    if (vpGetDirType(known) != vpDirTypePath) {
        status_ = kExitFailure;  // the library has said why
        return;
    }
    const auto kind = [](const ContentItem* item) {
        return item != nullptr ? std::optional<std::string>(KindName(item->kind)) : std::nullopt;
    };
    ForEachDifference(ContentsOf(known), ContentsOf(dir),
                      [&](const ContentItem* before, const ContentItem* now) {
                          const ContentItem* const item = before != nullptr ? before : now;
                          tell(fullName + "/" + item->name, kind(before), kind(now));
                      });
    vpRemoveDir(known);
}

// A directory of the path is an item of another as well, but told once.
void CacheChecker::tell(const std::string& name, std::optional<std::string> inCache,
                        std::optional<std::string> onDisk) {
    status_ = std::max(status_, kExitNotFound);
    if (!told_.insert(name).second) return;
    const char* const what = !inCache ? "new" : !onDisk ? "missing" : "changed";
    output_.print(Record("discrepancy")
                      .column("difference", what, Style::kNote)
                      .column("name", name, Style::kFile)
                      .column("in_cache", std::move(inCache))
                      .column("on_disk", std::move(onDisk)));
}

ExitStatus RunCheck(const std::string& fileName, Context& context) {
    const CacheArguments arguments = CheckCacheArguments(fileName, context);
    const vpPath onDisk = context.loaded().path;
    const vpPath cached = vpCreatePathWithPreFrozen(
        0, "cached", nullptr, context.options.ignoreCase ? vpCaseInsensitive : vpCaseSensitive,
        /*suppressChangeNotify=*/true);
    UseCache(cached, fileName, arguments.file, arguments.toolbox);
    const ExitStatus status = CacheChecker(onDisk, cached, arguments, context.output()).check();
    RevertFromCache(cached);
    return status;
}

}  // namespace

Command AddCacheCheckCommand(CLI::App& cache) {
    const auto fileName = std::make_shared<std::string>();
    CLI::App* check = cache.add_subcommand("check", "Compare the file with the disk");
    check->fallthrough();
    AddCacheFileArgument(*check, *fileName);
    check->footer(
        "Prints a line for each name under ROOT/toolbox (--root ROOT) that the file tells\n"
        "otherwise than the disk: \"missing\", \"new\" or \"changed\", the name, what it is by\n"
        "the file and what on the disk; tabs between them, a '-' where it is not. Give\n"
        "the options of the path that the file was made with, if any.\n"
        "Exit status: 0 the file tells what is there, 1 it does not, 2 it cannot be read.\n"
        "Example: make the file again when it has to be\n"
        "  vpath cache check /w/inst.cache --root /w/inst ||\n"
        "      vpath cache write /w/inst.cache --root /w/inst");
    return {check, [fileName](Context& context) { return RunCheck(*fileName, context); }};
}
