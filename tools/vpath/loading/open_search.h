#pragma once

#include <memory>

#include <vpath/search.h>

struct DestroySearch {
    void operator()(vpSearch* search) const { vpDestroySearch(&search); }
};
using Search = std::unique_ptr<vpSearch, DestroySearch>;
