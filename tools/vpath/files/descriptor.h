#pragma once

#include <unistd.h>

// Owns a file descriptor.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    int get() const { return fd_; }

  private:
    const int fd_;
};
