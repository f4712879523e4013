// Search paths: creating them, filling them with directories, keeping them fresh.
//
// A path is a named, ordered list of directories. Its first slot is the current directory; the
// directories that the host adds follow in search order. What each directory holds (files, plain
// subdirectories, `private` directories, class directories `@Name`, package directories `+name`)
// is read once through the host's listing callback and kept in memory, indexed by name across the
// whole path; <vpath/search.h> answers from there.
//
//     vpSetDefaultIOFcns(list, accessibility, isReadable, isDirectory, modificationTime);
//     vpSetMessageFcns(onError, onWarning, onInfo);
//     vpPath path = vpCreatePath(0, "main");
//     vpAddDirsString(path, "/lib/a:/lib/b", vpAddAtEnd);
//     ...
//     vpRemovePath(path);
//
// Rules that hold everywhere:
// - Threads: none. The host serialises its calls; callbacks run on the calling thread and may call
//   back into the library.
// - Names are NUL-ended byte strings, separated by '/'. Folding of case is ASCII only. A directory
//   name holds at most 4096 bytes.
// - Handles (vpPath, vpDir) count: each keeps what it points at allocated. A handle whose path was
//   removed, or whose directory left its path, is dead; calls on dead and null handles answer a
//   null result and touch nothing. Some calls also print "asserted here\n" on a dead path handle;
//   each says so.
// - Look-ups that find no directory answer the path's null directory (kind 0), which is a valid
//   handle that holds no directory.
// - Failures are reported through the message functions; no exception leaves the library, not even
//   one thrown by a callback. Running out of memory is reported as "Cannot allocate memory" and is
//   fatal.
#pragma once

#include <cstddef>
#include <cstdint>

#include <vpath/export.h>

class PathMgr;
class PathAllDirItemInfo;

// ---------------------------------------------------------------------------------------------
// Handles

// Counted handle to one path. The registry keeps a live path too: dropping the last handle does not
// remove it. A removed path stays allocated until its last handle goes.
class VP_EXPORT vpPath {
  public:
    vpPath();                                    // null
    vpPath(PathMgr* path);                       // NOLINT: null when `path` is null or was removed
    vpPath(const vpPath& other);                 // to the same path
    ~vpPath();                                   // lets it go
    vpPath& operator=(const vpPath& other);      // as copy
    vpPath& operator=(PathMgr* path);            // does not ask whether the path is live
    void copy(const vpPath& other);              // lets its own target go, then takes the other's
    bool operator==(const PathMgr* path) const;  // the same path
    bool operator==(const vpPath& other) const;  // the same path, or both null
    operator const PathMgr*() const;             // NOLINT: the raw pointer, null for a null handle
    PathMgr* get() const { return target_; }     // the same

  private:
    PathMgr* target_;
};

// Counted handle to one directory: on a path, or a special directory (private, class, package)
// inside one. The directory keeps its name for as long as a handle holds it.
class VP_EXPORT vpDir {
  public:
    vpDir();                                    // null
    vpDir(PathAllDirItemInfo* dir);             // NOLINT: null when `dir` is
    vpDir(const vpDir& other);                  // to the same directory
    ~vpDir();                                   // lets it go
    vpDir& operator=(const vpDir& other);       // as copy
    vpDir& operator=(PathAllDirItemInfo* dir);  // null when `dir` is
    void copy(const vpDir& other);              // lets its own target go, then takes the other's
    PathAllDirItemInfo* get() const { return target_; }  // the raw pointer, null for a null handle

  private:
    PathAllDirItemInfo* target_;
};

// Constants that old hosts look for in a class.
class VP_EXPORT VPathConstants {
  public:
    static const uint16_t
        U16_OOPSENTINEL;  // the 16-bit code of '@', which begins a class directory's name
};

// ---------------------------------------------------------------------------------------------
// Enumerations. All are over int: every value that a caller passes is a valid one.

// What becomes of a directory that a path is to take.
enum vpDirAccessibility : int {
    vpDirInaccessible = 0,      // like every value that is not named here: an access failure
    vpDirAccessible = 1,        // it is taken
    vpDirAccessUnknown = 2,     // an access failure, too
    vpDirPermissionDenied = 3,  // refused, and the message says why
    vpDirNonexistent = 4,       // the same; nonexistent or not a directory
};

