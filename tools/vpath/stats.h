#pragma once

#include "loaded_path.h"

// Writes to standard error what the path holds, what loading it took and which callbacks the host
// has been asked since. Cost: everything that the path holds.
void PrintStats(const LoadedPath& loaded);
