#include <unistd.h>

#include <cstdarg>
#include <cstdio>

#include <hostkit/hostkit.h>

int hkPrintf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int written = std::vprintf(format, arguments);
    va_end(arguments);
    return written;
}

char* hkGetcwd(char* buffer, size_t size) {
    // getcwd would take a buffer of its own from malloc, which hkFree may know nothing of.
    return buffer == nullptr ? nullptr : getcwd(buffer, size);
}
