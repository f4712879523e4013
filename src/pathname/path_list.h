// Lists of directories, separated by ':' or ';'.
#pragma once

// Where the entry after the first one of `list` begins: behind the separator, or at the final NUL
// when there is no separator. Null when the first entry has more than 4096 characters, which goes
// to the warning channel with the list, and when `list` is null.
const char* NextPathListEntry(const char* list);
