// Searches: where a name lies, in order of precedence.
//
//     const char* exts[] = {"v", "p", nullptr};
//     vpSearch* search = vpCreateVisibleSearch(dir, "foo", exts, vpReadCheckVerify);
//     vpDir where;
//     char file[8192];
//     while (vpFindNextFile(search, &where, file) != 0) std::puts(file);
//     vpDestroySearch(&search);
//
// A search never reads a directory: it walks what the path holds in memory, and asks the host only
// whether a file is one (once per file, when the listing did not say) and, with vpReadCheckVerify,
// whether it is readable.
//
// Order of precedence. Matches come category by category; within a category in path order, the
// current directory first:
//
// From a directory (visible search):
// 1. files in its private directory
// 2. files in a class directory of the same name (the constructor @name/name)
// 3. files lying directly in directories of the path
//
// Over the path (all search):
// 1. files lying directly in directories of the path
// 2. files in class and package directories
// 3. files in private directories
//
// A plain name reaches only as deep as it spells out: "+pkg/name", "@cls/name" and "private/name"
// reach into those. A name with a directory part is always searched over the path.
//
// `name`: a file name, possibly with a directory part, a leading '@' or '+', and an extension of
// its own; null or empty means everything in the scope, in path order. `exts`: extensions that a
// match may have, ended by null, with or without a leading '.'; "" stands for the name's own
// extension or none; null, or an empty list, accepts any. The list filters matches; it never
// reorders them.
//
// An open search survives whatever happens to its path: directories refreshed, removed, replaced,
// the path itself removed. It never yields what is gone.
#pragma once

#include <vpath/export.h>
#include <vpath/path.h>

// An open search: made by one of the calls below, ended by vpDestroySearch.
class vpSearch;

// Whether a search asks the readability callback.
enum vpReadCheck : int {
    vpReadCheckVerify = 0,  // yield a file only when the host says that it is readable
    vpReadCheckSkip = 1,    // like any other value: do not ask
};

// ---------------------------------------------------------------------------------------------
// Creating. Each answers a new search, which the caller ends with vpDestroySearch, or null: on a
// dead handle, and when the name cannot be normalised (a warning says why). Cost: one look-up.
// Calls whose names end in Iterator take the case rule; the others use the path's.

