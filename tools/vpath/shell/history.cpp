#include "shell/history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <utility>

#include "files/descriptor.h"

namespace {

constexpr size_t kMostLines = 1000;

void MakeDirectoriesTo(const std::string& fileName) {
    for (size_t slash = 0; (slash = fileName.find('/', slash + 1)) != std::string::npos;) {
        mkdir(fileName.substr(0, slash).c_str(), 0700);
    }
}

bool WriteLines(const std::string& fileName, int flags, const std::string& lines) {
    const Descriptor file(open(fileName.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0600));
    return write(file.get(), lines.data(), lines.size()) == static_cast<ssize_t>(lines.size());
}

}  // namespace

std::string HistoryFileName() {
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/') return std::string(state) + "/vpath/history";
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home != '/') return "";
    return std::string(home) + "/.local/state/vpath/history";
}

HistoryFile::HistoryFile(std::string name) : name_(std::move(name)) {
    // Cut to its end once it has doubled.
    std::vector<std::string> lines = read();
    if (lines.size() < 2 * kMostLines) return;
    std::string last;
    for (size_t at = lines.size() - kMostLines; at < lines.size(); ++at) last += lines[at] + "\n";
    const std::string cut = name_ + "." + std::to_string(getpid());
    if (!WriteLines(cut, O_EXCL, last) || rename(cut.c_str(), name_.c_str()) != 0) {
        unlink(cut.c_str());
    }
}

std::vector<std::string> HistoryFile::read() const {
    std::vector<std::string> lines;
    std::ifstream file(name_);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

void HistoryFile::append(const std::string& line) const {
    if (name_.empty() || WriteLines(name_, O_APPEND, line + "\n")) return;
    MakeDirectoriesTo(name_);
    WriteLines(name_, O_APPEND, line + "\n");
}
