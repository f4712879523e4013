#include "dir/full_name.h"

#include <cstring>
#include <iterator>

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
    bool whole = false;

    bool empty() const { return mark.empty() && name.empty() && dot.empty(); }
    char last() const {
        for (const std::string_view piece : {extension, dot, name, mark}) {
            if (!piece.empty()) return piece.back();
        }
        return '\0';
    }
    void dropLeadingSlash() {
        if (mark.empty() && !name.empty() && name.front() == '/') name.remove_prefix(1);
    }
};

Component WholeName(std::string_view name) { return {{}, name, {}, {}, true}; }

Component ComponentInside(const PathItemInfo& item) {
    Component component;
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
    if (const char* const extension = item.isFile() ? item.getExtension() : nullptr) {
        component.dot = ".";
        component.extension = extension;
    }
    return component;
}

// Of a directory of the path only what stands near its name is read: it may be far from the caches.
Component ComponentOf(const PathAllDirItemInfo& directory) {
    if (directory.dirKind == vpDirTypePath || directory.dirKind == vpDirTypeNone) {
        return WholeName(static_cast<const PathDirItemInfo&>(directory).fullNameView());
    }
    if (directory.detachedName != nullptr) return WholeName(directory.detachedName.get());
    return ComponentInside(directory);
}

Component ComponentOf(const PathItemInfo& item) {
    const auto* const directory = const_cast<PathItemInfo&>(item).asDirectory();
    return directory != nullptr ? ComponentOf(*directory) : ComponentInside(item);
}

// Walks from the item up to the directory whose name is whole, handing over each piece of the full
// pathname from its end to its beginning.
template <class Take>
void TakeFromEnd(const PathItemInfo& item, Take take) {
    const PathItemInfo* at = &item;
    Component component = ComponentOf(*at);
    while (true) {
        Component above;
        const bool whole = component.whole || at->parent == nullptr;
        if (!whole) above = ComponentOf(*at->parent);
        const bool joined = !above.empty();
        if (joined) component.dropLeadingSlash();
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

// The pieces of one full pathname, last piece first, gathered in one walk when they are few.
class Pieces {
  public:
    explicit Pieces(const PathItemInfo& item) : item_(item) {
        TakeFromEnd(item, [this](std::string_view piece) {
            if (piece.empty()) return;
            length_ += piece.size();
            if (count_ < std::size(pieces_)) pieces_[count_] = {piece.data(), piece.size()};
            ++count_;
        });
    }

    size_t length() const { return length_; }

    void write(char* to) const {
        char* end = to + length_;
        *end = '\0';
        const auto put = [&end](std::string_view piece) {
            if (piece.empty()) return;
            end -= piece.size();
            std::memcpy(end, piece.data(), piece.size());
        };
        if (count_ > std::size(pieces_)) {
            TakeFromEnd(item_, put);
            return;
        }
        for (size_t i = 0; i < count_; ++i) put({pieces_[i].text, pieces_[i].size});
    }

  private:
    struct Piece {  // has no value until it is given one: most names need four
        const char* text;
        size_t size;
    };

    const PathItemInfo& item_;
    size_t length_ = 0;
    size_t count_ = 0;
    Piece pieces_[16];  // the first count_
};

}  // namespace

size_t FullNameLength(const PathItemInfo& item) { return Pieces(item).length(); }

size_t WriteFullName(const PathItemInfo& item, char* to) {
    const Pieces pieces(item);
    pieces.write(to);
    return pieces.length();
}

FullName::FullName(const PathItemInfo& item) {
    const Pieces pieces(item);
    length_ = pieces.length();
    char* to = short_;
    if (length_ >= sizeof short_) {
        long_.reset(static_cast<char*>(AllocateOrFail(length_ + 1)));
        to = long_.get();
    }
    pieces.write(to);
}
