#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "output/exit_status.h"
#include "shell/line_reader.h"

namespace {

// By way of stdin, which commands that read names from it share.
class PipeReader : public LineReader {
  public:
    ~PipeReader() override { std::free(buffer_); }

    Result read(const char*, std::string& line) override {
        errno = 0;
        const ssize_t size = getline(&buffer_, &room_, stdin);
        if (size < 0 && std::ferror(stdin) != 0) {
            throw CommandError(std::string("cannot read the input: ") + std::strerror(errno));
        }
        if (size < 0) return Result::kEnd;
        line.assign(buffer_, static_cast<size_t>(size));
        if (line.ends_with('\n')) line.pop_back();
        return Result::kLine;
    }

    void remember(const std::string&) override {}

  private:
    char* buffer_ = nullptr;
    size_t room_ = 0;
};

}  // namespace

std::unique_ptr<LineReader> MakePipeReader() { return std::make_unique<PipeReader>(); }
