// Reading a directory again: a fresh listing is merged into the items that are there.
#pragma once

class PathAllDirItemInfo;

// What is found again stays the same item, what is new is made (and read, when it is a special
// directory), what is gone is let go. `frozen`: the directory and new ones in it end frozen. The
// directory must not be under reading. Cost: its listing, O(entries) beside that.
void RereadDirectory(PathAllDirItemInfo& directory, bool frozen);
