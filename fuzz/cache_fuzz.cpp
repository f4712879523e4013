// Cache files: any bytes are refused or answered from; what is then written reads back.
#include <sys/mman.h>
#include <unistd.h>

#include <set>

#include "cache_mutator.h"
#include "fuzzed_path.h"

namespace {

// A file in memory, by name.
class MemoryFile {
  public:
    MemoryFile() : file_(memfd_create("cache", 0)) {}
    void set(const std::string& text) const {
        CHECK(ftruncate(file_, 0) == 0);
        CHECK(pwrite(file_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
    }
    std::string text() const {
        std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
        CHECK(pread(file_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
        return text;
    }
    std::string name() const { return "/proc/self/fd/" + std::to_string(file_); }

  private:
    int file_;
};

void Fill(const vpPath& path) {
    vpReplacePath(path, "");
    vpReplacePath(path, "/i/toolbox/a:/i/toolbox/b:/i/toolbox/a/c:/i/b");
}

bool NamesTwice(const std::string& text) {
    std::set<std::string> names;
    for (size_t at = 0; (at = text.find("<D name=\"", at)) != std::string::npos; ++at) {
        if (!names.insert(text.substr(at, text.find('>', at) - at)).second) return true;
    }
    return false;
}

// No disk has names with a '/'.
bool HoldsNameWithSlash(const std::string& text) {
    for (size_t at = 0; (at = text.find('<', at)) != std::string::npos && ++at < text.size();) {
        if (text[at] == 'D' || text[at] == '/') continue;
        const size_t begin = std::min(text.find('"', at), text.size());
        const std::string name = text.substr(begin, text.find('"', begin + 1) - begin);
        if (name.find_first_of("/\\") != std::string::npos) return true;
    }
    return false;
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned seed) {
    if (seed % 8 == 0) return LLVMFuzzerMutate(data, size, maxSize);
    CacheMutator mutator({data, data + size}, seed);
    for (unsigned left = seed % 8; left > 0; --left) mutator.mutate();
    const std::string file = mutator.file();
    if (file.size() > maxSize) return size;
    return file.copy(reinterpret_cast<char*>(data), maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const MemoryFile given;  // made once: most inputs take no longer than a file's making
    static const MemoryFile written;
    static const MemoryFile writtenAgain;
    FuzzedPath on("/i/toolbox");
    given.set({data, data + size});
    vpUseToolboxCache(on.path, given.name().c_str(), "/i", false);
    if (!vpInToolboxCacheMode()) return 0;
    Fill(on.path);
    on.check();
    FuzzedPath::Drain(vpCreateAllSearch(on.path, nullptr, nullptr, vpReadCheckSkip), size + 1);

    CHECK(vpWritePathToCacheFile(on.path, written.name().c_str()));
    vpUseToolboxCache(on.path, written.name().c_str(), "/i", false);
    CHECK(vpInToolboxCacheMode());
    Fill(on.path);
    on.check();
    CHECK(vpWritePathToCacheFile(on.path, writtenAgain.name().c_str()));
    // Of several elements of one name each is found from where the search for it begins.
    CHECK(NamesTwice(written.text()) || HoldsNameWithSlash(given.text()) ||
          written.text() == writtenAgain.text());
    vpRevertFromToolboxCache(on.path);
    on.check();
    return 0;
}
