// Owner of a name that vpNormalizeDirName made.
#pragma once

#include <memory>

#include <vpath/pathname.h>

struct NormalizedNameDeleter {
    void operator()(char* name) const noexcept { vpFreeNormalizedDirName(name); }
};
using NormalizedName = std::unique_ptr<char, NormalizedNameDeleter>;