// How names compare.
enum vpCaseSensitivity : int {
    vpCaseSensitive = 0,    // byte for byte
    vpCaseInsensitive = 1,  // ASCII letters folded
    vpCaseDefault = 2,      // the platform's rule: case-sensitive
    vpCaseOfPath = 3,       // searches only: as set for the path
};

// Where directories are added to a path.
enum vpDirAddLocn : int {
    vpAddAtBeginning = 0,  // just after the current directory
    vpAddAtEnd = 1,        // like any other value
};

// What listeners hear of, and the directory that comes with it.
enum vpEventType : int {
    vpEventDirReread = 0,       // the directory that was read again
    vpEventReplaceBegin = 1,    // null directory; vpReplacePath has touched nothing yet
    vpEventCWDChangeBegin = 2,  // null directory; the new one is valid, the old one in place
    vpEventDirAdded = 5,        // the new directory: on the path, or special and just read
    vpEventReplaceEnd = 6,      // null directory
    vpEventCWDChangeEnd = 7,    // null directory
    vpEventPathRemoved = 9,     // null directory; the path is still live
};

// What a directory is, as vpGetDirType answers.
enum vpDirType : int {
    vpDirTypeNone = 0,     // a null handle, or the null directory
    vpDirTypeCurrent = 1,  // the directory in the current-directory slot
    vpDirTypePath = 2,     // a directory that was added to a path
    vpDirTypePackage = 3,  // `+name`
    vpDirTypeClass = 4,    // `@Name`
    vpDirTypePrivate = 5,  // `private`
};

// How hard a refresh looks. A directory already marked changed is read again under every one.
enum vpDirRefreshType : int {  // 0 is taken as 1
    vpRefreshIfChanged = 1,  // frozen: left alone with all beneath it; else read if the time moved
    vpRefreshUnlessFrozen = 2,  // frozen: left alone, what is beneath it visited; else read
    vpRefreshAlways = 3,        // read, frozen or not
    vpRefreshPending = 4,       // and above: nothing that is not marked changed is read
};

// What becomes of a stamp that is compared.
enum vpTimeStampUpdate : int {
    vpUpdateTimeStamp = 0,  // store the new time in the caller's stamp
    vpKeepTimeStamp = 1,    // like any other value: only report
};

// Kept for old hosts: there is one policy.
enum vpRefreshPolicy : int {
    vpRefreshPolicyDefault = 1,  // refresh as asked
};

// Kept for old hosts.
enum vpWarnInvalidCNH : int {
    vpWarnInvalidCNHOff = 0,  // no effect
    vpWarnInvalidCNHOn = 1,   // no effect
};

// ---------------------------------------------------------------------------------------------
// Host hooks

// Lists a directory, called once for each time that its contents are read. Answers the entries'
// names one after another, each ended by a NUL, the last followed by one more NUL; null means an
// empty directory. May store through the third argument one word per name, in the same order:
// 0x4000 directory, 0x8000 file, 0x8001 file that is a class definition, 0x8002 file that is not
// one, 0 unknown. Both blocks come from hkMalloc and belong to the library after the call. Without
// words plain subdirectories cannot be told from files.
using vpListingFcn = char* (*)(vpPath, const char*, unsigned int**);

// Called once for each directory that is about to be added to a path or to become the current one.
using vpAccessibilityFcn = vpDirAccessibility (*)(vpPath, const char*);

// Whether a file may be used; asked by searches that verify, never inside frozen directories.
using vpPathnameOkFcn = bool (*)(const char*);

// Whether a name is a directory; asked for entries named like special directories, and once for
// each file before a search first yields it, unless the listing's word said so.
using vpIsDirectoryFcn = bool (*)(vpPath, const char*);

// Modification time in whole seconds; 0 when there is none.
using vpTimeStampFcn = long (*)(vpPath, const char*);

// Changes the process's current directory; 0 on success, as chdir.
using vpChangeDirFcn = int (*)(const char*);

// Receives one finished line without a line feed.
using vpMessageFcn = void (*)(const char*);

// Hears of an event of a path; vpRegisterPathInterest says what it finds and may do.
using vpListenerFcn = void (*)(vpEventType, vpDir);

