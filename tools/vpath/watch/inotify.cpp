#include "watch/inotify.h"

#include <unistd.h>

#include <cerrno>

Inotify::Inotify()
    : buffer_(std::make_unique<char[]>(kBlockSize)), fd_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

int Inotify::add(const std::string& dirName, uint32_t events) {
    return inotify_add_watch(fd(), dirName.c_str(), events | IN_ONLYDIR | IN_MASK_ADD);
}

void Inotify::remove(int watch) { inotify_rm_watch(fd(), watch); }

size_t Inotify::readBlock() {
    ssize_t size;
    do {
        size = ::read(fd(), buffer_.get(), kBlockSize);
    } while (size < 0 && errno == EINTR);
    return size < 0 ? 0 : static_cast<size_t>(size);
}
