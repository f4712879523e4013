// A path: its directories, its name table, its callbacks, its listeners, its settings.
//
// Who keeps a path allocated: its vpPath handles (`refCount`) and, while it is live (`valid`), the
// registry. A removed path is empty and goes with its last handle.
#pragma once

#include <vpath/path.h>

#include "base/memory.h"
#include "dir/cursors.h"
#include "dir/name_table.h"
#include "path/current_directory.h"
#include "path/host_hooks.h"

class NullDirItemInfo;

class PathMgr : public HkAllocated {
  public:
    // Under which a path works; see vpCreatePathWithPreFrozen.
    struct Settings {
        const char* name;
        const char* preFrozenRoot;
        bool caseSensitive;
        bool suppressChangeNotify;
        bool ownsProcessCwd;
    };

    explicit PathMgr(const Settings& settings);
    ~PathMgr();
    PathMgr(const PathMgr&) = delete;
    PathMgr& operator=(const PathMgr&) = delete;

    // Handles.
    void acquire() {
        if (!dying) ++refCount;
    }
    void drop();

    // Unlinks and lets go of every directory: the second half of removal.
    void empty();

    // Tells the listeners; nothing on a path that is not live. `dir` null: the null directory.
    void raiseEvent(vpEventType event, PathAllDirItemInfo* dir = nullptr);

    // Calls into the host.
    char* listDirectory(const char* fullName, unsigned int** words);
    vpDirAccessibility accessibility(const char* fullName);
    bool isDirectory(const char* fullName);
    int64_t modificationTime(const char* fullName);

    // The epoch under which name lists count as ordered; see dir/name_list.h.
    uint32_t orderEpoch() { return contents.directories.epoch(); }

    uint32_t refCount = 0;
    bool valid = true;
    bool dying = false;
    bool removing = false;
    bool caseSensitive;
    bool reloadMessages = false;
    bool ownsProcessCwd;
    bool freezeAllAdded = false;
    bool hideCwd = false;
    bool suppressChangeNotify;

    CursorList cursors;  // before everything that holds items: it outlives them
    NameTable nameTable;
    NullDirItemInfo* nullDir = nullptr;
    DynamicPathInfo contents;
    IOFunctions io;
    HkBlock<char> name;
    HkBlock<char> preFrozenRoot;
    HkVector<vpListenerFcn> listeners;  // a cancelled one leaves a null
    size_t cancelledListeners = 0;      // how many nulls there are
};