// The message functions of a moment; null where a channel is silent.
struct vpEnvironmentFcns {
    vpMessageFcn error;    // what failed
    vpMessageFcn warning;  // what was refused or cut
    vpMessageFcn info;     // what is worth knowing
};

// Installs the process-wide callbacks, from which each path takes its own at creation. A null among
// the first five leaves that one as it was; the change-directory callback is always rewritten, by
// the C library's chdir when it is null (vpSetDefaultIOFcns gives null). True when the first five
// are all there: before that no path can be created. Paths that exist keep what they have.
VP_EXPORT bool vpSetDefaultIOFcns(vpListingFcn listing, vpAccessibilityFcn accessibility,
                                  vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                                  vpTimeStampFcn timeStamp);
VP_EXPORT bool vpSetDefaultIOFcnsNew(vpListingFcn listing, vpAccessibilityFcn accessibility,
                                     vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                                     vpTimeStampFcn timeStamp, vpChangeDirFcn changeDir);

// Gives every registered path the process-wide callbacks of this moment. Cost: the paths.
VP_EXPORT void vpUpdatePathArrayDefaultIOFcns();

// Set one path's callbacks; each null takes the process-wide one, not the path's previous one
// (vpSetIOFcns: the change-directory callback too). Always true. "asserted here\n" on a dead
// handle.
VP_EXPORT bool vpSetIOFcns(vpPath path, vpListingFcn listing, vpAccessibilityFcn accessibility,
                           vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                           vpTimeStampFcn timeStamp);
VP_EXPORT bool vpSetIOFcnsNew(vpPath path, vpListingFcn listing, vpAccessibilityFcn accessibility,
                              vpPathnameOkFcn isPathnameOk, vpIsDirectoryFcn isDirectory,
                              vpTimeStampFcn timeStamp, vpChangeDirFcn changeDir);

// Replaces all three message functions; null silences a channel. A warning's argument of 4353
// characters or more arrives as its first 4348 and "...".
VP_EXPORT void vpSetMessageFcns(vpMessageFcn error, vpMessageFcn warning, vpMessageFcn info);

// The message functions of this moment in a new record, null when there is no memory for it. The
// caller gives it back to vpReturnEnvironmentFcns, which installs them again and frees the record.
VP_EXPORT vpEnvironmentFcns* vpGetEnvironmentFcns();
VP_EXPORT void vpReturnEnvironmentFcns(vpEnvironmentFcns* saved);

// Kept for old hosts; no effect.
VP_EXPORT void vpDiagnostics(int level);

// ---------------------------------------------------------------------------------------------
// Paths and their registry

// vpCreatePathWithPreFrozen(0, name, "", vpCaseDefault, false). With the root "" every directory
// that is added counts as a toolbox directory and is read frozen.
VP_EXPORT vpPath vpCreatePath(int unused, const char* name);

// Creates and registers a path whose slot 0 is the process's current directory. `name` (null is
// the empty name) must not be that of a live path. Directories whose full names begin with
// `preFrozen` are frozen when they are read; null freezes none. `caseRule`: only vpCaseInsensitive
// makes names on the path compare without regard to case. `suppressChangeNotify`: see
// vpSuppressChangeNotify. The first path created while no other is live owns the process's current
// directory. Null handle on failure, with the error "Cannot construct a Path until all default I/O
// functions have been set" or "Duplicate path name %s specified, cannot construct path".
VP_EXPORT vpPath vpCreatePathWithPreFrozen(int unused, const char* name, const char* preFrozen,
                                           vpCaseSensitivity caseRule, bool suppressChangeNotify);

// The live path of that exact name, or a null handle.
VP_EXPORT vpPath vpLookupPath(const char* name);

// The path's own copy of its name; null after removal.
VP_EXPORT const char* vpLookupPathname(vpPath path);

// Tells the listeners (vpEventPathRemoved), then unregisters and empties the path. Handles to it
// and to its directories stay safe to hold and answer as dead. No effect on a dead handle.
VP_EXPORT void vpRemovePath(vpPath path);

// Removes every path. True when there was none (so kept for the hosts that rely on it).
VP_EXPORT bool vpTerminate();

