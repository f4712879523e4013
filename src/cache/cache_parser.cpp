#include "cache/cache_parser.h"

#include <hostkit/hostkit.h>

#include "cache/cache_format.h"

namespace {

bool UnexpectedEnd(const CacheSource& source) {
    hkPrintf("Encountered unexpected end-of-file (line %d) while loading toolbox cache.\n",
             source.line());
    return false;
}

bool UnexpectedTokens(const CacheSource& source) {
    hkPrintf("Found unexpected tokens (line %d) while loading toolbox cache.\n", source.line());
    return false;
}

bool TakeClosing(CacheSource& source, char wanted) {
    const int c = source.take();
    if (c == wanted) return true;
    if (c == '\0') return UnexpectedTokens(source);
    hkPrintf("Failed to find closing '%c' (line %d) while loading toolbox cache.\n", wanted,
             source.line());
    return false;
}

// A name in quotes; the latest one read.
struct QuotedName {
    std::string_view view() const { return {text, length}; }

    size_t length = 0;
    char text[kLongestCacheName];
};

// What stands before the opening '"' is not looked at.
bool ReadQuotedName(CacheSource& source, QuotedName& name) {
    source.skipExpected(" name=");
    int c = source.skipPast('"');
    if (c == '"') c = source.takeName(name.text, name.length);
    switch (c) {
        case '"':
            return true;
        case '\0':
            return UnexpectedTokens(source);
        case CacheSource::kTooLong:
            hkPrintf("Name too long\n");
            return false;
        default:
            return UnexpectedEnd(source);
    }
}

}  // namespace

bool ReadCacheHeader(CacheSource& source) {
    const int c = source.skipPast('>');
    if (c == '>') return true;
    return c == '\0' ? UnexpectedTokens(source) : UnexpectedEnd(source);
}

bool ParseCacheElement(CacheSource& source, CacheTreeBuilder& tree) {
    QuotedName name;
    while (true) {
        const int start = source.skipPast('<');
        if (start == CacheSource::kEnd) return false;
        if (start == '\0') return UnexpectedTokens(source);
        const int letter = source.take();
        switch (letter) {
            case '/':
                if (!tree.closeCacheNode()) return true;
                if (!TakeClosing(source, 'D') || !TakeClosing(source, '>')) return false;
                break;
            case kCacheFile:
            case kCacheClassdef:
            case kCacheNotClassdef:
            case kCacheUnknown:
            case kCacheSubDir:
                if (!ReadQuotedName(source, name)) return false;
                tree.appendCacheItem(name.view(), static_cast<char>(letter));
                if (!TakeClosing(source, '/') || !TakeClosing(source, '>')) return false;
                break;
            case kCacheDirectory:
                if (!ReadQuotedName(source, name)) return false;
                tree.newCacheNode(name.view());
                if (!TakeClosing(source, '>')) return false;
                break;
            case CacheSource::kEnd:
                return UnexpectedEnd(source);
            default:
                return UnexpectedTokens(source);
        }
    }
}

CacheTreePtr ReadCacheFile(int file) {
    CacheSource source(file);
    if (!ReadCacheHeader(source)) return nullptr;
    CacheTreeBuilder tree;
    return ParseCacheElement(source, tree) ? tree.take() : nullptr;
}
