// The last step of making an item: all of it, or nothing when memory runs out half-way.
#pragma once

#include <memory>
#include <string_view>

#include "dir/dir_item.h"

// Links `made` under `name` and hands it to its parent, which owns it from then on.
template <class Item>
Item* Attach(std::unique_ptr<Item> made, std::string_view name) {
    made->linkUnderName(*made->path(), name);
    try {
        made->parent->adopt(*made);
    } catch (...) {
        made->unlinkFromName();
        throw;
    }
    return made.release();
}
