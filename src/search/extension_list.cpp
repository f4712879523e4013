#include "search/extension_list.h"

#include <cstring>

#include "pathname/compare.h"

namespace {

void* CopyList(const char* const* extensions) {
    size_t count = 0;
    size_t textSize = 0;
    for (; extensions[count] != nullptr; ++count) textSize += std::strlen(extensions[count]) + 1;
    const size_t pointersSize = (count + 1) * sizeof(char*);
    void* const block = AllocateOrFail(pointersSize + textSize);
    auto* const pointers = static_cast<const char**>(block);
    char* text = static_cast<char*>(block) + pointersSize;
    for (size_t i = 0; i < count; ++i) {
        const size_t size = std::strlen(extensions[i]) + 1;
        std::memcpy(text, extensions[i], size);
        pointers[i] = text;
        text += size;
    }
    pointers[count] = nullptr;
    return block;
}

unsigned int AcceptedAt(const char* const* entries, const char* extension, const char* given,
                        bool caseSensitive) {
    for (unsigned int i = 0; entries[i] != nullptr; ++i) {
        const char* const entry = WithoutDot(entries[i]);
        const char* const wanted = *entry != '\0' || given == nullptr ? entry : given;
        if (CompareNames(wanted, extension, caseSensitive) == 0) return i + 1;
    }
    return 0;
}

}  // namespace

ExtensionList::ExtensionList(const char** extensions, bool keep) : entries_(nullptr) {
    if (extensions == nullptr || extensions[0] == nullptr) return;
    entries_ = extensions;
    if (!keep) return;
    copy_.reset(CopyList(extensions));
    entries_ = static_cast<const char* const*>(copy_.get());
}

unsigned int ExtensionList::accept(const char* extension, const char* given,
                                   bool caseSensitive) const {
    if (given != nullptr &&
        (extension == nullptr || CompareNames(extension, given, caseSensitive) != 0)) {
        return 0;
    }
    return entries_ == nullptr ? kAnyExtension
                               : AcceptedAt(entries_, extension, given, caseSensitive);
}