// Everywhere on the path.
VP_EXPORT vpSearch* vpCreateAllSearch(vpPath path, const char* name, const char** exts,
                                      vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateAllSearchIterator(vpPath path, const char* name, const char** exts,
                                              vpReadCheck rc, vpCaseSensitivity cs);

// What code in `dir` sees. With a directory part in `name`: everywhere on its path.
VP_EXPORT vpSearch* vpCreateVisibleSearch(vpDir dir, const char* name, const char** exts,
                                          vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateVisibleSearchIterator(vpDir dir, const char* name, const char** exts,
                                                  vpReadCheck rc, vpCaseSensitivity cs);

// The path without what lies directly in the current directory. `other` is not consulted.
VP_EXPORT vpSearch* vpCreatePathOnlySearch(vpPath path, vpPath other, const char* name,
                                           const char** exts, vpReadCheck rc);
VP_EXPORT vpSearch* vpCreatePathOnlySearchIterator(vpPath path, vpPath other, const char* name,
                                                   const char** exts, vpReadCheck rc,
                                                   vpCaseSensitivity cs);

// The private directory of `dir` alone.
VP_EXPORT vpSearch* vpCreatePrivateSearch(vpDir dir, const char* name, const char** exts,
                                          vpReadCheck rc);
VP_EXPORT vpSearch* vpCreatePrivateSearchIterator(vpDir dir, const char* name, const char** exts,
                                                  vpReadCheck rc, vpCaseSensitivity cs);

// `dir` alone; and the directory of that full name, null when the path does not know it.
VP_EXPORT vpSearch* vpCreateDirSearch(vpDir dir, const char* name, const char** exts,
                                      vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateDirSearchIterator(vpDir dir, const char* name, const char** exts,
                                              vpReadCheck rc, vpCaseSensitivity cs);
VP_EXPORT vpSearch* vpCreateDirnameSearch(vpPath path, const char* dirName, const char* name,
                                          const char** exts, vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateDirnameSearchIterator(vpPath path, const char* dirName,
                                                  const char* name, const char** exts,
                                                  vpReadCheck rc, vpCaseSensitivity cs);

// Class directories across the path.
VP_EXPORT vpSearch* vpCreateMethodSearch(vpPath path, const char* name, const char** exts,
                                         vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateMethodSearchIterator(vpPath path, const char* name, const char** exts,
                                                 vpReadCheck rc, vpCaseSensitivity cs);

// What code in the directory of that full name sees (null, empty and unknown names: in none), and
// what code in the file of that full name sees.
VP_EXPORT vpSearch* vpCreateDirnameVisibleSearch(vpPath path, const char* dirName, const char* name,
                                                 const char** exts, vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateDirnameVisibleSearchIterator(vpPath path, const char* dirName,
                                                         const char* name, const char** exts,
                                                         vpReadCheck rc, vpCaseSensitivity cs);
VP_EXPORT vpSearch* vpCreateFilenameVisibleSearch(vpPath path, const char* fileName,
                                                  const char* name, const char** exts,
                                                  vpReadCheck rc);
VP_EXPORT vpSearch* vpCreateFilenameVisibleSearchIterator(vpPath path, const char* fileName,
                                                          const char* name, const char** exts,
                                                          vpReadCheck rc, vpCaseSensitivity cs);

// ---------------------------------------------------------------------------------------------
// Retrieving. The kinds of call may be mixed: each goes on from where the search stands. `dirOut`
// may be null and otherwise receives the directory that holds the match, the path's null directory
// at the end. `nameOut` may be null and otherwise has room for a full pathname, which is copied
// whole; it is emptied first. On a null search: 0, and nothing is touched.

// The next file: the position in `exts`, from 1, of the extension that accepted it, or 0xFFFFFFFF
// without a list; 0 at the end.
VP_EXPORT unsigned int vpFindNextFile(vpSearch* search, vpDir* dirOut, char* nameOut);

// The next file when it lies in the same directory as the last match; otherwise 0, and the next
// vpFindNextFile yields it. `dirOut` must not be null.
VP_EXPORT unsigned int vpFindNextFileBounded(vpSearch* search, vpDir* dirOut, char* nameOut);

// The next file or plain subdirectory; result as for vpFindNextFile, and 0xFFFFFFFF for a
// subdirectory, of which neither extension nor readability is asked.
VP_EXPORT unsigned int vpFindNextUnspecified(vpSearch* search, vpDir* dirOut, char* nameOut);

// The next plain subdirectory: 0xFFFFFFFF, or 0 at the end.
VP_EXPORT unsigned int vpFindNextSubdirectory(vpSearch* search, vpDir* dirOut, char* nameOut);

// The next directory that the path reads (on the path, private, class or package): 1, or 0 at the
// end. A '.' in the name is then part of it.
VP_EXPORT unsigned int vpFindNextDir(vpSearch* search, vpDir* dirOut);

// Ends a search and sets the caller's pointer to null. `search` itself must not be null.
VP_EXPORT void vpDestroySearch(vpSearch** search);

// The first match of vpCreateAllSearch, vpCreateVisibleSearch and vpCreateFilenameVisibleSearch in
// one call; 0 and outputs untouched where those would answer null.
VP_EXPORT unsigned int vpFindFirstFileInAll(vpPath path, const char* name, const char** exts,
                                            vpReadCheck rc, vpDir* dirOut, char* nameOut);
VP_EXPORT unsigned int vpFindFirstFileVisibleToDir(vpDir dir, const char* name, const char** exts,
                                                   vpReadCheck rc, vpDir* dirOut, char* nameOut);
VP_EXPORT unsigned int vpFindFirstFileVisibleToFile(vpPath path, const char* fileName,
                                                    const char* name, const char** exts,
                                                    vpReadCheck rc, vpDir* dirOut, char* nameOut);

// ---------------------------------------------------------------------------------------------
// Walking class and package directories. Each call takes the last answer and gives the next; the
// null directory at the end. Cost: O(1) a step, but for directories of the path without any.

// The class directories, and the package directories, that lie in `dir`: start with `previous` =
// `dir`. The null directory too when `previous` is not one of them.
VP_EXPORT vpDir vpGetMethodDirs(vpDir dir, vpDir previous);
VP_EXPORT vpDir vpGetPackageDirs(vpDir dir, vpDir previous);

// Every class directory that lies directly in a directory of the path, in path order: start with
// the null directory. From another directory than a class directory the walk starts after the
// current directory.
VP_EXPORT vpDir vpGetNextMethodDir(vpDir dir);

// The class directories of one class across the path; packages are not looked into. Start with the
// null directory, or with the current directory to leave its own out.
VP_EXPORT vpDir vpGetNextMethodClassDir(vpDir dir, const char* className);
