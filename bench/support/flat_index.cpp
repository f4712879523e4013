#include "support/flat_index.h"

#include <bit>
#include <cstring>

namespace {

constexpr size_t kPadding = 8;  // whole words are read past the end of the last name
constexpr size_t kLongestName = 256;

uint64_t WordAt(const char* p) {
    uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

constexpr uint64_t Everywhere(uint64_t byte) { return byte * 0x0101010101010101U; }

// Lower-cases eight ASCII letters at once.
uint64_t FoldWord(uint64_t word) {
    const uint64_t low7 = word & Everywhere(0x7F);
    const uint64_t aboveZ = low7 + Everywhere(0x7F - 'Z');
    const uint64_t fromA = low7 + Everywhere(0x80 - 'A');
    const uint64_t upper = (fromA ^ aboveZ) & ~word & Everywhere(0x80);
    return word | upper >> 2;
}

// Keeps the first `count` bytes of a word, 1 to 8.
uint64_t Head(uint64_t word, size_t count) { return word << (64 - 8 * count) >> (64 - 8 * count); }

}  // namespace

// A lower-cased name in whole words, the last one filled with zeros.
struct FlatKey {
    FlatKey(const char* text, size_t size) : length(size), wordCount((size + 7) / 8) {
        uint64_t state = size;
        for (size_t i = 0; i < wordCount; ++i) {
            words[i] = foldedWord(text, i);
            state = (state ^ words[i]) * 0x9FB21C651E98DF25U;
            state ^= state >> 32;
        }
        hash = static_cast<uint32_t>(state);
    }

    uint64_t foldedWord(const char* text, size_t i) const {
        const size_t left = length - 8 * i;
        if (left >= 8) return FoldWord(WordAt(text + 8 * i));
        uint64_t last = 0;
        std::memcpy(&last, text + 8 * i, left);
        return FoldWord(last);
    }

    // `text` can be read in whole words.
    bool folds(const char* text, size_t size) const {
        if (size != length) return false;
        for (size_t i = 0; i < wordCount; ++i) {
            const size_t left = length - 8 * i;
            const uint64_t word = WordAt(text + 8 * i);
            if (FoldWord(left >= 8 ? word : Head(word, left)) != words[i]) return false;
        }
        return true;
    }

    size_t length;
    size_t wordCount;
    uint32_t hash;
    uint64_t words[kLongestName / 8];
};

FlatIndex::FlatIndex(size_t files)
    : slots_(std::bit_ceil(2 * files + 2)), lastOfSlot_(slots_.size()) {
    text_.resize(sizeof(Record));  // place 0 means none
    addDirectory("");              // so that no scope is 0
}

uint32_t FlatIndex::addDirectory(std::string_view name) {
    directories_.push_back(
        {static_cast<uint32_t>(directoryText_.size()), static_cast<uint32_t>(name.size())});
    directoryText_.insert(directoryText_.end(), name.begin(), name.end());
    return static_cast<uint32_t>(directories_.size() - 1);
}

FlatIndex::Record FlatIndex::recordAt(uint32_t record) const {
    Record head;
    std::memcpy(&head, text_.data() + record, sizeof head);
    return head;
}

// The slot that holds the key, or the free one where it would stand.
uint32_t FlatIndex::slotOf(const FlatKey& key, uint32_t scope) const {
    const uint32_t mask = static_cast<uint32_t>(slots_.size() - 1);
    const uint32_t hash = key.hash ^ scope * 0x9E3779B9U;
    for (uint32_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const uint32_t record = slots_[slot].record;
        if (record == 0) return slot;
        if (slots_[slot].hash != hash) continue;
        const Record head = recordAt(record);
        if (head.scope == scope && key.folds(nameOf(record), head.baseLength)) return slot;
    }
}

uint32_t FlatIndex::appendRecord(const Record& record, std::string_view file) {
    const auto place = static_cast<uint32_t>(text_.size());
    const auto* const head = reinterpret_cast<const char*>(&record);
    text_.insert(text_.end(), head, head + sizeof record);
    text_.insert(text_.end(), file.begin(), file.end());
    text_.resize((text_.size() + kPadding + 3) / 4 * 4);
    return place;
}

void FlatIndex::add(uint32_t directory, std::string_view file, uint32_t scope) {
    const size_t dot = file.rfind('.');
    const size_t baseLength = dot == std::string_view::npos ? file.size() : dot;
    const FlatKey key(file.data(), baseLength);
    const uint32_t slot = slotOf(key, scope);
    const uint32_t place = appendRecord({0, directory, scope, static_cast<uint16_t>(baseLength),
                                         static_cast<uint16_t>(file.size())},
                                        file);
    if (slots_[slot].record == 0) {
        slots_[slot] = {key.hash ^ scope * 0x9E3779B9U, place};
    } else {
        std::memcpy(text_.data() + lastOfSlot_[slot], &place, sizeof place);  // Record::next
    }
    lastOfSlot_[slot] = place;
}

unsigned int FlatIndex::find(const char* name, const char** extensions, char* fullName,
                             uint32_t scope) const {
    const size_t length = std::strlen(name);
    if (length > kLongestName) return 0;
    const FlatKey key(name, length);
    for (uint32_t record = slots_[slotOf(key, scope)].record; record != 0;) {
        const Record head = recordAt(record);
        const char* const file = nameOf(record);
        record = head.next;
        if (std::memcmp(file, name, length) != 0) continue;
        const bool hasExtension = head.length > head.baseLength;
        const std::string_view extension(file + head.baseLength + (hasExtension ? 1 : 0),
                                         head.length - head.baseLength - (hasExtension ? 1U : 0U));
        for (unsigned int i = 0; extensions[i] != nullptr; ++i) {
            if (extension != extensions[i]) continue;
            const Directory directory = directories_[head.directory];
            std::memcpy(fullName, directoryText_.data() + directory.place, directory.length);
            fullName[directory.length] = '/';
            std::memcpy(fullName + directory.length + 1, file, head.length);
            fullName[directory.length + 1 + head.length] = '\0';
            return i + 1;
        }
    }
    return 0;
}

size_t FlatIndex::bytes() const {
    return slots_.size() * sizeof(Slot) + text_.size() + directories_.size() * sizeof(Directory) +
           directoryText_.size();
}
