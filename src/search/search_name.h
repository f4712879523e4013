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

class SearchName {
  public:
    // Takes a normalised name; an empty one, or null, asks for everything.
    SearchName(NormalizedName text, size_t length);

    bool empty() const { return text_ == nullptr; }
    const char* base() const { return base_; }
    size_t baseLength() const { return baseLength_; }
    char mark() const { return mark_; }                     // '@', '+' or 0
    const char* extension() const { return extension_; }    // null without one; never empty
    const char* directory() const { return directory_; }    // null without one
    int separatorCount() const { return separatorCount_; }  // in the whole name but at its start

    // Makes the extension part of the base name again: directories have none.
    void joinExtension();

  private:
    void cutExtension(size_t length);
    void cutDirectory(size_t length);

    NormalizedName text_;
    char* base_ = nullptr;
    size_t baseLength_ = 0;
    char* extension_ = nullptr;
    const char* directory_ = nullptr;
    int separatorCount_ = 0;
    char mark_ = '\0';
};
