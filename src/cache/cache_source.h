// The characters of a cache file, read in large blocks.
//
// A byte 0xFF counts as the end of the file wherever it stands, and a NUL is never skipped over: a
// file with one was not written as text.
#pragma once

#include <cstdint>

#include "base/memory.h"

class CacheSource {
  public:
    static constexpr int kEnd = -1;

    // Reads from an open file, which stays the caller's.
    explicit CacheSource(int file);

    // The next character, or kEnd.
    int take() {
        const auto c = static_cast<unsigned char>(*at_++);
        return c == '\n' || c == kLastByte ? takeSpecial(c) : c;
    }

    // Takes what is up to `wanted`, and that too; `wanted`, or the NUL or kEnd that came before.
    int skipPast(char wanted);

    // Takes the name up to a '"', and that too; each backslash becomes a '/'. The '"', or the NUL
    // or kEnd that came before; kTooLong when there are more than kLongestCacheName characters,
    // for which `to` has room. `length` is valid when it answers '"'.
    static constexpr int kTooLong = -2;
    int takeName(char* to, size_t& length);

    // Skips `text` when it comes next; it holds none of the special bytes. Does nothing where a
    // block ends in its midst.
    template <size_t Size>
    void skipExpected(const char (&text)[Size]) {
        static_assert(Size - 1 <= kSlack);
        if (std::char_traits<char>::compare(at_, text, Size - 1) == 0) at_ += Size - 1;
    }

    // The line of the last character taken, counting from 1; 0 before the first.
    int line() const;

  private:
    static constexpr unsigned char kLastByte = 0xFF;  // stands behind every block
    static constexpr size_t kSlack = 16;              // and these bytes behind that may be read

    int takeSpecial(unsigned char c);
    bool refill();

    int file_;
    HkBlock<char> buffer_;  // the byte taken last from the block before, a block, kLastByte, slack
    const char* at_;
    const char* end_;
    uint64_t lineFeeds_ = 0;  // among the characters taken
};
