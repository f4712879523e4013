#include "search/search.h"

#include <cstring>
#include <utility>

#include "base/guard.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "search/acceptance.h"
#include "search/plain_lookup.h"

namespace {

constexpr unsigned int kFoundSubdirectory = 0xFFFFFFFF;

bool NeedsReadCheck(const SearchRequest& request, const PathFileItemInfo& file) {
    return request.readCheck == vpReadCheckVerify && !file.parent->isFrozen();
}

}  // namespace

bool SearchRequest::caseSensitive() const {
    switch (caseRule) {
        case vpCaseSensitive:
        case vpCaseDefault:
            return true;
        case vpCaseOfPath:
            return path.caseSensitive;
        default:
            return false;
    }
}

vpSearch::vpSearch(const SearchRequest& request, NormalizedSearchName name, bool outlivesCall)
    : path_(&request.path),
      start_(&request.start),
      name_(std::move(name)),
      extensions_(request.extensions, outlivesCall),
      scope_(request.scope),
      verifies_(request.readCheck == vpReadCheckVerify),
      caseSensitive_(request.caseSensitive()) {
    buildIterators();
}

void vpSearch::buildIterators() {
    iteratorCount_ = 0;
    iteratorIndex_ = 0;
    PathMgr& path = *path_.get();
    if (name_.empty()) {
        iterators_[iteratorCount_++] = &everything_.emplace(path, scope_, *start_);
    } else {
        record_.reset(path.nameTable.lookup({name_.base(), name_.baseLength()}));
        if (record_.get() != nullptr) buildNameIterators(*record_.get());
    }
    state_ = iteratorCount_ != 0 ? State::kActive : State::kFinished;
}

void vpSearch::buildNameIterators(PathNameInfo& record) {
    const NameQuery query{
        *path_.get(), record, {name_.base(), name_.baseLength()}, caseSensitive_, scope_};
    PathAllDirItemInfo* directory = nullptr;
    if (scope_ == SearchScope::kDir) {
        if (start_->dirKind != vpDirTypeNone) directory = start_.get();
    } else if (scope_ == SearchScope::kVisible || scope_ == SearchScope::kPrivate) {
        directory = start_->privateDir;
    }
    if (directory != nullptr) {
        iterators_[iteratorCount_++] = &directory_.emplace(query, *directory);
    }
    if (scope_ == SearchScope::kDir || scope_ == SearchScope::kPrivate) return;
    if (scope_ == SearchScope::kVisible) {
        iterators_[iteratorCount_++] = &constructor_.emplace(query);
    }
    iterators_[iteratorCount_++] = &general_.emplace(query);
}

void vpSearch::passOver(PathItemInfo& item) {
    if (general_ && item.has(PathItemInfo::kLinked)) general_->startAfter(item);
}

// Makes the next candidate the current one; none at the end.
void vpSearch::advance(const SearchMode& mode) {
    if (state_ == State::kHoldsBack) {
        state_ = State::kActive;
        // What a re-read has dropped meanwhile is not looked at again.
        if (!current_ || current_->has(PathItemInfo::kLinked)) return;
    }
    PathItemInfo* item = nullptr;
    while (item == nullptr && iteratorIndex_ < iteratorCount_ && path_.get()->valid) {
        item = iterators_[iteratorIndex_]->next(mode);
        if (item == nullptr) ++iteratorIndex_;
    }
    current_.reset(path_.get()->valid ? item : nullptr);
}

vpSearch::Match vpSearch::find(const SearchMode& mode, char* nameOut) {
    if (state_ == State::kFinished) return nothing();
    for (advance(mode); current_; advance(mode)) {
        const unsigned int result = test(nameOut);
        if (result == 0) continue;
        lastHolder_.reset(&current_->holder());
        return {result, lastHolder_.get()};
    }
    return nothing();
}

vpSearch::Match vpSearch::findNextSubdirectory(char* nameOut) {
    while (true) {
        Match match = find(kFindSubDirs, nameOut);
        if (match.result == 0) return match;
        if (current_->isPlainSubDir()) return {kFoundSubdirectory, match.directory};
    }
}

vpSearch::Match vpSearch::findNextFileBounded(char* nameOut) {
    if (state_ != State::kActive || !current_) return nothing();
    const ItemRef<PathAllDirItemInfo> holder = lastHolder_;
    Match match = findNextFile(nameOut);
    if (match.result != 0 && match.directory == holder.get()) return match;
    state_ = State::kHoldsBack;
    return nothing();
}

