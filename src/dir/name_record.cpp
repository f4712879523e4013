#include "dir/name_record.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "dir/name_table.h"

static_assert(sizeof(PathNameInfo) == 56);  // half the files of a path have one

PathNameInfo* PathNameInfo::Create(NameTable& table, uint32_t hash, std::string_view key,
                                   std::string_view spelling) {
    const bool sameText = key == spelling;
    const size_t textSize = (key.size() + 1) * (sameText ? 1 : 2);
    void* const place = AllocateOrFail(sizeof(PathNameInfo) + textSize);
    auto* record = ::new (place) PathNameInfo(table, hash, key, sameText);
    char* text = record->text();
    std::memcpy(text, key.data(), key.size());
    text[key.size()] = '\0';
    if (!sameText) {
        text += key.size() + 1;
        std::memcpy(text, spelling.data(), spelling.size());
        text[spelling.size()] = '\0';
    }
    return record;
}

void PathNameInfo::Destroy(PathNameInfo* record) {
    record->~PathNameInfo();
    hkFree(record);
}

const char* PathNameInfo::spelling(uint32_t index) const {
    if (index == 0) return firstSpellingIsKey_ != 0 ? text() : text() + keyLength_ + 1;
    return more_->texts[index - 1].get();
}

uint32_t PathNameInfo::internSpelling(std::string_view text) {
    // Every spelling has the key's length.
    if (std::memcmp(spelling(0), text.data(), text.size()) == 0) return 0;
    const auto known = more().indexes.find(text);
    if (known != more_->indexes.end()) return known->second;
    HkBlock<char> copy(DuplicateText(text));
    const std::string_view kept(copy.get(), text.size());
    more_->texts.push_back(std::move(copy));
    const auto index = static_cast<uint32_t>(more_->texts.size());
    more_->indexes.emplace(kept, index);
    return index;
}

PathNameInfo::More& PathNameInfo::more() {
    if (more_ == nullptr) more_ = std::make_unique<More>();
    return *more_;
}

NameList& PathNameInfo::listFor(NameCategory category) {
    const auto index = static_cast<uint32_t>(category);
    if (more_ == nullptr || more_->lists == nullptr) {
        if (sole_.empty()) soleCategory_ = index & 0xFU;
        if (index == soleCategory_) return sole_;
        HkBlock<NameList>& all = more().lists;
        auto* lists = static_cast<NameList*>(AllocateOrFail(kNameCategories * sizeof(NameList)));
        std::uninitialized_default_construct_n(lists, kNameCategories);
        lists[soleCategory_] = sole_;
        all.reset(lists);
    }
    return more_->lists.get()[index];
}

NameRecordRef::NameRecordRef(PathNameInfo* record) : record_(record) {
    if (record_ != nullptr) ++record_->pins;
}

NameRecordRef::~NameRecordRef() {
    if (record_ == nullptr) return;
    --record_->pins;
    ReleaseIfEmpty(*record_);
}

void NameRecordRef::reset(PathNameInfo* record) {
    if (record != nullptr) ++record->pins;
    PathNameInfo* const old = std::exchange(record_, record);
    if (old == nullptr) return;
    --old->pins;
    ReleaseIfEmpty(*old);
}

void ReleaseIfEmpty(PathNameInfo& record) {
    if (record.linkedItems != 0 || record.pins != 0) return;
    if (record.table != nullptr) record.table->remove(record);
    PathNameInfo::Destroy(&record);
}
