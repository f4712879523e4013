#include "cache/cache_element_writer.h"

#include <algorithm>

#include <vpath/search.h>

#include "cache/cache_format.h"
#include "dir/full_name.h"
#include "dir/path_dir_item.h"
#include "path/handle_check.h"
#include "path/path_mgr.h"
#include "search/scope_iterator.h"

namespace {

constexpr std::string_view kItemStart = "<? name=\"";
constexpr std::string_view kItemEnd = "\"/>\n";

bool IsThere(const vpDir& dir) { return LiveRealDir(dir) != nullptr; }

HkString Indent(size_t width) { return HkString(width, ' '); }

// Of the files, only those that could define a class are told apart.
char FileLetter(const PathFileItemInfo& file, std::string_view base, std::string_view extension) {
    if (extension.size() != 1 || (extension[0] != 'v' && extension[0] != 'p') || base.empty()) {
        return kCacheFile;
    }
    switch (file.classdefState) {
        case PathFileItemInfo::kClassdef:
            return kCacheClassdef;
        case PathFileItemInfo::kNotClassdef:
            return kCacheNotClassdef;
        default:
            return kCacheFile;
    }
}

// Items and their name records lie all over the heap: asked for ahead of their turn, they come in
// the time of one.
class ReadAhead {
  public:
    explicit ReadAhead(const HkVector<PathFileItemInfo*>& files) : files_(files) {}

    void step() {
        constexpr size_t kItems = 24;
        constexpr size_t kRecords = 12;
        const size_t place = place_++;
        if (place + kItems < files_.size()) __builtin_prefetch(files_[place + kItems]);
        if (place + kRecords < files_.size()) {
            const PathNameInfo* const record = files_[place + kRecords]->nameRecord;
            if (record == nullptr) return;
            __builtin_prefetch(record);
            __builtin_prefetch(record + 1);  // where its text begins
        }
    }

  private:
    const HkVector<PathFileItemInfo*>& files_;
    size_t place_ = 0;
};

}  // namespace

bool CacheElementWriter::write(const vpDir& dir) {
    const size_t begin = out_.size();
    lines_ = names_ = 0;
    whole_ = true;
    open(dir, 1);
    writeClasses(dir, 3);
    for (vpDir at = vpGetPackageDirs(dir, dir); IsThere(at); at = vpGetPackageDirs(dir, at)) {
        writePackage(at);
    }
    writePrivate(dir, {2, 3, 2});
    writeItems(dir, 2);
    close(dir, 1);
    if (whole_ && canBeRead(out_.from(begin))) return true;
    out_.truncate(begin);
    return false;
}

// A package directory and those nested in it, depth first: each stands before what else the one
// around it holds.
void CacheElementWriter::writePackage(const vpDir& outermost) {
    size_t width = 2;
    vpDir at = outermost;
    open(at, width);
    while (true) {
        vpDir next = vpGetPackageDirs(at, at);
        while (!IsThere(next)) {
            writeClasses(at, width + 2);
            writePrivate(at, {width, width + 2, width + 1});
            writeItems(at, width + 1);
            close(at, width);
            if (!whole_ || vpIsSameDir(at, outermost)) return;
            const vpDir parent = vpGetParentDir(at);
            next = vpGetPackageDirs(parent, at);
            at = parent;
            --width;
        }
        at = next;
        open(at, ++width);
    }
}

void CacheElementWriter::writeClasses(const vpDir& dir, size_t width) {
    for (vpDir at = vpGetMethodDirs(dir, dir); IsThere(at); at = vpGetMethodDirs(dir, at)) {
        open(at, width);
        writePrivate(at, {width, width + 1, width});
        writeItems(at, width + 1);
        close(at, width);
    }
}

// The widths follow what surrounds it: docs/cache-format.md has the table.
void CacheElementWriter::writePrivate(const vpDir& dir, const Widths& widths) {
    const vpDir privateDir = vpGetPrivateDir(dir);
    if (!IsThere(privateDir)) return;
    open(privateDir, widths.open);
    writeItems(privateDir, widths.items);
    close(privateDir, widths.close);
}

// Files, then plain subdirectories.
void CacheElementWriter::writeItems(const vpDir& dir, size_t width) {
    if (!IsThere(dir)) return;
    HkString start = Indent(width) += kItemStart;
    char& letter = start[width + 1];
    ReadAhead files(dir.get()->files);
    ScopeIterator items(path_, SearchScope::kDir, *dir.get());
    while (const PathItemInfo* const item = items.next(kFindFilesAndSubDirs)) {
        files.step();
        const std::string_view base = item->name();
        const char* const extension = item->isFile() ? item->getExtension() : nullptr;
        if (extension != nullptr) {
            const std::string_view text(extension);
            letter = FileLetter(static_cast<const PathFileItemInfo&>(*item), base, text);
            countName(base.size() + 1 + text.size());
            writeLine(start, base, std::string_view("."), text, kItemEnd);
        } else if (!base.empty()) {
            letter = item->isPlainSubDir() ? kCacheSubDir
                     : item->isFile()      ? kCacheFile
                                           : kCacheUnknown;
            countName(base.size());
            writeLine(start, base, kItemEnd);
        }
    }
}

void CacheElementWriter::open(const vpDir& dir, size_t width) {
    const FullName fullName(*dir.get());
    const std::string_view name = fullName.view().substr(skipped_);
    countName(name.size());
    writeLine(Indent(width), std::string_view("<D name=\""), name, std::string_view("\">\n"));
}

void CacheElementWriter::close(const vpDir& dir, size_t width) {
    writeLine(Indent(width), std::string_view("</D>\n"));
    whole_ = whole_ && IsThere(dir);
}

template <class... Pieces>
void CacheElementWriter::writeLine(const Pieces&... pieces) {
    const size_t size = (pieces.size() + ...);
    char* to = out_.room(size);
    ((to = std::copy(pieces.begin(), pieces.end(), to)), ...);
    out_.commit(size);
    ++lines_;
}

void CacheElementWriter::countName(size_t length) {
    ++names_;
    whole_ = whole_ && length <= kLongestCacheName;
}

// Names are not looked at one by one: what the format cannot carry shows in the counts of the whole
// element.
bool CacheElementWriter::canBeRead(std::string_view element) const {
    size_t quotes = 0;
    size_t lineFeeds = 0;
    size_t others = 0;
    while (!element.empty()) {
        // Counts that fit in a byte are counted many at a time.
        const std::string_view block = element.substr(0, 255);
        uint8_t quotesHere = 0;
        uint8_t lineFeedsHere = 0;
        uint8_t othersHere = 0;
        for (const char c : block) {
            quotesHere = static_cast<uint8_t>(quotesHere + (c == '"'));
            lineFeedsHere = static_cast<uint8_t>(lineFeedsHere + (c == '\n'));
            othersHere = static_cast<uint8_t>(othersHere + (c == '\\' || c == '\xFF'));
        }
        quotes += quotesHere;
        lineFeeds += lineFeedsHere;
        others += othersHere;
        element.remove_prefix(block.size());
    }
    return quotes == 2 * names_ && lineFeeds == lines_ && others == 0;
}
