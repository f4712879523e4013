// An open search: its name, its iterators and where it stands.
//
// It moves from candidate to candidate as its iterators yield them (search/name_iterators.h says in
// what order) and tests each. What it keeps across calls is counted or registered: the path handle,
// the name record, the current item, and the cursors inside the iterators.
#pragma once

#include <optional>

#include <vpath/search.h>

#include "dir/name_record.h"
#include "search/extension_list.h"
#include "search/name_iterators.h"
#include "search/scope_iterator.h"
#include "search/search_name.h"

struct SearchRequest {
    PathMgr& path;
    PathAllDirItemInfo& start;  // the null directory for the scopes of the whole path
    SearchScope scope;
    const char* name;
    const char** extensions;
    vpReadCheck readCheck;
    vpCaseSensitivity caseRule;

    bool caseSensitive() const;
};

class vpSearch : public HkAllocated {
  public:
    // Where a match was found and what accepted it; see the exported calls. The search keeps the
    // directory until it is asked again or ends.
    struct Match {
        unsigned int result;
        PathAllDirItemInfo* directory;
    };

    // `outlivesCall`: the extension list is copied.
    vpSearch(const SearchRequest& request, NormalizedSearchName name, bool outlivesCall);

    // `nameOut` may be null; it is written only for a match.
    Match findNextFile(char* nameOut) { return find(kFindFiles, nameOut); }
    Match findNextUnspecified(char* nameOut) { return find(kFindFilesAndSubDirs, nameOut); }
    Match findNextSubdirectory(char* nameOut);
    Match findNextFileBounded(char* nameOut);
    Match findNextDir();

    // Goes on after a file of the first list that the search goes through: it and those before it
    // were refused. To be called before the first find.
    void passOver(PathItemInfo& item);

    // The answer at the end: the path's null directory.
    Match nothing() const;

    // Callbacks may call back in, with the very search that asks them: such a call finds nothing,
    // and a search ended there ends when the outer call is done.
    bool isBusy() const { return busy_; }
    void setBusy(bool busy) { busy_ = busy; }
    bool endsAfterCall() const { return endsAfterCall_; }
    void endAfterCall() { endsAfterCall_ = true; }

  private:
    enum class State : uint8_t {
        kActive,
        kHoldsBack,  // the current item was refused by a bounded call and is looked at again
        kFinished,   // nothing under the name, or nowhere to look
    };

    void buildIterators();
    void buildNameIterators(PathNameInfo& record);
    void advance(const SearchMode& mode);
    Match find(const SearchMode& mode, char* nameOut);
    unsigned int test(char* nameOut);
    bool isInReach(const PathAllDirItemInfo& holder) const;

    vpPath path_;
    ItemRef<PathAllDirItemInfo> start_;
    SearchName name_;
    ExtensionList extensions_;
    SearchScope scope_;
    bool verifies_;
    bool caseSensitive_;
    State state_ = State::kActive;
    bool busy_ = false;
    bool endsAfterCall_ = false;
    NameRecordRef record_;

    // The iterators in the order in which they are asked; those that the scope has.
    std::optional<DirectoryNameIterator> directory_;
    std::optional<ConstructorIterator> constructor_;
    std::optional<GeneralNameIterator> general_;
    std::optional<ScopeIterator> everything_;
    CandidateIterator* iterators_[3] = {};
    size_t iteratorCount_ = 0;
    size_t iteratorIndex_ = 0;

    ItemRef<PathItemInfo> current_;
    ItemRef<PathAllDirItemInfo> lastHolder_;  // of the last match
};

// The search of a request on the heap, which the caller deletes; null when the name cannot be
// normalised, which is reported.
vpSearch* OpenSearch(const SearchRequest& request);

// The first file of a search that lives for this call only, handed to the caller, whose outputs
// stay as they are when there is no search.
unsigned int FindFirstFile(const SearchRequest& request, vpDir* dirOut, char* nameOut);

// Hands a match to the caller, who may want neither directory nor name; its result. The name was
// written when there is one.
unsigned int HandOver(const vpSearch::Match& match, vpDir* dirOut, char* nameOut);
