#include "support/map_index.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

std::string LowerCased(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

}  // namespace

size_t MapIndex::addDirectory(std::string_view name) {
    directories_.emplace_back(name);
    return directories_.size() - 1;
}

void MapIndex::add(size_t directory, std::string_view file) {
    const size_t dot = std::min(file.rfind('.'), file.size());
    const std::string extension(file.substr(std::min(dot + 1, file.size())));
    files_.try_emplace(LowerCased(file.substr(0, dot)),
                       File{directory, std::string(file), extension});
}

unsigned int MapIndex::find(const char* name, const char** extensions, char* fullName) const {
    const auto found = files_.find(LowerCased(name));
    if (found == files_.end()) return 0;
    const File& file = found->second;
    if (file.name.compare(0, std::strlen(name), name) != 0) return 0;
    for (unsigned int i = 0; extensions[i] != nullptr; ++i) {
        if (file.extension != extensions[i]) continue;
        const std::string whole = directories_[file.directory] + "/" + file.name;
        std::memcpy(fullName, whole.c_str(), whole.size() + 1);
        return i + 1;
    }
    return 0;
}
