#include "files/replacement_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>

#include "files/descriptor.h"
#include "files/signal_block.h"
#include "output/exit_status.h"

namespace {

// What the signal handler removes; empty for nothing.
char removedBySignal[PATH_MAX];

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

[[noreturn]] void Fail(const std::string& subject) {
    throw CommandError(subject + ": " + std::strerror(errno));
}

extern "C" void RemoveAndEnd(int signal) {
    if (removedBySignal[0] != '\0') unlink(removedBySignal);
    std::signal(signal, SIG_DFL);
    raise(signal);
}

// Signals that the caller of the command told to be ignored stay ignored. What else is set for them
// ends the process too, and has done its work when files are written.
void HandleSignals() {
    for (const int signal : kEndingSignals) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action.sa_handler = RemoveAndEnd;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        sigaction(signal, &action, nullptr);
    }
}

int Opened(const std::string& name, int flags) {
    const int file = open(name.c_str(), flags | O_CLOEXEC);
    if (file < 0) Fail(name);
    return file;
}

mode_t ModeOfNewFile() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& target) : target_(target) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(target.c_str(), nullptr),
                                                           &std::free);
    if (real != nullptr) target_ = real.get();
    struct stat old;
    if (stat(target_.c_str(), &old) == 0) {
        if (!S_ISREG(old.st_mode)) {
            throw CommandError(target_ + ": not a regular file; it is not replaced");
        }
        mode_ = old.st_mode & 07777;
        owner_ = old.st_uid;
        group_ = old.st_gid;
    } else if (errno == ENOENT) {
        mode_ = ModeOfNewFile();
    } else {
        Fail(target_);
    }

    directory_ = target_.substr(0, target_.rfind('/') + 1);
    name_ = directory_ + ".vpath.XXXXXX";
    if (name_.size() >= std::size(removedBySignal)) {
        errno = ENAMETOOLONG;
        Fail(target_);
    }
    HandleSignals();
    {
        const SignalBlock block;
        const int file = mkostemp(name_.data(), O_CLOEXEC);
        if (file < 0) Fail("cannot make a file in " + directory_);
        close(file);
        std::strcpy(removedBySignal, name_.c_str());
    }
}

ReplacementFile::~ReplacementFile() {
    const SignalBlock block;
    if (removedBySignal[0] != '\0') unlink(name_.c_str());
    removedBySignal[0] = '\0';
}

void ReplacementFile::putInPlace() {
    const Descriptor file(Opened(name_, O_RDONLY));
    // Who may not give the file away keeps it: the permissions are what readers need.
    if (fchown(file.get(), owner_, group_) != 0) errno = 0;
    if (fchmod(file.get(), mode_) != 0 || fsync(file.get()) != 0) Fail(name_);
    {
        const SignalBlock block;
        if (rename(name_.c_str(), target_.c_str()) != 0) Fail(target_);
        removedBySignal[0] = '\0';
    }
    // Not every file system has this for directories.
    const Descriptor directory(Opened(directory_, O_RDONLY | O_DIRECTORY));
    if (fsync(directory.get()) != 0 && errno != EINVAL) Fail(directory_);
}
