// vpath cache write: makes the cache file of a toolbox folder, or replaces it.
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "cachefile/cache_commands.h"
#include "cachefile/dir_contents.h"
#include "files/replacement_file.h"
#include "loading/host_calls.h"
#include "loading/path_names.h"
#include "output/console.h"

namespace {

std::string CannotBeRead(int error) {
    return std::string("cannot be read: ") + std::strerror(error);
}

// Makes one cache file of the path.
class CacheMaker {
  public:
    CacheMaker(const vpPath& path, const CacheArguments& arguments)
        : path_(path), arguments_(arguments) {}

    // Notes the directories of the toolbox that are not on the path as they could not be read.
    // Throws CommandError when that says nothing of the next time: nothing is to go from the file
    // for it.
    void checkListings();

    // Leaves those directories frozen that the file is to tell of; the others are not written.
    void chooseDirectories();

    struct LeftOut {
        std::string name;
        std::string problem;
        std::string advice;
    };
    const std::vector<LeftOut>& leftOut() const { return leftOut_; }

    void write(const ReplacementFile& file) const;

    // Reads the file back and compares what a path answers from it with what this one holds.
    // Throws CommandError when that is not the same.
    void verify(const ReplacementFile& file) const;

  private:
    // Whether a cache can tell of a directory; notes what it cannot tell of.
    bool canTellOf(const vpDir& dir);

    const vpPath path_;
    const CacheArguments& arguments_;
    std::vector<vpDir> written_;
    std::vector<LeftOut> leftOut_;
};

void CacheMaker::checkListings() {
    for (const auto& [name, error] : FailedListings()) {
        const bool isToolbox = name == arguments_.toolbox.dir;
        if (!isToolbox && arguments_.toolbox.nameIn(name).empty()) continue;
        const bool lasts = error == EACCES || error == ENOENT || error == ENOTDIR;
        if (isToolbox || !lasts) {
            throw CommandError(arguments_.fileName + ": not written; cannot list " + name + ": " +
                               std::strerror(error));
        }
        if (vpGetDirType(vpFindDirFullName(path_, name.c_str())) == vpDirTypeNone) {
            leftOut_.push_back({name, CannotBeRead(error), "it is left out"});
        }
    }
}

void CacheMaker::chooseDirectories() {
    vpDir dir = vpGetNextPathDir(vpGetNullDir(path_));
    for (; vpGetDirType(dir) != vpDirTypeNone; dir = vpGetNextPathDir(dir)) {
        if (vpGetDirType(dir) == vpDirTypeCurrent) continue;
        const std::string name = FullNameOf(dir);
        const std::string nameInToolbox(arguments_.toolbox.nameIn(name));
        if (!vpIsAbsoluteDir(dir)) {
            if (nameInToolbox.empty()) continue;
            leftOut_.push_back({name, "left out, being on the path by a relative name",
                                "add it by its full name"});
        } else if (nameInToolbox.empty() || !canTellOf(dir)) {
            vpUnFreeze(dir);
        } else {
            written_.push_back(dir);
        }
    }
}

bool CacheMaker::canTellOf(const vpDir& dir) {
    const size_t before = leftOut_.size();
    const std::string name = FullNameOf(dir);
    const auto note = [&](const std::string& fullName, const ContentItem& item) {
        const auto unread = FailedListings().find(fullName);
        const std::string reason =
            unread == FailedListings().end() ? WhyNotInCache(item) : CannotBeRead(unread->second);
        if (!reason.empty()) leftOut_.push_back({fullName, reason, name + " is left out"});
    };
    // What stands before the toolbox folder is not in the file.
    note(name, {std::string(arguments_.toolbox.nameIn(name)), ContentItem::kSubdirectory});
    for (const ContentItem& item : ContentsOf(dir)) note(name + "/" + item.name, item);
    return leftOut_.size() == before;
}

void CacheMaker::write(const ReplacementFile& file) const {
    errno = 0;
    if (vpWritePathToCacheFile(path_, file.name().c_str())) return;
    throw CommandError("cannot write " + arguments_.fileName + ": " +
                       (errno != 0 ? std::strerror(errno) : "failed"));
}

void CacheMaker::verify(const ReplacementFile& file) const {
    const vpPath cached = vpCreatePathWithPreFrozen(
        0, "cached", nullptr, vpGetPathCaseSensitivity(path_) ? vpCaseSensitive : vpCaseInsensitive,
        /*suppressChangeNotify=*/true);
    UseCache(cached, arguments_.fileName, file.name(), arguments_.toolbox);
    std::unordered_set<std::string> readFromDisk;
    const ListingObservation observation(
        [&](const char* dirName, const char*, const unsigned int*) {
            readFromDisk.insert(dirName);
        });
    const auto fail = [&](const std::string& name) {
        throw CommandError(arguments_.fileName + ": not written; it would tell of " + name +
                           " otherwise than the disk");
    };
    for (const vpDir& dir : written_) {
        const std::string name = FullNameOf(dir);
        const vpDir found = vpAddDir(cached, name.c_str(), vpAddAtEnd);
        if (vpGetDirType(found) == vpDirTypeNone || !readFromDisk.empty()) fail(name);
        ForEachDifference(ContentsOf(dir), ContentsOf(found),
                          [&](const ContentItem* before, const ContentItem* now) {
                              fail(name + "/" + (before != nullptr ? before : now)->name);
                          });
        vpRemoveDir(found);
    }
    RevertFromCache(cached);
    vpRemovePath(cached);
}

ExitStatus RunWrite(const std::string& fileName, bool strict, Context& context) {
    const CacheArguments arguments = CheckCacheArguments(fileName, context);
    const vpPath path = context.loaded(arguments.toolbox.dir.c_str()).path;
    CacheMaker cache(path, arguments);
    cache.checkListings();
    cache.chooseDirectories();
    for (const auto& [name, problem, advice] : cache.leftOut()) {
        context.output().miss(name, problem, advice);
    }
    if (strict && !cache.leftOut().empty()) {
        Complain(fileName + ": not written, as --strict says; rename what was left out");
        return kExitNotFound;
    }
    ReplacementFile file(arguments.file);
    cache.write(file);
    cache.verify(file);
    file.putInPlace();
    return kExitFound;
}

}  // namespace

Command AddCacheWriteCommand(CLI::App& cache) {
    struct Options {
        std::string fileName;
        bool strict = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* write = cache.add_subcommand("write", "Make or replace the file");
    write->fallthrough();
    AddCacheFileArgument(*write, options->fileName);
    write->add_flag("--strict", options->strict, "write nothing when something must be left out");
    write->footer(
        "Writes what the directories of the path that lie under ROOT/toolbox hold (--root\n"
        "ROOT; all of them, when no option says which are on the path). Reads the new\n"
        "file back and compares it with the path before it takes the place of FILE: that\n"
        "is the old file or the new one, never a part of one. A directory that holds a\n"
        "name which the file has no way to tell, or what may not be read, is left out\n"
        "whole, and said. When a directory cannot be listed for another reason, nothing\n"
        "is written.\n"
        "Exit status: 0 written, 1 not written for --strict, 2 failed.\n"
        "Example:\n"
        "  vpath cache write /w/inst.cache --root /w/inst");
    return {write, [options](Context& context) {
                return RunWrite(options->fileName, options->strict, context);
            }};
}
