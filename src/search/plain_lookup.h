// The short way to the answer that is asked for most: the first file of a plain name. No search is
// made for it; what the short way cannot tell is left to one. It never calls the host.
#pragma once

#include "search/search.h"

enum class PlainAnswer {
    kUnknown,  // a search has to tell
    kNothing,  // no file has that name
    kFile,     // `file` is the first one, but for its readability
};

struct PlainLookup {
    PlainAnswer answer;
    PathFileItemInfo* file = nullptr;
    unsigned int result = 0;  // as the exported calls answer it
};

PlainLookup LookUpPlainName(const SearchRequest& request);
