// The text of a toolbox cache file. The library answers from a cache but does not say what is in
// it: here its elements are gone through one by one, as docs/cache-format.md has them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

class CacheFile {
  public:
    struct Element {
        enum Kind { kOpening, kClosing, kItem };
        Kind kind;
        char letter;       // of an item; 'D' for the tags of a directory
        std::string name;  // with '/'; empty for a closing tag
        size_t depth;      // how many directories are around it
    };

    // Reads the file whole. Throws CommandError when it cannot be read.
    explicit CacheFile(const std::string& fileName);

    // What the header says; empty when it says nothing.
    std::string_view date() const;

    // The next element, in the order of the file; nothing at the end. Whether the file is in order
    // is for vpUseToolboxCache to judge: what it refuses ends somewhere here.
    std::optional<Element> next();

  private:
    bool skipPast(char wanted);

    std::string text_;
    size_t at_ = 0;
    size_t depth_ = 0;
};
