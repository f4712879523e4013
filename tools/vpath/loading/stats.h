#pragma once

#include "loading/loaded_path.h"
#include "output/record.h"

// What the path holds, what loading it took and which callbacks the host has been asked since.
// Cost: everything that the path holds.
Record StatsRecord(const LoadedPath& loaded);
