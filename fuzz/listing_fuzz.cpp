// Listings: any names with any attribute words, changed from one call to the next.
#include <hostkit/hostkit.h>

#include <cstring>

#include "fuzzed_path.h"

namespace {

Input* theInput;

// The next listing of the input: a line of names with '|' between them, a byte of each word before
// its name.
char* List(vpPath, const char*, unsigned int** wordsOut) {
    std::string names;
    std::string words;
    std::string line = theInput->text();
    if (line.empty()) return nullptr;
    const bool hasWords = line[0] != '-';
    for (size_t at = 0; at < line.size();) {
        const size_t end = std::min(line.find('|', at), line.size());
        if (end > at + 1) {
            words += line[at];
            names.append(line, at + 1, end - at - 1) += '\0';
        }
        at = end + 1;
    }
    auto* const listing = static_cast<char*>(hkMalloc(names.size() + 1));
    std::memcpy(listing, names.c_str(), names.size() + 1);
    if (!hasWords) return listing;
    *wordsOut = static_cast<unsigned int*>(hkMalloc((words.size() + 1) * sizeof(unsigned int)));
    for (size_t i = 0; i < words.size(); ++i) {
        const auto bits = static_cast<unsigned int>(words[i]);
        (*wordsOut)[i] = (bits & 3U) | (bits & 0xCU) << 12U;
    }
    return listing;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    theInput = &input;
    FuzzedPath on;
    vpSetIOFcns(
        on.path, List, [](vpPath, const char*) { return vpDirAccessible; }, FakeHost::isReadable,
        [](vpPath, const char* name) { return std::strlen(name) % 5 != 0; },
        FakeHost::modificationTime);
    vpAddDirsString(on.path, "/a:/b", vpAddAtEnd);
    on.check();
    for (int round = 0; round < 4 && !input.empty(); ++round) {
        vpRefreshAllDirectories(on.path, vpRefreshAlways);
        on.check();
    }
    for (const auto create : {vpCreateAllSearch, vpCreateMethodSearch}) {
        FuzzedPath::Drain(create(on.path, nullptr, nullptr, vpReadCheckSkip), size + 1);
    }
    return 0;
}
