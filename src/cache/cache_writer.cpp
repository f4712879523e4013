#include "cache/cache_writer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <string_view>
#include <utility>

#include <vpath/path.h>

#include "cache/cache_element_writer.h"
#include "dir/clock.h"
#include "dir/path_dir_item.h"
#include "path/path_mgr.h"
#include "pathname/compare.h"

namespace {

constexpr size_t kWrittenAtOnce = size_t{256} * 1024;

// A file that is made anew, and whether all went well with it so far.
class OutputFile {
  public:
    explicit OutputFile(const char* name)
        : file_(open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)), good_(file_ >= 0) {}
    ~OutputFile() { close(); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool good() const { return good_; }

    void write(std::string_view text) {
        while (good_ && !text.empty()) {
            const ssize_t count = ::write(file_, text.data(), text.size());
            if (count >= 0) {
                text.remove_prefix(static_cast<size_t>(count));
            } else if (errno != EINTR) {
                good_ = false;
            }
        }
    }

    bool close() {
        if (file_ >= 0) good_ &= ::close(std::exchange(file_, -1)) == 0;
        return good_;
    }

  private:
    int file_;
    bool good_;
};

void AppendHeader(GrowingText& out, int64_t now) {
    const auto seconds = static_cast<time_t>(now);
    tzset();  // which ctime_r may leave out
    char text[64] = "";
    ctime_r(&seconds, text);
    out.append("<Lumenvale type=\"Path Cache File\" version=\"1.1\" date=\"");
    out.append(std::string_view(text).substr(0, 24));  // without its line feed
    out.append("\">\n");
}

// Whether a directory is to be written: frozen, and beneath the root of the path.
bool IsWritten(const PathMgr& path, const PathDirItemInfo& directory, size_t rootLength) {
    return directory.isFrozen() && directory.fullNameView().size() > rootLength &&
           CompareNamePrefix(directory.fullName(), path.preFrozenRoot.get(),
                             static_cast<unsigned>(rootLength), path.caseSensitive) == 0;
}

}  // namespace

bool WriteCacheFile(PathMgr& path, const char* fileName) {
    if (path.preFrozenRoot == nullptr) return false;
    const size_t rootLength = std::strlen(path.preFrozenRoot.get());
    OutputFile file(fileName);
    GrowingText out;
    AppendHeader(out, CurrentSeconds());
    // The '/' after the root goes unseen, like the root.
    CacheElementWriter elements(path, out, rootLength + 1);
    const PathOrder& order = path.contents.directories;
    for (ItemRef<PathDirItemInfo> at(order.first()); at; at.reset(order.nextAfter(*at))) {
        if (IsWritten(path, *at, rootLength)) elements.write(vpDir(at.get()));
        if (!path.valid || !file.good()) return false;
        if (out.size() < kWrittenAtOnce) continue;
        file.write(out.from(0));
        out.truncate(0);
    }
    out.append("</Lumenvale>\n");
    file.write(out.from(0));
    return file.close();
}
