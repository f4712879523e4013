// The ready-made host's callbacks in a row, and what they cost from the start.
#pragma once

#include <functional>
#include <vector>

#include <vpath_posix/posix_host.h>

#include "support/host_calls.h"
#include "support/rounds.h"

inline constexpr HostFunctions kPosixHost = {vpPosixListDirectory, vpPosixAccessibility,
                                             vpPosixIsReadable, vpPosixIsDirectory,
                                             vpPosixModificationTime};

// Nanoseconds that each of the units of `work` takes on a new path, in a process of its own: what
// was freed before makes nothing cheaper.
inline double InFreshProcess(const std::function<void(const vpPath&)>& work, size_t units) {
    return InChild([&]() -> std::vector<double> {
        const vpPath path = NewPath(kPosixHost);
        return {Nanoseconds([&] { work(path); }) / static_cast<double>(units)};
    })[0];
}
