#include "loading/class_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "loading/path_names.h"
#include "output/console.h"

namespace {

unsigned int unreadFiles = 0;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Opens regular files alone, without waiting: a pipe would not answer. Null with errno set, to 0
// for what is no regular file.
File OpenText(const char* fileName) {
    const int descriptor = open(fileName, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat status;
    std::FILE* file = nullptr;
    if (fstat(descriptor, &status) == 0) {
        errno = 0;
        if (S_ISREG(status.st_mode)) file = fdopen(descriptor, "rb");
    }
    if (file == nullptr) {
        const int error = errno;
        close(descriptor);
        errno = error;
    }
    return File(file);
}

void SkipByteOrderMark(std::FILE* file) {
    char mark[3];
    if (std::fread(mark, 1, 3, file) != 3 || std::memcmp(mark, "\xef\xbb\xbf", 3) != 0) {
        std::rewind(file);
    }
}

bool IsLineEnd(int c) { return c == '\n' || c == '\r'; }
bool IsBlank(int c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f'; }
bool IsLetter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsInWord(int c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '_'; }

bool FirstWordIsClassdef(std::FILE* file) {
    int c = std::getc(file);
    while (!IsLetter(c)) {
        if (c == EOF) return false;
        if (!IsBlank(c) && !IsLineEnd(c)) {
            while (c != EOF && !IsLineEnd(c)) c = std::getc(file);
        } else {
            c = std::getc(file);
        }
    }
    for (const char expected : {'c', 'l', 'a', 's', 's', 'd', 'e', 'f'}) {
        if (c != expected) return false;
        c = std::getc(file);
    }
    return !IsInWord(c);
}

}  // namespace

bool DeclaresClass(const char* fileName) {
    const File file = OpenText(fileName);
    bool declares = false;
    if (file != nullptr) {
        SkipByteOrderMark(file.get());
        declares = FirstWordIsClassdef(file.get());
        if (std::ferror(file.get()) == 0) return declares;
    }
    const char* const reason = errno != 0 ? std::strerror(errno) : "not a regular file";
    Complain(FullFileName(fileName) + ": " + reason);
    ++unreadFiles;
    return false;
}

unsigned int UnreadClassFiles() { return unreadFiles; }
