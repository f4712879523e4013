#include "doctor/probe_system.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <memory>
#include <thread>

#include "files/descriptor.h"
#include "files/signal_block.h"
#include "watch/file_systems.h"
#include "watch/inotify.h"

namespace {

constexpr int kMostWaitMilliseconds = 500;

std::optional<SystemTime> TimeOf(const std::string& dirName) {
    struct stat status;
    if (stat(dirName.c_str(), &status) != 0) return std::nullopt;
    return std::chrono::seconds(status.st_mtim.tv_sec) + SystemTime(status.st_mtim.tv_nsec);
}

bool AnswersInCapitals(int dir, std::string name) {
    struct stat status;
    struct stat other;
    if (fstatat(dir, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
    for (char& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return fstatat(dir, name.c_str(), &other, AT_SYMLINK_NOFOLLOW) == 0 &&
           other.st_dev == status.st_dev && other.st_ino == status.st_ino;
}

MadeFile MakeFile(const std::string& dirName) {
    static int count = 0;
    MadeFile made;
    const Descriptor dir(open(dirName.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    const SignalBlock untilRemoved;
    int fd = -1;
    do {
        made.name =
            ".vpath-doctor-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".tmp";
        fd = openat(dir.get(), made.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    } while (fd < 0 && errno == EEXIST);
    if (fd < 0) {
        made.error = errno;
        return made;
    }
    close(fd);
    made.dirTime = TimeOf(dirName);
    made.answersInCapitals = AnswersInCapitals(dir.get(), made.name);
    if (unlinkat(dir.get(), made.name.c_str(), 0) != 0) made.removalError = errno;
    return made;
}

class Watch {
  public:
    // One instance for all: closing one takes milliseconds.
    int watch(const std::string& dirName) {
        if (inotify_ == nullptr || !inotify_->isOpen()) inotify_ = std::make_unique<Inotify>();
        if (!inotify_->isOpen()) return errno;
        if (watch_ >= 0) inotify_->remove(watch_);
        watch_ = inotify_->add(dirName, IN_CREATE);
        return watch_ >= 0 ? 0 : errno;
    }

    bool isTold(const std::string& fileName) {
        bool told = false;
        pollfd input = {inotify_->fd(), POLLIN, 0};
        while (!told && poll(&input, 1, kMostWaitMilliseconds) > 0) {
            inotify_->read([&](const InotifyEvent& event) { told |= event.name == fileName; });
        }
        return told;
    }

  private:
    std::unique_ptr<Inotify> inotify_;
    int watch_ = -1;
};

}  // namespace

ProbeSystem RealProbeSystem() {
    const auto watch = std::make_shared<Watch>();
    return {
        .access = [](const std::string& dirName,
                     int mode) { return access(dirName.c_str(), mode) == 0 ? 0 : errno; },
        .timeOf = TimeOf,
        .now = [] { return SystemTime(std::chrono::system_clock::now().time_since_epoch()); },
        .sleep = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); },
        .makeFile = MakeFile,
        .watch = [watch](const std::string& dirName) { return watch->watch(dirName); },
        .isTold = [watch](const std::string& fileName) { return watch->isTold(fileName); },
        .tellsOfAll = TellsOfChanges,
    };
}
