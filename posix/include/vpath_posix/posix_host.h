// The ready-made host: the library's six callbacks over the real file system.
//
//     vpInstallPosixHost();
//     vpPath path = vpCreatePath(0, "main");
//
// The functions can also be installed one by one, or wrapped by a host that wants to count, filter
// or log what the library asks. They keep no state, leave no descriptor open and follow symbolic
// links. Names are NUL-ended byte strings; a relative one is taken from the process's current
// directory. A null name is answered like one that does not exist. The path argument of a callback
// is never looked at.
//
// Cost: one or two system calls each, but for the listing.
#pragma once

#include <vpath/path.h>

// Installs all six as the process-wide callbacks. True: paths can be created now.
bool vpInstallPosixHost();

// The entries of a directory for vpListingFcn, sorted by their bytes so that every machine lists
// them alike, without those that begin with '.'. `*words` becomes one word per name: 0x4000 a
// directory, 0x8000 a regular file, 0 anything else, a dangling link included; whether a file is a
// class definition is not asked. Null, with `*words` null, for a directory that is empty or cannot
// be read; what could be read of one that fails half-way. errno tells why a directory was not read
// to its end, and is 0 when it was. Both blocks come from hkMalloc and are the caller's; when there
// is no memory for them, hkOutOfMemoryCheck ends the process. Cost: n log n in the entries, and one
// system call for each link or entry whose type the file system does not tell.
char* vpPosixListDirectory(vpPath path, const char* dirName, unsigned int** words);

// vpDirAccessible for a directory that may be listed and entered, vpDirPermissionDenied when it, or
// a directory above it, forbids that, vpDirNonexistent when nothing or no directory has the name,
// vpDirInaccessible for any other failure.
vpDirAccessibility vpPosixAccessibility(vpPath path, const char* dirName);

// Whether the file may be read by the process's real user, as access(2) says.
bool vpPosixIsReadable(const char* name);

// Whether the name is that of a directory, or of a link to one.
bool vpPosixIsDirectory(vpPath path, const char* name);

// Modification time in whole seconds since 1970, but never later than now: a file system whose
// clock is ahead would otherwise hide the changes made until this machine's clock has caught up. 0
// when there is no such file.
long vpPosixModificationTime(vpPath path, const char* name);

// chdir: 0 on success, -1 on failure.
int vpPosixChangeDirectory(const char* dirName);
