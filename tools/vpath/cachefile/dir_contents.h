// What a directory of the path holds, in a form that can be compared.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <vpath/path.h>

struct ContentItem {
    enum Kind { kFile, kSubdirectory, kSpecialDirectory };  // private, class and package ones
    std::string name;  // beneath the directory, as "@Shape/area.v"
    Kind kind;
};

// Everything that a directory of the path holds, its special directories and what those hold
// included, in the order of the bytes of the names. Cost: n log n in that.
std::vector<ContentItem> ContentsOf(const vpDir& dir);

// Calls `tell` for each name that only one of the two has, the other argument null, or that both
// have with different kinds. Of a special directory that only one has, only itself is told. Cost:
// the items.
void ForEachDifference(
    const std::vector<ContentItem>& before, const std::vector<ContentItem>& now,
    const std::function<void(const ContentItem* before, const ContentItem* now)>& tell);

// "file" or "directory".
const char* KindName(ContentItem::Kind kind);

// Why a cache cannot tell of an item; empty when it can. `name` is what the file would call it.
std::string WhyNotInCache(const ContentItem& item);
