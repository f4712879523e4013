#include "dir/name_record.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "dir/name_table.h"

PathNameInfo* PathNameInfo::Create(NameTable& table, uint32_t hash, std::string_view key,
                                   std::string_view spelling) {
    const bool sameText = key == spelling;
    const size_t textSize = (key.size() + 1) * (sameText ? 1 : 2);
    void* const place = AllocateOrFail(sizeof(PathNameInfo) + textSize);
    auto* record = ::new (place) PathNameInfo(table, hash);
    record->keyLength_ = static_cast<uint32_t>(key.size());
    record->firstSpellingIsKey_ = sameText;
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
    if (index == 0) return firstSpellingIsKey_ ? text() : text() + keyLength_ + 1;
    return further_->texts[index - 1].get();
}

uint32_t PathNameInfo::internSpelling(std::string_view text) {
    // Every spelling has the key's length.
    if (std::memcmp(spelling(0), text.data(), text.size()) == 0) return 0;
    if (further_ == nullptr) further_ = std::make_unique<FurtherSpellings>();
    const auto known = further_->indexes.find(text);
    if (known != further_->indexes.end()) return known->second;
    HkBlock<char> copy(DuplicateText(text));
    const std::string_view kept(copy.get(), text.size());
    further_->texts.push_back(std::move(copy));
    const auto index = static_cast<uint32_t>(further_->texts.size());
    further_->indexes.emplace(kept, index);
    return index;
}

NameList& PathNameInfo::listFor(NameCategory category) {
    if (all_ == nullptr) {
        if (sole_.empty()) soleCategory_ = category;
        if (category == soleCategory_) return sole_;
        auto* lists = static_cast<NameList*>(AllocateOrFail(kNameCategories * sizeof(NameList)));
        std::uninitialized_default_construct_n(lists, kNameCategories);
        lists[static_cast<int>(soleCategory_)] = sole_;
        all_.reset(lists);
    }
    return all_.get()[static_cast<int>(category)];
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
