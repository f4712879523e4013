// Tells what changes in directories: names that come and go, files that are written. It looks every
// few seconds, or as soon as a line comes in, and ends with its input.
//
//     watcher SECONDS DIRECTORY...
//
// A listener hears which directories were read again. That says that they may have changed, no
// more: a directory that was touched a moment ago is read at every look, because its time, in whole
// seconds, would not tell a further change. What did change is told by comparing.
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <vpath/search.h>
#include <vpath_posix/posix_host.h>

namespace {

struct StampDeleter {
    void operator()(vpTimeStamp_tag* stamp) const { vpDestroyTimeStamp(stamp); }
};
struct WatchedFile {
    vpDir dir;
    std::unique_ptr<vpTimeStamp_tag, StampDeleter> stamp;
};
using Files = std::map<std::string, WatchedFile>;  // by full name

std::set<std::string> g_readAgain;  // directories, by full name

std::string NameOf(const vpDir& dir) {
    std::string name(static_cast<size_t>(vpGetDirNameLen(dir)) + 1, '\0');
    vpGetDirName(dir, name.data());
    name.pop_back();
    return name;
}

// Runs while the directory is being refreshed: takes the name down and leaves the rest for later.
void OnEvent(vpEventType event, vpDir dir) {
    if (event == vpEventDirReread || event == vpEventDirAdded) g_readAgain.insert(NameOf(dir));
}

// What the directories hold that were read again: what is new is told, or just taken down.
void CompareNames(const vpPath& path, Files* files, bool tell) {
    for (const std::string& dirName : g_readAgain) {
        const vpDir dir = vpFindDirFullName(path, dirName.c_str());
        std::set<std::string> present;
        vpSearch* search = vpCreateDirSearch(dir, nullptr, nullptr, vpReadCheckSkip);
        vpDir where;
        char file[8192];
        while (vpFindNextFile(search, &where, file) != 0) {
            present.insert(file);
            if (files->count(file) != 0) continue;
            if (tell) std::printf("+ %s\n", file);
            WatchedFile& watched = (*files)[file];
            watched.dir = where;
            watched.stamp.reset(vpCreateTimeStamp());
            vpGetTimeStampFromDir(where, file, watched.stamp.get());
        }
        if (search != nullptr) vpDestroySearch(&search);
        for (auto it = files->begin(); it != files->end();) {
            const bool gone = !vpIsDirHandleValid(it->second.dir) ||
                              (vpIsSameDir(it->second.dir, dir) && present.count(it->first) == 0);
            if (gone) std::printf("- %s\n", it->first.c_str());
            it = gone ? files->erase(it) : std::next(it);
        }
    }
    g_readAgain.clear();
}

void Look(const vpPath& path, Files* files) {
    // A directory's time does not tell that a file in it was written.
    for (auto& [file, watched] : *files) {
        if (vpHasFileChanged(watched.dir, file.c_str(), watched.stamp.get(), vpUpdateTimeStamp) &&
            vpPosixIsReadable(file.c_str())) {
            std::printf("~ %s\n", file.c_str());
        }
    }
    vpRefreshAllDirectories(path, vpRefreshIfChanged);
    CompareNames(path, files, /*tell=*/true);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: watcher SECONDS DIRECTORY...\n");
        return 2;
    }
    vpSetMessageFcns(
        nullptr, [](const char* text) { std::fprintf(stderr, "%s\n", text); }, nullptr);
    vpInstallPosixHost();
    vpPath path = vpCreatePathWithPreFrozen(0, "main", nullptr, vpCaseDefault, false);
    vpHideCWD(path, true);
    vpRegisterPathInterest(path, OnEvent);
    vpAddDirsArray(path, const_cast<const char**>(argv + 2), argc - 2, vpAddAtEnd);
    Files files;
    CompareNames(path, &files, /*tell=*/false);

    for (;;) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&input, 1, 1000 * std::atoi(argv[1]));
        char line[256];
        if (ready > 0 && read(STDIN_FILENO, line, sizeof line) <= 0) break;
        Look(path, &files);
        if (ready > 0) std::puts(".");  // whoever asked knows that this is all
        std::fflush(stdout);
    }
    files.clear();
    vpRemovePath(path);
}
