#include "cachefile/cache_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "output/exit_status.h"

CacheFile::CacheFile(const std::string& fileName) {
    std::ifstream file(fileName, std::ios::binary);
    if (file) text_.assign(std::istreambuf_iterator<char>(file), {});
    if (!file) throw CommandError(fileName + ": " + std::strerror(errno));
    text_.resize(std::min(text_.size(), text_.find('\xFF')));  // counts as the end of the file
    skipPast('>');
}

std::string_view CacheFile::date() const {
    const std::string_view header = std::string_view(text_).substr(0, text_.find('>'));
    constexpr std::string_view kDate = " date=\"";
    const size_t begin = header.find(kDate);
    if (begin == std::string_view::npos) return {};
    const std::string_view rest = header.substr(begin + kDate.size());
    return rest.substr(0, rest.find('"'));
}

std::optional<CacheFile::Element> CacheFile::next() {
    if (!skipPast('<') || at_ == text_.size()) return std::nullopt;
    const char letter = text_[at_++];
    if (letter == '/') {
        if (depth_ == 0 || !skipPast('>')) return std::nullopt;
        return Element{Element::kClosing, 'D', "", --depth_};
    }
    if (!skipPast('"')) return std::nullopt;
    const size_t begin = at_;
    if (!skipPast('"')) return std::nullopt;
    std::string name = text_.substr(begin, at_ - 1 - begin);
    std::replace(name.begin(), name.end(), '\\', '/');
    if (!skipPast('>')) return std::nullopt;
    if (letter == 'D') return Element{Element::kOpening, letter, name, depth_++};
    return Element{Element::kItem, letter, name, depth_};
}

bool CacheFile::skipPast(char wanted) {
    const size_t found = text_.find(wanted, at_);
    if (found == std::string::npos) {
        at_ = text_.size();
        return false;
    }
    at_ = found + 1;
    return true;
}
