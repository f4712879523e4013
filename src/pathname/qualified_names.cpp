// Dotted names of packages, classes and objects, and the marks of their directories.
#include <algorithm>
#include <cstring>
#include <string_view>

#include <vpath/path.h>
#include <vpath/pathname.h>

#include "pathname/compare.h"
#include "pathname/text.h"

namespace {

constexpr char kPackageMark = '+';
constexpr char kClassMark = '@';

// A lone mark names nothing.
bool IsMarked(std::string_view component, char mark) {
    return component.size() > 1 && component.front() == mark;
}

// Steps through the components of a name; runs of '/' count as one.
class ComponentWalk {
  public:
    explicit ComponentWalk(const char* name) : rest_(TextOf(name)) { next(); }

    bool atEnd() const { return current_.empty(); }
    std::string_view current() const { return current_; }

    void next() {
        const size_t begin = rest_.find_first_not_of('/');
        rest_.remove_prefix(begin == rest_.npos ? rest_.size() : begin);
        current_ = rest_.substr(0, rest_.find('/'));
        rest_.remove_prefix(current_.size());
    }

  private:
    std::string_view rest_;
    std::string_view current_;
};

// A dotted name as it grows in the caller's buffer; what does not fit is only counted.
class DottedName {
  public:
    DottedName(char* dst, size_t size) : dst_(dst), size_(dst == nullptr ? 0 : size) { clear(); }

    bool empty() const { return parts_ == 0; }

    void appendMarked(std::string_view component) {
        if (parts_++ > 0) put(".");
        put(component.substr(1));
    }

    // The buffer, or null and an empty buffer when the name did not fit or `wanted` is not set.
    char* finish(bool wanted) {
        if (wanted && length_ < size_) {
            dst_[length_] = '\0';
            return dst_;
        }
        clear();
        return nullptr;
    }

  private:
    void put(std::string_view text) {
        if (length_ + text.size() < size_) std::memcpy(dst_ + length_, text.data(), text.size());
        length_ += text.size();
    }

    void clear() {
        if (size_ > 0) *dst_ = '\0';
    }

    char* dst_;
    size_t size_;
    size_t length_ = 0;
    size_t parts_ = 0;
};

// Leaves the walk at the component that ends the first run of packages.
void AppendPackages(ComponentWalk& walk, DottedName& name) {
    while (!walk.atEnd() && !IsMarked(walk.current(), kPackageMark)) walk.next();
    for (; IsMarked(walk.current(), kPackageMark); walk.next()) name.appendMarked(walk.current());
}

// The first `mark` that begins a component, or npos.
size_t FindMark(std::string_view name, char mark) {
    for (size_t at = name.find(mark); at != name.npos; at = name.find(mark, at + 1)) {
        if (at == 0 || name[at - 1] == '/') return at;
    }
    return name.npos;
}

// Whether the file whose innermost class directory is followed by `below` belongs to that class:
// it stands in that directory itself or anywhere under its private directory.
bool BelongsToClass(std::string_view below) {
    constexpr std::string_view kPrivate = "/private";
    if (below.size() >= kPrivate.size() &&
        CompareNamePrefix(below.data(), kPrivate.data(), kPrivate.size(), false) == 0) {
        return true;
    }
    return below.find('/', 1) == below.npos;
}

// Where the run of class components begins whose last one begins at `mark`.
size_t OutermostClass(std::string_view name, size_t mark) {
    while (mark >= 2 && name[mark - 1] == '/') {
        const size_t outer = name.rfind('/', mark - 2) + 1;  // npos + 1 is 0
        if (!IsMarked(name.substr(outer, mark - 1 - outer), kClassMark)) break;
        mark = outer;
    }
    return mark;
}

}  // namespace

char* vpGetPackageNameFromFullName(const char* fullName, char* dst, size_t size) {
    DottedName name(dst, size);
    ComponentWalk walk(fullName);
    AppendPackages(walk, name);
    return name.finish(!name.empty());
}

char* vpGetClassNameFromFullName(const char* fullName, char* dst, size_t size) {
    DottedName name(dst, size);
    ComponentWalk walk(fullName);
    AppendPackages(walk, name);
    if (name.empty()) {
        walk = ComponentWalk(fullName);
        while (!walk.atEnd() && !IsMarked(walk.current(), kClassMark)) walk.next();
    }
    const bool hasClass = IsMarked(walk.current(), kClassMark);
    for (; IsMarked(walk.current(), kClassMark); walk.next()) name.appendMarked(walk.current());
    return name.finish(hasClass);
}

char* vpGetObjectNameFromPath(vpPath, const char* fullName, char* dst, size_t size) {
    if (dst == nullptr || size == 0) return nullptr;
    *dst = '\0';
    const std::string_view name = TextOf(fullName);
    const size_t mark = name.rfind(kClassMark);
    if (mark == name.npos || (mark > 0 && name[mark - 1] != '/')) return nullptr;
    const size_t end = std::min(name.find('/', mark), name.size());
    if (!IsMarked(name.substr(mark, end - mark), kClassMark)) return nullptr;
    if (!BelongsToClass(name.substr(end))) return nullptr;

    const size_t begin = OutermostClass(name, mark) + 1;
    if (end - begin >= size) return nullptr;
    char* out = dst;
    for (size_t at = begin; at < end; ++at) {
        const bool nextClass = name[at] == '/';
        *out++ = nextClass ? '.' : name[at];
        if (nextClass) ++at;  // and its mark
    }
    *out = '\0';
    return dst;
}

char* vpGetQualifiedNameFromPath(const char* fullName, char* dst) {
    if (dst == nullptr) return nullptr;
    *dst = '\0';
    const std::string_view name = TextOf(fullName);
    if (const size_t mark = name.rfind(kClassMark); mark != name.npos) {
        return WriteText(dst, name.substr(mark + 1));
    }
    const size_t found = name.find("private");
    if (found == name.npos) return nullptr;
    // The character before is the separator of the private directory; the one wanted is before it.
    const size_t separator = found < 2 ? name.npos : name.rfind('/', found - 2);
    return WriteText(dst, name.substr(separator + 1));  // npos + 1 is 0
}

bool vpIsDirNameMethodDirName(const char* dirName) {
    return FindMark(TextOf(dirName), kClassMark) != std::string_view::npos;
}

char* vpGetPackageDirName(const char* dirName) {
    const size_t at = FindMark(TextOf(dirName), kPackageMark);
    return at == std::string_view::npos ? nullptr : const_cast<char*>(dirName + at);
}

bool vpIsDirNamePackageDirName(const char* dirName) {
    return vpGetPackageDirName(dirName) != nullptr;
}
