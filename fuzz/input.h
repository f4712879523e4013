// What the fuzz targets share: the input taken apart, and checks that end the run.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#define CHECK(condition)                                                                 \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                \
        }                                                                                \
    } while (false)

class Input {
  public:
    Input(const uint8_t* data, size_t size) : at_(data), left_(size) {}

    bool empty() const { return left_ == 0; }
    uint8_t byte() {
        if (left_ == 0) return 0;
        --left_;
        return *at_++;
    }
    size_t below(size_t limit) { return byte() % limit; }

    // Up to the next of `end`, which is taken too, or to the end of the input.
    std::string text(char end = '\n') {
        const uint8_t* const stop = std::find(at_, at_ + left_, static_cast<uint8_t>(end));
        std::string text(at_, stop);
        const size_t taken = std::min(text.size() + 1, left_);
        at_ += taken;
        left_ -= taken;
        // Names end with a NUL: what stands behind one was not said.
        return text.substr(0, text.find('\0'));
    }

  private:
    const uint8_t* at_;
    size_t left_;
};

// A block of exactly so many bytes, past whose end a sanitizer sees a write.
class Room {
  public:
    explicit Room(size_t size) : bytes_(new char[size]) {}
    Room(size_t size, const std::string& text) : Room(size) {
        std::copy_n(text.c_str(), text.size() + 1, bytes_.get());
    }
    operator char*() { return bytes_.get(); }

  private:
    std::unique_ptr<char[]> bytes_;
};
