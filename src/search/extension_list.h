// The extensions that a search accepts.
#pragma once

#include "base/memory.h"

// An extension as a list spells it, with or without a leading dot, without it.
inline const char* WithoutDot(const char* listed) { return listed + (*listed == '.' ? 1 : 0); }

class ExtensionList {
  public:
    // The value that stands for "no list".
    static constexpr unsigned int kAnyExtension = 0xFFFFFFFF;

    // The caller's list, ended by null, each entry with or without a leading dot. Borrowed for the
    // length of one call, or copied (`keep`) into one block for a search that outlives it.
    ExtensionList(const char** extensions, bool keep);

    // The position, from 1, of the first entry that accepts `extension` (null for a name without
    // one), kAnyExtension without a list, 0 when none does. `given` is the extension of the name
    // searched for, or null: a match has to have it, and an empty entry stands for it, or for none.
    unsigned int accept(const char* extension, const char* given, bool caseSensitive) const;

  private:
    const char* const* entries_;  // null without a list
    HkBlock<void> copy_;
};