// The case rule of a path, for names compared from now on.
VP_EXPORT void vpSetCaseSensitivity(vpPath path, bool caseSensitive);
VP_EXPORT bool vpGetPathCaseSensitivity(vpPath path);  // false on a dead handle

// A process-wide slot for the host's own use: the pointer is kept as given and never followed.
extern "C" {
VP_EXPORT const char* vpGetCurrentPathname(void);
VP_EXPORT void vpSetCurrentPathname(const char* name);
VP_EXPORT void vpSetDefaultPathname(const char* name);  // the same slot
VP_EXPORT bool vpCurrentPathExists(void);               // the slot is not null
}

// ---------------------------------------------------------------------------------------------
// The directories of a path. Every call here prints "asserted here\n" on a dead path handle.

// Adds one directory and reads it. A relative name stays relative and follows the current
// directory. The null directory when the name is null, empty or unusable, or when the directory is
// refused, with a warning: "Method directories not allowed in VESPRA path: %s", "Package ...",
// "Private ...", "Directory permission denied: %s", "Name is nonexistent or not a directory: %s",
// "Directory access failure: %s", "Duplicate directory name: %s". Cost: its listing.
VP_EXPORT vpDir vpAddDir(vpPath path, const char* name, vpDirAddLocn where);

// Adds each element of `list` (separated by ':' or ';'), or each of `count` names, in the order
// written. Answers what became of the one that comes first on the path: the first element when
// adding at the end, the last when adding at the beginning. An element of more than 4096
// characters stops with the warning "Directory name too long: %s".
VP_EXPORT vpDir vpAddDirsString(vpPath path, const char* list, vpDirAddLocn where);
VP_EXPORT vpDir vpAddDirsArray(vpPath path, const char** names, int count, vpDirAddLocn where);

// Takes a directory (kind 2) off its path. Its handles answer as dead; adding the same name again
// revives them, for which the directory itself, without what it held, is kept until the path is
// removed. Ignored for any other directory. Prints nothing. Cost: what the directory holds.
VP_EXPORT void vpRemoveDir(vpDir dir);

// Makes the path's directories equal to `list`, in its order; those that stay are not read again.
// True when every non-empty element stands on the path afterwards. Directories that a stopped
// parse did not reach are kept. Cost: the elements, and the listings of the new ones.
VP_EXPORT bool vpReplacePath(vpPath path, const char* list);

// Number of directories, the current one included.
VP_EXPORT int vpGetNumPathDirs(vpPath path);

// The known directory of that full name, or the null directory. A last component "private", "@..."
// or "+..." is looked for among the special directories first; other names among the added
// directories and then the current one. Cost: one look-up per special component.
VP_EXPORT vpDir vpFindDirFullName(vpPath path, const char* name);

// The null directory of a path: what a look-up that finds nothing answers.
VP_EXPORT vpDir vpGetNullDir(vpPath path);

// Whether an entry that a directory on the path holds, and of which the listing did not say what
// it is, is a directory now. Asks the is-directory callback. Cost: the parent directory's files.
VP_EXPORT bool vpCheckIsDir(vpPath path, const char* name);

// No effect; answers false.
VP_EXPORT bool vpSetFreezeAllAddedDirectories(vpPath path, bool freeze);

// Walks a path in search order: from the null directory to the current directory, then one after
// another; the null directory at the end, and from a directory that is not on the path.
VP_EXPORT vpDir vpGetNextPathDir(vpDir dir);

// `b` when it comes before `a` on the path, else `a`.
VP_EXPORT vpDir vpSelectDirFirstOnPath(vpDir a, vpDir b);

// Takes every directory after the current one that is no directory any more off the path.
VP_EXPORT void vpDeleteNonExistentDirectories(vpPath path);

// ---------------------------------------------------------------------------------------------
// The current directory

// Makes `name` the path's current directory; on the path that owns the process's directory, the
// process's too, through the change-directory callback. Null on success, else a constant text:
// "No directory specified", "Directory name too long", "Directory permission denied", "Name is
// nonexistent or not a directory", "Directory access failure", "Failed to change current
// directory"; then all is as it was. Relative directories of the path are read again. Null and no
// effect on a dead handle.
VP_EXPORT const char* vpSetCWDName(vpPath path, const char* name);

// The current directory; the null directory when there is none.
VP_EXPORT vpDir vpGetCWD(vpPath path);

