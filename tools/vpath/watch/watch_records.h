// What `vpath watch` prints. In text each record is one line, whatever bytes names hold: a
// backslash in them is doubled, control characters are \t, \n or \x1b.
#pragma once

#include <cstddef>

#include "output/record.h"
#include "watch/path_follower.h"
#include "watch/winners.h"

// "reread", "added", "removed" or "current", and the directory.
Record RecordOf(const DirectoryChange& change);

// "winner", the name, the file that it stood for, an arrow, and the file that it stands for; "-"
// for no file.
Record RecordOf(const WinnerChange& change);

// "watching" and the number of directories.
Record WatchingRecord(size_t directories);

Record RecordOf(const PathFollower::Counts& counts);
