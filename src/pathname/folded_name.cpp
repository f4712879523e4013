#include "pathname/folded_name.h"

#include <cstring>

#include "base/memory.h"

namespace {

constexpr size_t kWord = sizeof(uint64_t);

template <class Number>
uint64_t NumberAt(const char* p) {
    Number number;
    std::memcpy(&number, p, sizeof number);
    return number;
}

// The last 0 to 7 bytes of a name, as a word filled up with zeros.
uint64_t LastWord(std::string_view name) {
    const size_t count = name.size() % kWord;
    const char* const end = name.data() + name.size();
    if (count == 0) return 0;
    if (name.size() >= kWord) return NumberAt<uint64_t>(end - kWord) >> (8 * (kWord - count));
    if (count >= 4) {
        return NumberAt<uint32_t>(name.data()) | NumberAt<uint32_t>(end - 4) << (8 * (count - 4));
    }
    const size_t middle = count / 2;
    return NumberAt<uint8_t>(name.data()) |
           NumberAt<uint8_t>(name.data() + middle) << (8 * middle) |
           NumberAt<uint8_t>(end - 1) << (8 * (count - 1));
}

// Copies a name and a NUL a word at a time: a processor hands on what was just stored only when it
// is read again as it was written, and the name is next read in words, to be folded and hashed.
void CopyWords(char* to, std::string_view name) {
    size_t at = 0;
    for (; at + kWord <= name.size(); at += kWord) std::memcpy(to + at, name.data() + at, kWord);
    const uint64_t last = LastWord(name);
    std::memcpy(to + at, &last, kWord);
}

}  // namespace

FoldedName::FoldedName(const char* name) {
    inPlace_[0] = '\0';
    if (name != nullptr) fold(name);
}

FoldedName::FoldedName(std::string_view name) { fold(name); }

FoldedName::~FoldedName() {
    if (text_ != inPlace_) hkFree(text_);
}

void FoldedName::fold(std::string_view name) {
    length_ = name.size();
    const size_t words = length_ / kWord + 1;
    if (length_ >= kInPlace) text_ = static_cast<char*>(AllocateOrFail(words * kWord));
    CopyWords(text_, name);
    hkLowerCase(text_);
    hash_ = hk_hash_string(0, text_);
}
