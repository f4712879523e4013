// The short way to the answer that is asked for most: the first file of a plain name. No search is
// made for it; what the short way cannot tell is left to one.
#pragma once

#include "search/search.h"

enum class PlainAnswer {
    kUnknown,  // a search has to tell; nothing was asked of the host
    kNothing,  // no file has that name
    kFile,     // `match` is the first one, its name was written
};

PlainAnswer LookUpPlainName(const SearchRequest& request, char* nameOut, vpSearch::Match& match);
