#include "dir/full_name.h"

#include <cstring>

#include <vpath/path.h>

#include "dir/item.h"
#include "dir/path_dir_item.h"

namespace {

// One component of a full pathname as it stands on disk: mark, name, dot and extension. The name of
// a detached or path directory is whole in itself.
struct Component {
    std::string_view mark;
    std::string_view name;
    std::string_view dot;
    std::string_view extension;

    size_t length() const { return mark.size() + name.size() + dot.size() + extension.size(); }
    char last() const {
        if (!extension.empty()) return extension.back();
        if (!dot.empty()) return '.';
        return name.empty() ? (mark.empty() ? '\0' : mark.back()) : name.back();
    }
    void dropFirst() {
        if (!mark.empty()) {
            mark = {};
        } else {
            name.remove_prefix(1);
        }
    }
    bool beginsWithSlash() const { return mark.empty() && !name.empty() && name.front() == '/'; }
};

// The directory whose name is whole, or null when `item` only adds to its parent's.
const char* WholeName(const PathItemInfo& item) {
    auto* const directory = const_cast<PathItemInfo&>(item).asDirectory();
    if (directory == nullptr) return nullptr;
    if (directory->detachedName != nullptr) return directory->detachedName.get();
    if (directory->dirKind != vpDirTypePath && directory->dirKind != vpDirTypeNone) return nullptr;
    const char* const fullName = static_cast<const PathDirItemInfo*>(directory)->fullName.get();
    return fullName != nullptr ? fullName : "";
}

Component ComponentOf(const PathItemInfo& item) {
    Component component;
    if (const char* const whole = WholeName(item)) {
        component.name = whole;
        return component;
    }
    switch (item.mark()) {
        case '@':
            component.mark = "@";
            break;
        case '+':
            component.mark = "+";
            break;
        default:
            break;
    }
    if (item.nameRecord != nullptr) component.name = item.name();
    if (item.isFile()) {
        if (const char* const extension = item.getExtension()) {
            component.dot = ".";
            component.extension = extension;
        }
    }
    return component;
}

// Walks from the item up to the directory whose name is whole, handing over each piece of the full
// pathname from its end to its beginning.
template <class Take>
void TakeFromEnd(const PathItemInfo& item, Take take) {
    const PathItemInfo* at = &item;
    Component component = ComponentOf(*at);
    while (true) {
        const bool whole = at->parent == nullptr || WholeName(*at) != nullptr;
        Component above;
        if (!whole) above = ComponentOf(*at->parent);
        const bool joined = !whole && above.length() != 0;
        if (joined && component.beginsWithSlash()) component.dropFirst();
        take(component.extension);
        take(component.dot);
        take(component.name);
        take(component.mark);
        if (whole) return;
        if (joined && above.last() != '/') take("/");
        component = above;
        at = at->parent;
    }
}

}  // namespace

size_t FullNameLength(const PathItemInfo& item) {
    size_t length = 0;
    TakeFromEnd(item, [&length](std::string_view piece) { length += piece.size(); });
    return length;
}

void WriteFullName(const PathItemInfo& item, char* to, size_t length) {
    char* end = to + length;
    *end = '\0';
    TakeFromEnd(item, [&end](std::string_view piece) {
        if (piece.empty()) return;
        end -= piece.size();
        std::memcpy(end, piece.data(), piece.size());
    });
}

FullName::FullName(const PathItemInfo& item) : length_(FullNameLength(item)) {
    char* to = short_;
    if (length_ >= sizeof short_) {
        long_.reset(static_cast<char*>(AllocateOrFail(length_ + 1)));
        to = long_.get();
    }
    WriteFullName(item, to, length_);
}
