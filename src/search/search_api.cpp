// The exported calls on searches.
#include <cstring>
#include <utility>

#include <vpath/search.h>

#include "base/guard.h"
#include "dir/path_dir_item.h"
#include "path/find_directory.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "search/search.h"

namespace {

// What a caller asks of a search, but where.
struct Question {
    const char* name;
    const char** extensions;
    vpReadCheck readCheck;
    vpCaseSensitivity caseRule;
};

SearchRequest RequestIn(PathMgr& path, PathAllDirItemInfo& start, SearchScope scope,
                        const Question& question) {
    return {path,
            start,
            scope,
            question.name,
            question.extensions,
            question.readCheck,
            question.caseRule};
}

// A name with a directory part is looked for everywhere.
SearchRequest VisibleRequest(PathMgr& path, PathAllDirItemInfo& from, const Question& question) {
    const bool hasDirectory =
        question.name != nullptr && std::strchr(question.name, '/') != nullptr;
    return hasDirectory ? RequestIn(path, *path.nullDir, SearchScope::kAll, question)
                        : RequestIn(path, from, SearchScope::kVisible, question);
}

// Where code lies whose directory was looked up: in no directory when that is unknown. Null when
// the path has gone, which a message of the look-up may have caused.
PathAllDirItemInfo* PlaceOf(const PathMgr& path, PathAllDirItemInfo* found) {
    return found != nullptr ? found : path.nullDir;
}

vpSearch* OpenOnPath(const vpPath& path, SearchScope scope, const Question& question) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return nullptr;
    return Guarded<vpSearch*>(
        nullptr, [&] { return OpenSearch(RequestIn(*live, *live->nullDir, scope, question)); });
}

vpSearch* OpenVisible(const vpPath& path, PathAllDirItemInfo* (*find)(PathMgr&, const char*),
                      const char* place, const Question& question) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return nullptr;
    return Guarded<vpSearch*>(nullptr, [&]() -> vpSearch* {
        PathAllDirItemInfo* const from = PlaceOf(*live, find(*live, place));
        if (from == nullptr) return nullptr;
        return OpenSearch(VisibleRequest(*live, *from, question));
    });
}

vpSearch* OpenInDir(const vpDir& dir, SearchScope scope, const Question& question) {
    PathAllDirItemInfo* const start = LiveDir(dir);
    if (start == nullptr) return nullptr;
    return Guarded<vpSearch*>(
        nullptr, [&] { return OpenSearch(RequestIn(*start->path(), *start, scope, question)); });
}

// Runs one call of a search and hands its match to the caller.
template <class Find>
unsigned int Answer(vpSearch* search, vpDir* dirOut, char* nameOut, Find find) {
    if (search == nullptr) return 0;
    if (nameOut != nullptr) *nameOut = '\0';
    if (search->isBusy()) return HandOver(search->nothing(), dirOut, nameOut);
    search->setBusy(true);
    const vpSearch::Match match =
        Guarded(vpSearch::Match{0, nullptr}, [&] { return find(*search); });
    search->setBusy(false);
    const unsigned int result =
        HandOver(match.directory != nullptr ? match : search->nothing(), dirOut, nameOut);
    if (search->endsAfterCall()) delete search;
    return result;
}

}  // namespace

vpSearch* vpCreateAllSearchIterator(vpPath path, const char* name, const char** exts,
                                    vpReadCheck rc, vpCaseSensitivity cs) {
    return OpenOnPath(path, SearchScope::kAll, {name, exts, rc, cs});
}

