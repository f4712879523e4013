// The exported functions that no command of PathTest's scripts calls, with arguments that mean
// something in the tree of the test that asks: for tests of what holds of all of them. Of those
// that work on strings, the ones that need memory.
#pragma once

#include <vpath/path.h>

struct EveryCall {
    const char* name;
    void (*make)(const vpPath& path);
};

// Functions that belong together are one entry. vpDisableToolboxCache is missing: nothing in this
// process could use a cache after it.
extern const EveryCall kEveryCall[];
extern const int kEveryCallCount;
