// Whether a directory can be relied on to tell that it has changed.
#pragma once

#include <string>
#include <vector>

#include "doctor/probe_system.h"

enum class Health {
    kOk,
    kSlow,     // answers are right, getting them costs more
    kStale,    // answers may be wrong
    kUnknown,  // not probed
};

struct Finding {
    const char* probe;  // "access", "time", "steps", "clock", "events", "case"
    Health health;
    std::string text;
    std::string remedy;  // empty when ok
};

// Findings in the order of the probes; what cannot be probed is said once. Makes files, one after
// another, where the directory can be written. `ignoresCase`: the path does. Takes up to eight
// seconds where times move in steps of a second or more, no time elsewhere. Throws CommandError
// when a file that it made cannot be removed.
std::vector<Finding> ProbeDirectory(const std::string& dirName, bool ignoresCase,
                                    const ProbeSystem& system);
