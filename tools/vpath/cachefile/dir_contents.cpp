#include "cachefile/dir_contents.h"

#include <algorithm>
#include <unordered_set>

#include <vpath/search.h>

#include "loading/open_search.h"
#include "loading/path_names.h"

namespace {

// Adds what lies directly in `dir`, and its special directories to `pending` as well.
void AddItemsOf(const vpDir& dir, size_t skipped, std::vector<ContentItem>& items,
                std::vector<vpDir>& pending) {
    char name[kNameRoom];
    const auto addAll = [&](auto findNext, ContentItem::Kind kind) {
        const Search search(vpCreateDirSearch(dir, nullptr, nullptr, vpReadCheckSkip));
        while (findNext(search.get(), nullptr, name) != 0) items.push_back({name + skipped, kind});
    };
    addAll(vpFindNextFile, ContentItem::kFile);
    addAll(vpFindNextSubdirectory, ContentItem::kSubdirectory);

    const auto addSpecial = [&](const vpDir& special) {
        vpGetDirName(special, name);
        items.push_back({name + skipped, ContentItem::kSpecialDirectory});
        pending.push_back(special);
    };
    const vpDir privateDir = vpGetPrivateDir(dir);
    if (vpGetDirType(privateDir) != vpDirTypeNone) addSpecial(privateDir);
    for (const auto& nextIn : {vpGetMethodDirs, vpGetPackageDirs}) {
        vpDir at = nextIn(dir, dir);
        for (; vpGetDirType(at) != vpDirTypeNone; at = nextIn(dir, at)) addSpecial(at);
    }
}

}  // namespace

std::vector<ContentItem> ContentsOf(const vpDir& dir) {
    const auto skipped = static_cast<size_t>(vpGetDirNameLen(dir)) + 1;
    std::vector<ContentItem> items;
    std::vector<vpDir> pending = {dir};
    while (!pending.empty()) {
        const vpDir next = pending.back();
        pending.pop_back();
        AddItemsOf(next, skipped, items, pending);
    }
    std::sort(items.begin(), items.end(),
              [](const ContentItem& a, const ContentItem& b) { return a.name < b.name; });
    return items;
}

void ForEachDifference(
    const std::vector<ContentItem>& before, const std::vector<ContentItem>& now,
    const std::function<void(const ContentItem* before, const ContentItem* now)>& tell) {
    std::unordered_set<std::string_view> told;  // special directories that only one has
    const auto tellOfOne = [&](const ContentItem& item, bool isBefore) {
        const std::string_view name = item.name;
        const size_t slash = name.rfind('/');
        const bool inTold = slash != std::string_view::npos && told.count(name.substr(0, slash));
        if (item.kind == ContentItem::kSpecialDirectory) told.insert(name);
        if (!inTold) tell(isBefore ? &item : nullptr, isBefore ? nullptr : &item);
    };
    auto a = before.begin();
    auto b = now.begin();
    while (a != before.end() || b != now.end()) {
        if (b == now.end() || (a != before.end() && a->name < b->name)) {
            tellOfOne(*a++, true);
        } else if (a == before.end() || b->name < a->name) {
            tellOfOne(*b++, false);
        } else {
            if (a->kind != b->kind) {
                tell(&*a, &*b);
                told.insert(a->name);
            }
            ++a;
            ++b;
        }
    }
}

const char* KindName(ContentItem::Kind kind) {
    return kind == ContentItem::kFile ? "file" : "directory";
}

std::string WhyNotInCache(const ContentItem& item) {
    const std::string& name = item.name;
    if (name.find_first_of("\"\\\n\xFF") != std::string::npos) {
        return "a cache has no way to write this name";
    }
    const size_t last = name.rfind('/') + 1;
    if (item.kind == ContentItem::kSpecialDirectory && name.find('.', last) != std::string::npos) {
        return "a cache would take it for a file, for its '.'";
    }
    return "";
}
