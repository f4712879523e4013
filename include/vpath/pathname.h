// Pathname strings: taking apart, joining and tidying names, and the dotted names of packages and
// classes.
//
// Names are NUL-ended byte strings whose components '/' separates. '.' begins an extension, a
// leading '~' stands for a home directory, ':' and ';' separate the directories of a list; no other
// character means anything, a backslash included. Sizes and lengths are bytes, lengths without the
// NUL.
//
// Output buffers are the caller's. Where no size is passed nothing is checked: each function says
// how much it writes. Buffers of different arguments must not overlap, except where a function says
// so. A null name is taken as the empty name and a null buffer gives a null result, where nothing
// else is said. Nothing touches the file system but vpFullPath and, for a leading '~', the look-up
// of a home directory. Cost: linear in the names.
#pragma once

#include <cstddef>

#include <vpath/export.h>

class vpPath;

extern "C" {

// ---------------------------------------------------------------------------------------------
// Asking

// Whether the name begins with '/' or '~'.
VP_EXPORT bool vpIsAbsolutePath(const char* name);

// Whether the name lies on another machine: never, here.
VP_EXPORT bool vpIsWinPathRemote(const char* name);

// Whether the character at `p` is '/'. `start`, the beginning of the string, is not looked at.
VP_EXPORT bool vpIsPathNameSep(const char* start, const char* p);

// ---------------------------------------------------------------------------------------------
// Extensions

// Index of the last '.' of the last component, or -1: "a.b/c" -1, "f.tar.gz" 5, ".cshrc" 0.
VP_EXPORT int vpFindFileExt(const char* name);

// `dst` becomes `name` with its extension replaced by `newExt`, which brings its own '.'. Answers
// where the extension now starts in `dst`; when `name` had none, `newExt` is appended and the
// answer is `dst` itself. `dst` may be `name`. Writes at most both lengths and a NUL.
VP_EXPORT char* vpChangeFileExtension(const char* name, char* dst, const char* newExt);

// `dst` becomes `name` without everything from its last '.' on, wherever that stands ("a.b/c" gives
// "a"); the whole name when there is none or it is the first character. `dst` may be `name`.
VP_EXPORT char* vpGetBaseFileName(const char* name, char* dst);

// ---------------------------------------------------------------------------------------------
// Joining and separating

// `dst` becomes the last component, one trailing '/' ignored: "c" of "/a/b/c/". Give it room for
// the component, that '/' and a NUL. Answers `dst`.
VP_EXPORT char* vpExtractSubdir(char* dst, const char* dirName);

// Append `name` to `dir`, in place; two names for one operation. An empty `dir` takes `name` as it
// is; otherwise exactly one '/' stands between them where `dir` ends in none or one and `name`
// begins with none or one. Writes at most one byte more than both lengths, and a NUL. `dir`.
VP_EXPORT char* vpConcatPathName(char* dir, const char* name);
VP_EXPORT char* vpConcatPathSubdir(char* dir, const char* subdir);

// `dst` becomes `dir` joined with `name` by the same rule; `dst` may be, or overlap, `dir`.
VP_EXPORT char* vpCombinePathName(char* dst, const char* dir, const char* name);

// `dst` becomes the directory `rel` as seen from `base`: `rel` itself when it begins with '/', '~',
// "./" or "../", else `base`, '/' and `rel`. Nothing is normalised. False, with `dst` untouched,
// when that is longer than 4352 characters or an argument is null. `dst` may be `base`.
VP_EXPORT bool vpCombineDirectory(char* dst, const char* base, const char* rel);

// Splits at the last '/'. Answers where the file name starts in `path`: at its beginning when there
// is no '/', null when `path` is null. Unless `dirOut` is null, it becomes the directory part,
// empty when there is none, "/" for a file in the root. `dirOut` may be `path`, which is then cut
// in place: the file name stays where it is, but one directly in the root loses its first character
// to the NUL and becomes empty. Multi-byte names are split by vpath_pathname_index of the host.
VP_EXPORT char* vpSeparatePathName(char* path, char* dirOut);

// ---------------------------------------------------------------------------------------------
// Standard forms

// Expands "~" and "~/..." with the environment variable HOME, "~user" and "~user/..." with that
// user's home directory (user names of at most 8 characters). Answers `dst`, or `name` when there
// was nothing to expand or no such home; `dst` is then untouched. Give `dst` room for the home
// directory and `name`. `dst` may be `name`.
VP_EXPORT char* vpTildeExpansion(char* dst, char* name);

// The form in which directory names are kept: '~' expanded, trailing ':' and ';' removed when
// `stripListSeparators` is set, trailing '/' removed ("/" stays, but "//" becomes empty). Nothing
// else changes: "." and ".." stay, relative names stay relative. Answers null on success, with a
// new string in `*outName`, which vpFreeNormalizedDirName frees, and its length in `*outLen`; for
// an empty name, null and no string. On failure a message that lives forever, and no string:
// "Directory name too long" (more than 4096 characters, counted before anything is removed),
// "Not enough memory to add directory". `reserved` is not used; `outLen` may be null.
VP_EXPORT const char* vpNormalizeDirName(const char* name, bool stripListSeparators, int reserved,
                                         int* outLen, char** outName);
VP_EXPORT void vpFreeNormalizedDirName(char* name);  // null is allowed

// An absolute name, '~' names included, is copied as it is with strncpy: without a NUL when it
// fills the `dstSize` bytes of `dst`. A relative name is completed with the current directory and
// freed of "." components and of "name/.." pairs, of a final '/' and of an automounter's prefix.
// Answers `dst`; null when a relative name is empty, does not exist or does not fit with its NUL.
// Asks the file system once.
VP_EXPORT char* vpFullPath(char* dst, const char* name, size_t dstSize);

}  // extern "C"

