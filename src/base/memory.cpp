#include "base/memory.h"

#include <cstring>
#include <new>

#include "base/reporting.h"

void ReportOutOfMemory() {
    ReportError("Cannot allocate memory");
    hkOutOfMemoryCheck(nullptr);
}

void FailOutOfMemory() {
    ReportOutOfMemory();
    throw std::bad_alloc();  // only a host whose fatal check returns gets here
}

void* AllocateOrFail(size_t size) {
    void* block = hkMalloc(size == 0 ? 1 : size);
    if (block == nullptr) FailOutOfMemory();
    return block;
}

char* DuplicateText(std::string_view text) {
    auto* copy = static_cast<char*>(AllocateOrFail(text.size() + 1));
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}
