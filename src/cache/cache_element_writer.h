// The text of directory elements.
#pragma once

#include <string_view>

#include <vpath/path.h>

#include "cache/growing_text.h"

class CacheElementWriter {
  public:
    // Appends to `out`. Of each directory's full name the first `skipped` bytes are not written.
    CacheElementWriter(PathMgr& path, GrowingText& out, size_t skipped)
        : path_(path), out_(out), skipped_(skipped) {}

    // Appends the element of a directory of the path with all that is nested in it. False, with
    // nothing appended, when it holds a name that the format cannot carry, or when a callback took
    // something of it away meanwhile.
    bool write(const vpDir& dir);

  private:
    // How far the lines of one element are indented. The widths follow no single rule, but files
    // are compared byte by byte.
    struct Widths {
        size_t open;
        size_t items;
        size_t close;
    };

    void writePackage(const vpDir& outermost);
    void writeClasses(const vpDir& dir, size_t width);
    void writePrivate(const vpDir& dir, const Widths& widths);
    void writeItems(const vpDir& dir, size_t width);
    void open(const vpDir& dir, size_t width);
    void close(const vpDir& dir, size_t width);
    template <class... Pieces>
    void writeLine(const Pieces&... pieces);
    void countName(size_t length);
    bool canBeRead(std::string_view element) const;

    PathMgr& path_;
    GrowingText& out_;
    size_t skipped_;

    // Of the present element.
    size_t lines_ = 0;
    size_t names_ = 0;
    bool whole_ = true;
};