vpSearch::Match vpSearch::findNextDir() {
    if (name_.extension() != nullptr && path_.get()->valid) {
        name_.joinExtension();
        buildIterators();
    }
    if (state_ == State::kFinished) return nothing();
    for (advance(kFindDirs); current_; advance(kFindDirs)) {
        PathAllDirItemInfo* const directory = current_->asDirectory();
        if (directory == nullptr || !isInReach(directory->holder())) continue;
        const FullName fullName(*directory);
        if (CarriesMark(fullName.view(), name_) &&
            LiesInDirectoryPart(fullName.view(), name_, caseSensitive_)) {
            return {1, directory};
        }
    }
    return nothing();
}

// Puts the current item to the tests; the extension result, 0 when it is rejected. The full name is
// put together once.
unsigned int vpSearch::test(char* nameOut) {
    PathItemInfo& item = *current_;
    // Extensions and readability are asked of files; a plain subdirectory is taken by its name.
    const unsigned int result =
        item.isFile() ? extensions_.accept(item.getExtension(), name_.extension(), caseSensitive_)
                      : ExtensionList::kAnyExtension;
    PathAllDirItemInfo& holder = item.holder();
    if (result == 0 || !isInReach(holder)) return 0;
    const bool verifies = verifies_ && item.isFile() && !holder.isFrozen();
    if (!verifies && name_.mark() == '\0' && name_.directory() == nullptr) {
        if (nameOut != nullptr) WriteFullName(item, nameOut);
        return result;
    }
    const FullName fullName(item);
    if (verifies && !path_.get()->io.isPathnameOk(fullName.text())) return 0;
    if (!item.has(PathItemInfo::kLinked)) return 0;  // the callback let it go
    if (!CarriesMark(fullName.view(), name_) ||
        !LiesInDirectoryPart(fullName.view(), name_, caseSensitive_)) {
        return 0;
    }
    if (nameOut != nullptr) std::memcpy(nameOut, fullName.text(), fullName.length() + 1);
    return result;
}

// What lies in a private directory or is a constructor was looked for just there.
bool vpSearch::isInReach(const PathAllDirItemInfo& holder) const {
    return !iterators_[iteratorIndex_]->reachesDeep() ||
           IsWithinReach(holder, name_.separatorCount());
}

vpSearch::Match vpSearch::nothing() const {
    PathMgr* const path = path_.get();
    return {0, path->valid ? path->nullDir : nullptr};
}

vpSearch* OpenSearch(const SearchRequest& request) {
    NormalizedSearchName name;
    if (!NormalizeSearchName(request.name, name)) return nullptr;
    return new vpSearch(request, std::move(name), true);
}

unsigned int HandOver(const vpSearch::Match& match, vpDir* dirOut, char* nameOut) {
    if (nameOut != nullptr && match.result == 0) *nameOut = '\0';
    if (dirOut != nullptr) *dirOut = match.directory;
    return match.result;
}

unsigned int FindFirstFile(const SearchRequest& request, vpDir* dirOut, char* nameOut) {
    const PlainLookup plain = LookUpPlainName(request);
    if (plain.answer == PlainAnswer::kNothing) {
        return HandOver({0, request.path.nullDir}, dirOut, nameOut);
    }
    if (plain.answer == PlainAnswer::kFile && !NeedsReadCheck(request, *plain.file)) {
        if (nameOut != nullptr) WriteFullName(*plain.file, nameOut);
        return HandOver({plain.result, plain.file->parent}, dirOut, nameOut);
    }
    const vpPath whileFinding(&request.path);
    const ItemRef<PathFileItemInfo> file(plain.file);
    if (file) {
        const FullName fullName(*file);
        bool isReadable = false;
        const bool asked =
            Attempt([&] { isReadable = request.path.io.isPathnameOk(fullName.text()); });
        if (!request.path.valid) return HandOver({0, nullptr}, dirOut, nameOut);
        if (!asked) return HandOver({0, request.path.nullDir}, dirOut, nameOut);
        if (isReadable && file->has(PathItemInfo::kLinked)) {
            if (nameOut != nullptr) std::memcpy(nameOut, fullName.text(), fullName.length() + 1);
            return HandOver({plain.result, file->parent}, dirOut, nameOut);
        }
    }
    NormalizedSearchName name;
    if (!NormalizeSearchName(request.name, name)) return 0;
    vpSearch search(request, std::move(name), false);
    if (file) search.passOver(*file);
    vpSearch::Match match{0, nullptr};
    if (!Attempt([&] { match = search.findNextFile(nameOut); })) match = search.nothing();
    return HandOver(match, dirOut, nameOut);
}
