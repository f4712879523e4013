// Home directories: what a leading '~' stands for.
#pragma once

#include <cstddef>

// Room for one entry of the password database. Left uncleared.
struct PasswordScratch {
    char bytes[1024];
};

// A name in two pieces, its home directory and what follows.
struct TildeParts {
    const char* home;  // borrowed from the environment or from the scratch; "" when not expanded
    const char* rest;  // borrowed from the name
};

// True when `name` (not null) begins with a '~' that stands for a known home directory; otherwise
// the whole name is the rest.
bool SplitTilde(const char* name, PasswordScratch& scratch, TildeParts* out);