// ---------------------------------------------------------------------------------------------
// Qualified names. A component "+name" is a package, "@name" a class; a lone '+' or '@' is neither.
// Runs of '/' count as one here. Each call that takes the `size` of `dst` empties `dst` first and
// writes only results shorter than `size`; a `dst` of size 0 is never written.

// The first unbroken run of packages, joined by '.': "p.q" of "/r/+p/+q/f". `dst`, or null when
// there is no package or the result does not fit.
VP_EXPORT char* vpGetPackageNameFromFullName(const char* fullName, char* dst, size_t size);

// The packages and the classes directly after them, or else the first run of classes: "p.C" of
// "/r/+p/@C/f", "A.B" of "/r/@A/@B". `dst`, or null when there is no such class ("/r/+p/a/@C/f") or
// the result does not fit.
VP_EXPORT char* vpGetClassNameFromFullName(const char* fullName, char* dst, size_t size);

// The class whose directory, or whose `private` directory at any depth, holds the file: the last
// class of the name with those that directly enclose it, without packages. "A.B" of
// "/r/+p/@A/@B/f", "C" of "/r/@C/private/f". `dst`, or null when the file lies elsewhere
// ("/r/@C/sub/f"), or the classes as they stand in the name ("A/@B") are not shorter than `size`.
// Here "//" holds an empty component. `path` is not looked at.
VP_EXPORT char* vpGetObjectNameFromPath(vpPath path, const char* fullName, char* dst, size_t size);

// What qualifies a file: everything after the last '@' ("C/f.v" of "/r/@C/f.v"), or else everything
// from the component above the first "private", which may be any piece of the text
// ("d/private/f.v" of "/r/d/private/f.v"). `dst`, or null, with `dst` empty, when there is neither.
// Give `dst` the length of `fullName` and a NUL.
VP_EXPORT char* vpGetQualifiedNameFromPath(const char* fullName, char* dst);

// Whether some component begins with '@'.
VP_EXPORT bool vpIsDirNameMethodDirName(const char* dirName);

// The first '+' that begins a component, as a pointer into `dirName`, or null; whether there is
// one.
VP_EXPORT char* vpGetPackageDirName(const char* dirName);
VP_EXPORT bool vpIsDirNamePackageDirName(const char* dirName);
