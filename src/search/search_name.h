// The name that a search looks for, taken apart.
//
//     +pkg/@Cls/name.v
//     ^^^^^^^^^ ^^^^ ^
//     |         |    extension: the text after the last dot of the last component
//     |         base name: the last component without extension and mark ('@', '+')
//     directory part
#pragma once

#include <cstddef>

#include "pathname/normalized_name.h"

// The name of a search in normalised form: the caller's own text when there is nothing to change.
struct NormalizedSearchName {
    const char* text = nullptr;  // null asks for everything
    size_t length = 0;
    NormalizedName owned;
};

// False when the name cannot be normalised, which is reported.
bool NormalizeSearchName(const char* name, NormalizedSearchName& normalized);

class SearchName {
  public:
    explicit SearchName(NormalizedSearchName normalized);
    SearchName(const SearchName&) = delete;
    SearchName& operator=(const SearchName&) = delete;

    bool empty() const { return base_ == nullptr; }
    const char* base() const { return base_; }
    size_t baseLength() const { return baseLength_; }
    char mark() const { return mark_; }                     // '@', '+' or 0
    const char* extension() const { return extension_; }    // null without one; never empty
    const char* directory() const { return directory_; }    // null without one
    int separatorCount() const { return separatorCount_; }  // in the whole name but at its start

    // Makes the extension part of the base name again: directories have none.
    void joinExtension();

  private:
    char* takeCopy(NormalizedSearchName& normalized);
    void cutExtension(char* text, size_t length);
    void cutDirectory(char* text);

    char* base_ = nullptr;
    size_t baseLength_ = 0;
    char* extension_ = nullptr;
    const char* directory_ = nullptr;
    int separatorCount_ = 0;
    char mark_ = '\0';
    NormalizedName long_;
    char short_[128];  // the text, cut in place; in long_ when it is longer
};