// Copies the current directory's full name into `buf`, cut to `size` - 1 characters. `buf`, or null
// when there is no current directory or `size` is 0.
VP_EXPORT char* vpGetCWDName(vpPath path, char* buf, unsigned int size);

// Hides what the current directory holds, or lets the next refresh read it again.
VP_EXPORT void vpHideCWD(vpPath path, bool hide);

// Whether the current directory's name is also that of an added directory; and whether `dir` (kind
// 2) has the name of its path's current directory.
VP_EXPORT bool vpIsCWDOnPath(vpPath path);
VP_EXPORT bool vpIsPathDirAlsoCWD(const vpDir& dir);

// ---------------------------------------------------------------------------------------------
// Reading a directory through its handle

VP_EXPORT bool vpIsDirHandleValid(const vpDir& dir);  // alive, and its path live
VP_EXPORT vpPath vpGetPathOfDir(const vpDir& dir);    // a null handle for a null directory handle
VP_EXPORT bool vpIsSameDir(vpDir a, vpDir b);         // one and the same item

// Copies the full name into `buf`, which has room for it ("" for the null directory); `buf`.
VP_EXPORT char* vpGetDirName(const vpDir& dir, char* buf);
VP_EXPORT int vpGetDirNameLen(const vpDir& dir);  // bytes, without the NUL

// The full name joined with `sub` in `buf`, which has room for it; `buf`.
VP_EXPORT char* vpConcatDirName(const vpDir& dir, const char* sub, char* buf);

// The last component, without the mark of a class or package directory. Owned by the directory.
VP_EXPORT const char* vpGetBaseDirName(const vpDir& dir);

VP_EXPORT int vpGetDirType(const vpDir& dir);  // a vpDirType

// The directory of the path to which a directory belongs: itself, or the one above it.
VP_EXPORT vpDir vpGetPathDir(const vpDir& dir);
VP_EXPORT bool vpIsAbsoluteDir(const vpDir& dir);   // false only beneath a relative directory
VP_EXPORT vpDir vpGetPrivateDir(const vpDir& dir);  // or the null directory
VP_EXPORT vpDir vpGetParentDir(const vpDir& dir);   // the null directory for one on the path

// Whether the last component of `name` is "private", in any case.
VP_EXPORT bool vpIsPrivateDirName(const char* name);

// ---------------------------------------------------------------------------------------------
// Listeners

// What cancels a registration: the path, and the listener's place in its list.
struct vpRegisteredInterest {
    vpPath path;    // null when nothing was registered
    int32_t index;  // from 0
};

// Calls `listener` for each event of the path, in order of registration, on the thread that caused
// it, before the call that caused it returns.
//
// What a listener finds:
// - vpEventDirAdded: the directory has its place and its contents, and searches see both. Special
//   directories come before the directory that holds them, which is then still being read.
// - vpEventDirReread: the directory holds what it was found to hold; what has gone is gone.
// - the Begin events: nothing is touched yet. The End events: everything is done.
// - vpEventPathRemoved: path and directories are whole, and dead once the last listener returns.
//
// What it may do: call anything, also what changes the path under way. It may search, register and
// cancel listeners (itself too; entries are read as they are when reached, and those added during a
// walk wait for the next event), mark, freeze, refresh, add and remove directories, change the
// current directory, replace or remove the path. The call that raised the event goes on with what
// is then there and may end early; a directory that is being read is not read again inside of that
// but marked changed, and the next refresh reads it. Events inside of events nest. The directory's
// handle is good for as long as it is held, though the directory may leave the path. A listener
// should not throw: those after it are then left out, and the call under way may be broken off.
//
// On a dead handle nothing is stored and the answer's path is null.
VP_EXPORT vpRegisteredInterest vpRegisterPathInterest(vpPath path, vpListenerFcn listener);

// Harmless when repeated and for interests that were never given. A later registration takes the
// first free place.
VP_EXPORT void vpCancelPathInterest(vpRegisteredInterest interest);

// Silences events 0 and the event 5 of special directories; nothing else.
VP_EXPORT void vpSuppressChangeNotify(vpPath path, bool suppress);

// While on, each directory read again is announced on the information channel: "%s reloaded.".
// Answers the previous setting.
VP_EXPORT bool vpSetDirectoryReloadMessages(vpPath path, bool on);

