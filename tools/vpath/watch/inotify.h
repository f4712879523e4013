// One inotify instance of the kernel.
#pragma once

#include <sys/inotify.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "files/descriptor.h"

struct InotifyEvent {
    int watch;  // -1: the queue overflowed, events are lost
    uint32_t mask;
    std::string_view name;  // of what changed in the watched directory; empty: the directory itself
};

class Inotify {
  public:
    Inotify();  // isOpen() tells whether there was one left; errno says why not

    bool isOpen() const { return fd_.isOpen(); }
    int fd() const { return fd_.get(); }

    // Watches what the name leads to, for these events and those that it is watched for already.
    // The watch's number, the same one for each name of one directory; -1 and errno on failure.
    int add(const std::string& dirName, uint32_t events);
    void remove(int watch);

    // Calls `take` with the events that are there, all of them unless more come than can be read.
    template <class Take>
    void read(Take take) {
        for (int block = 0; block < kMostBlocks; ++block) {
            const char* const end = buffer_.get() + readBlock();
            if (end == buffer_.get()) return;
            for (const char* at = buffer_.get(); at < end;) {
                const auto& event = *reinterpret_cast<const inotify_event*>(at);
                const char* const name = event.len != 0 ? event.name : "";
                take(InotifyEvent{event.wd, event.mask, name});
                at += sizeof event + event.len;
            }
        }
    }

  private:
    static constexpr size_t kBlockSize = 1 << 16;
    static constexpr int kMostBlocks = 64;  // more than the kernel keeps; the rest wakes again

    size_t readBlock();

    const std::unique_ptr<char[]> buffer_;
    const Descriptor fd_;
};
