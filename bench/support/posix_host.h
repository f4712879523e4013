// The ready-made host's callbacks in a row.
#pragma once

#include <vpath_posix/posix_host.h>

#include "support/host_calls.h"

inline constexpr HostFunctions kPosixHost = {vpPosixListDirectory, vpPosixAccessibility,
                                             vpPosixIsReadable, vpPosixIsDirectory,
                                             vpPosixModificationTime};