// Kept for old hosts; no effect; 0.
VP_EXPORT int vpSetNotificationHandleWarnings(vpPath path, vpWarnInvalidCNH warn);

// ---------------------------------------------------------------------------------------------
// Time stamps, change marks, refresh. Times are whole seconds.

// When a file was written, as it was seen.
struct vpTimeStamp_tag {
    int64_t time;         // -1: no stamp
    uint64_t generation;  // the directory's count of changes at that moment; 0: none
};

// A stamp of the caller's, made and ended, copied and compared.
VP_EXPORT vpTimeStamp_tag* vpCreateTimeStamp();  // (-1, 0); null when there is no memory
VP_EXPORT void vpDestroyTimeStamp(vpTimeStamp_tag* stamp);
VP_EXPORT void vpCopyTimeStamp(vpTimeStamp_tag* to, vpTimeStamp_tag* from);
VP_EXPORT bool vpIsFileTimeStampDifferent(vpTimeStamp_tag* a, vpTimeStamp_tag* b);  // times alone

// Asks the host for the time of `fileName` (passed on as given). False, with the stamp (-1, 0),
// when `dir` is frozen or the host answers 0; false and the stamp untouched for an empty or dead
// handle. The null directory is never frozen, and its count is 0.
VP_EXPORT bool vpGetTimeStampFromDir(vpDir dir, const char* fileName, vpTimeStamp_tag* stamp);
// The same, with the directory that the name's directory part says; false when that is unknown.
VP_EXPORT bool vpGetTimeStamp(vpPath path, const char* fileName, vpTimeStamp_tag* stamp);

// Whether the file's time differs from the stamp's; never in a frozen directory.
VP_EXPORT bool vpHasFileChanged(vpDir dir, const char* fileName, vpTimeStamp_tag* stamp,
                                vpTimeStampUpdate update);

// Frozen directories are never tested for changes. vpFreeze and vpUnFreeze act on the directory and
// all beneath it; the current directory cannot be frozen.
VP_EXPORT bool vpIsFrozen(vpDir dir);
VP_EXPORT void vpFreeze(vpDir dir);
VP_EXPORT void vpUnFreeze(vpDir dir);

// Mark a directory changed: the next refresh reads it again. Frozen and never-read directories keep
// their state. By name, an unknown special directory marks the directory above it. Answers whether
// it was waiting to be tested (vpChangedUnknownDir).
VP_EXPORT bool vpSetDirChanged(vpDir dir);
VP_EXPORT bool vpSetDirChanged(vpPath path, const char* dirFullName);

// The same for the directory part of a file name, which is answered; the null directory when it is
// unknown or the name is null.
VP_EXPORT vpDir vpSetFullnameChanged(vpPath path, const char* fileFullName);

// Mark every directory changed; mark every directory to be tested at the next refresh; refresh
// every directory in path order. "asserted here\n" on a dead handle.
VP_EXPORT void vpSetAllChanged(vpPath path);
VP_EXPORT void vpChangedUnknownDir(vpPath path);
VP_EXPORT void vpRefreshAllDirectories(vpPath path, vpDirRefreshType type);

// Refreshes a directory and the special directories beneath it. From inside the reading of the same
// directory it only marks it changed. Cost: a time-stamp call per directory tested, a listing per
// directory read.
VP_EXPORT void vpRefreshDirectory(vpDir dir, vpDirRefreshType type);

// Answer 1 and store nothing.
VP_EXPORT vpRefreshPolicy vpNonNotifiedRemoteCWDRefreshPolicy(vpPath path, vpRefreshPolicy policy);
VP_EXPORT vpRefreshPolicy vpNonNotifiedRemotePathRefreshPolicy(vpPath path, vpRefreshPolicy policy);

