#include "cache/cache_source.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include "cache/cache_format.h"

namespace {

constexpr size_t kBlock = size_t{128} * 1024;

// Which bytes need no attention of their own.
using ByteSet = std::array<bool, 256>;

constexpr ByteSet AllBut(std::initializer_list<unsigned char> special) {
    ByteSet set{};
    set.fill(true);
    for (const unsigned char c : special) set[c] = false;
    return set;
}

constexpr ByteSet kPlain = AllBut({'\n', '\0', 0xFF});
constexpr ByteSet kPlainInName = AllBut({'\n', '\0', 0xFF, '"', '\\'});

bool IsIn(const ByteSet& set, char c) { return set[static_cast<unsigned char>(c)]; }

}  // namespace

CacheSource::CacheSource(int file)
    : file_(file), buffer_(static_cast<char*>(AllocateOrFail(1 + kBlock + 1 + kSlack))) {
    buffer_.get()[0] = '\n';  // so that line() is 0 at first
    at_ = end_ = buffer_.get() + 1;
    buffer_.get()[1] = static_cast<char>(kLastByte);
    std::memset(buffer_.get() + 2, 0, kSlack);
}

// Reads the next block; false at the end of the file, which a failed read counts as.
bool CacheSource::refill() {
    char* const block = buffer_.get() + 1;
    block[-1] = end_[-1];
    ssize_t count = 0;
    do {
        count = read(file_, block, kBlock);
    } while (count < 0 && errno == EINTR);
    at_ = block;
    end_ = block + std::max<ssize_t>(count, 0);
    block[end_ - block] = static_cast<char>(kLastByte);
    return count > 0;
}

int CacheSource::takeSpecial(unsigned char c) {
    if (c == '\n') {
        ++lineFeeds_;
        return c;
    }
    if (at_ - 1 != end_) return kEnd;  // a byte of the file
    at_ = end_;
    return refill() ? take() : kEnd;
}

int CacheSource::skipPast(char wanted) {
    while (true) {
        const char* at = at_;
        while (*at != wanted && IsIn(kPlain, *at)) ++at;
        at_ = at;
        const int c = take();  // any character when it begins a block
        if (c == wanted || c == '\0' || c == kEnd) return c;
    }
}

int CacheSource::takeName(char* to, size_t& length) {
    length = 0;
    while (true) {
        const char* at = at_;
        while (IsIn(kPlainInName, *at)) ++at;
        const auto count = static_cast<size_t>(at - at_);
        if (count > kLongestCacheName - length) return kTooLong;
        std::memcpy(to + length, at_, count);
        length += count;
        at_ = at;
        const int c = take();
        if (c == '"' || c == '\0' || c == kEnd) return c;
        if (length == kLongestCacheName) return kTooLong;
        to[length++] = c == '\\' ? '/' : static_cast<char>(c);
    }
}

int CacheSource::line() const {
    const uint64_t lines = lineFeeds_ + (at_[-1] != '\n' ? 1 : 0);
    return static_cast<int>(std::min<uint64_t>(lines, std::numeric_limits<int>::max()));
}