vpSearch* vpCreateAllSearch(vpPath path, const char* name, const char** exts, vpReadCheck rc) {
    return vpCreateAllSearchIterator(path, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateVisibleSearchIterator(vpDir dir, const char* name, const char** exts,
                                        vpReadCheck rc, vpCaseSensitivity cs) {
    PathAllDirItemInfo* const from = LiveDir(dir);
    if (from == nullptr) return nullptr;
    return Guarded<vpSearch*>(nullptr, [&] {
        return OpenSearch(VisibleRequest(*from->path(), *from, {name, exts, rc, cs}));
    });
}

vpSearch* vpCreateVisibleSearch(vpDir dir, const char* name, const char** exts, vpReadCheck rc) {
    return vpCreateVisibleSearchIterator(dir, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreatePathOnlySearchIterator(vpPath path, vpPath, const char* name, const char** exts,
                                         vpReadCheck rc, vpCaseSensitivity cs) {
    return OpenOnPath(path, SearchScope::kPathOnly, {name, exts, rc, cs});
}

vpSearch* vpCreatePathOnlySearch(vpPath path, vpPath other, const char* name, const char** exts,
                                 vpReadCheck rc) {
    return vpCreatePathOnlySearchIterator(path, other, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreatePrivateSearchIterator(vpDir dir, const char* name, const char** exts,
                                        vpReadCheck rc, vpCaseSensitivity cs) {
    return OpenInDir(dir, SearchScope::kPrivate, {name, exts, rc, cs});
}

vpSearch* vpCreatePrivateSearch(vpDir dir, const char* name, const char** exts, vpReadCheck rc) {
    return vpCreatePrivateSearchIterator(dir, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateDirSearchIterator(vpDir dir, const char* name, const char** exts, vpReadCheck rc,
                                    vpCaseSensitivity cs) {
    return OpenInDir(dir, SearchScope::kDir, {name, exts, rc, cs});
}

vpSearch* vpCreateDirSearch(vpDir dir, const char* name, const char** exts, vpReadCheck rc) {
    return vpCreateDirSearchIterator(dir, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateDirnameSearchIterator(vpPath path, const char* dirName, const char* name,
                                        const char** exts, vpReadCheck rc, vpCaseSensitivity cs) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return nullptr;
    return Guarded<vpSearch*>(nullptr, [&]() -> vpSearch* {
        PathAllDirItemInfo* const start = FindDirectoryByName(*live, dirName);
        if (start == nullptr) return nullptr;
        return OpenSearch(RequestIn(*live, *start, SearchScope::kDir, {name, exts, rc, cs}));
    });
}

vpSearch* vpCreateDirnameSearch(vpPath path, const char* dirName, const char* name,
                                const char** exts, vpReadCheck rc) {
    return vpCreateDirnameSearchIterator(path, dirName, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateMethodSearchIterator(vpPath path, const char* name, const char** exts,
                                       vpReadCheck rc, vpCaseSensitivity cs) {
    return OpenOnPath(path, SearchScope::kMethod, {name, exts, rc, cs});
}

vpSearch* vpCreateMethodSearch(vpPath path, const char* name, const char** exts, vpReadCheck rc) {
    return vpCreateMethodSearchIterator(path, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateDirnameVisibleSearchIterator(vpPath path, const char* dirName, const char* name,
                                               const char** exts, vpReadCheck rc,
                                               vpCaseSensitivity cs) {
    return OpenVisible(path, FindDirectoryByName, dirName, {name, exts, rc, cs});
}

vpSearch* vpCreateDirnameVisibleSearch(vpPath path, const char* dirName, const char* name,
                                       const char** exts, vpReadCheck rc) {
    return vpCreateDirnameVisibleSearchIterator(path, dirName, name, exts, rc, vpCaseOfPath);
}

vpSearch* vpCreateFilenameVisibleSearchIterator(vpPath path, const char* fileName, const char* name,
                                                const char** exts, vpReadCheck rc,
                                                vpCaseSensitivity cs) {
    return OpenVisible(path, FindDirectoryOfFile, fileName, {name, exts, rc, cs});
}

vpSearch* vpCreateFilenameVisibleSearch(vpPath path, const char* fileName, const char* name,
                                        const char** exts, vpReadCheck rc) {
    return vpCreateFilenameVisibleSearchIterator(path, fileName, name, exts, rc, vpCaseOfPath);
}

unsigned int vpFindNextFile(vpSearch* search, vpDir* dirOut, char* nameOut) {
    return Answer(search, dirOut, nameOut,
                  [=](vpSearch& open) { return open.findNextFile(nameOut); });
}

unsigned int vpFindNextFileBounded(vpSearch* search, vpDir* dirOut, char* nameOut) {
    return Answer(search, dirOut, nameOut,
                  [=](vpSearch& open) { return open.findNextFileBounded(nameOut); });
}

unsigned int vpFindNextUnspecified(vpSearch* search, vpDir* dirOut, char* nameOut) {
    return Answer(search, dirOut, nameOut,
                  [=](vpSearch& open) { return open.findNextUnspecified(nameOut); });
}

unsigned int vpFindNextSubdirectory(vpSearch* search, vpDir* dirOut, char* nameOut) {
    return Answer(search, dirOut, nameOut,
                  [=](vpSearch& open) { return open.findNextSubdirectory(nameOut); });
}

unsigned int vpFindNextDir(vpSearch* search, vpDir* dirOut) {
    return Answer(search, dirOut, nullptr, [](vpSearch& open) { return open.findNextDir(); });
}

void vpDestroySearch(vpSearch** search) {
    vpSearch* const ended = std::exchange(*search, nullptr);
    if (ended == nullptr) return;
    if (ended->isBusy()) {
        ended->endAfterCall();
    } else {
        delete ended;
    }
}

unsigned int vpFindFirstFileInAll(vpPath path, const char* name, const char** exts, vpReadCheck rc,
                                  vpDir* dirOut, char* nameOut) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return 0;
    return Guarded(0U, [&] {
        return FindFirstFile(
            RequestIn(*live, *live->nullDir, SearchScope::kAll, {name, exts, rc, vpCaseOfPath}),
            dirOut, nameOut);
    });
}

unsigned int vpFindFirstFileVisibleToDir(vpDir dir, const char* name, const char** exts,
                                         vpReadCheck rc, vpDir* dirOut, char* nameOut) {
    PathAllDirItemInfo* const from = LiveDir(dir);
    if (from == nullptr) return 0;
    return Guarded(0U, [&] {
        return FindFirstFile(VisibleRequest(*from->path(), *from, {name, exts, rc, vpCaseOfPath}),
                             dirOut, nameOut);
    });
}

unsigned int vpFindFirstFileVisibleToFile(vpPath path, const char* fileName, const char* name,
                                          const char** exts, vpReadCheck rc, vpDir* dirOut,
                                          char* nameOut) {
    PathMgr* const live = LivePath(path);
    if (live == nullptr) return 0;
    return Guarded(0U, [&] {
        PathAllDirItemInfo* const from = PlaceOf(*live, FindDirectoryOfFile(*live, fileName));
        if (from == nullptr) return 0U;
        return FindFirstFile(VisibleRequest(*live, *from, {name, exts, rc, vpCaseOfPath}), dirOut,
                             nameOut);
    });
}