// ---------------------------------------------------------------------------------------------
// Toolbox cache: what the frozen directories under an installation's toolbox folder hold, in a text
// file (docs/cache-format.md). A path in cache mode answers what a directory holds, whether a name
// is a directory, whether it is accessible and when it changed from that file, and asks the
// process-wide callbacks what the file does not know.
//
//     vpPath path = vpCreatePathWithPreFrozen(0, "main", "/inst/toolbox", vpCaseDefault, false);
//     vpUseToolboxCache(path, "/inst/toolbox.cache", "/inst", false);
//     vpAddDirsString(path, "/inst/toolbox/alpha:/inst/toolbox/beta", vpAddAtEnd);
//
// There is one cache for the process. It stays until vpRevertFromToolboxCache, whatever becomes of
// its path. In cache mode
// - names are looked up under `rootDir` + "/toolbox/", in the case rule of the path;
// - a name under that prefix whose last component has a '.' is no directory, without a look;
// - "@..." and "private" (in any case) are directories everywhere;
// - the time of every directory, and of every name in one, is 0: nothing is found changed.

// Writes the frozen directories of the path that lie under its root (`preFrozen`), in path order.
// A name is written from the second character behind the root on, whatever the first is. Left out
// are the root itself and every directory that holds, at any depth, a name with '"', a backslash, a
// line feed or the byte 0xFF, or of more than 4352 bytes beneath the root: those are asked of the
// file system. False when the file could not be written whole (a part of it may then be there), on
// a dead handle, and for a null name or root. Cost: what the directories hold.
VP_EXPORT bool vpWritePathToCacheFile(vpPath path, const char* fileName);

// Loads a cache file and puts the path into cache mode: its callbacks become those that answer from
// the cache, isPathnameOk and changeDir the process-wide ones. On failure the console says "Error
// occurred loading: %s\nCache file ignored.\n" after what is wrong with the file, and path and
// cache, one in use included, are as they were; the statistics begin anew. A load that succeeds
// replaces the cache. A prefix of more than 4096 bytes, a
// dead handle and null names are failures. `verbose`: tell the duration of the load, and every
// directory under the prefix that the cache does not know. Cost: the file.
VP_EXPORT void vpUseToolboxCache(vpPath path, const char* cacheFile, const char* rootDir,
                                 bool verbose);

// Whether a cache is in use.
VP_EXPORT bool vpInToolboxCacheMode();

// Ends cache mode: gives the path the process-wide callbacks and frees the cache. Other paths that
// were in cache mode ask the process-wide callbacks from then on. "asserted here\n" on a dead
// handle.
VP_EXPORT void vpRevertFromToolboxCache(vpPath path);

// From now on every vpUseToolboxCache is ignored. A cache in use stays.
VP_EXPORT void vpDisableToolboxCache();

// Tell on the console how loads go, and at the end what look-ups have cost; and every look-up too.
VP_EXPORT void vpEnableToolboxCacheDiagnosticStatusReport(bool on);
VP_EXPORT void vpEnableToolboxCacheDiagnosticTrace(bool on);

// ---------------------------------------------------------------------------------------------
// Class files: a class is defined by a file `Name.v` or `Name.p` whose text declares it, or by the
// file of its own name in a class directory `@Name`. `exts` (ended by null) lists the extensions
// that count; of several files in one directory the one whose extension stands last in it is
// preferred.

// Whether the file of that full name declares a class. Called once for each file with the extension
// v or p of which its first listing did not say; what is known is forgotten when the directory, if
// it is no private one, is read again.
using vpIsClassFcn = bool (*)(const char*);
VP_EXPORT void vpSetIsClassFcn(vpIsClassFcn isClass);  // null removes it: undecided files are none

// Whether a file, given by its full name, defines a class. Cost: the files of its directory.
VP_EXPORT bool vpIsFileClassdef(vpPath path, const char* fileName);

// Finds the file that defines `className` ("Name" or "pkg.sub.Name"): 1 or 0. Of a plain file and a
// class directory's, the one earlier on the path; in one directory the plain file.
VP_EXPORT int vpDoesClassFileExist(vpPath path, const char* className, const char** exts);

// The same; on success writes the file's full name, cut to `dstSize` - 1 characters, into `dst`. A
// relative one is completed, and left empty when the file is not there any more.
VP_EXPORT bool vpGetClassFile(vpPath path, const char* className, char* dst, int dstSize,
                              const char** exts);

// ---------------------------------------------------------------------------------------------
// The library itself

extern "C" {
VP_EXPORT extern const char* const libvpath_version;     // "major.minor.patch"
VP_EXPORT extern const char* const libvpath_build_date;  // "Mmm dd yyyy"
}
