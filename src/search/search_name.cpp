#include "search/search_name.h"

#include <cstring>
#include <utility>

SearchName::SearchName(NormalizedName text, size_t length) : text_(std::move(text)) {
    if (length == 0) text_.reset();
    if (text_ == nullptr) return;
    cutExtension(length);
    cutDirectory(std::strlen(text_.get()));
    if (*base_ == '@' || *base_ == '+') mark_ = *base_++;
    baseLength_ = std::strlen(base_);
}

// The first character of the whole name is neither the dot of an extension nor a separator.
void SearchName::cutExtension(size_t length) {
    char* const text = text_.get();
    for (size_t i = length - 1; i >= 1 && text[i] != '/'; --i) {
        if (text[i] != '.') continue;
        text[i] = '\0';
        if (i + 1 < length) extension_ = text + i + 1;
        return;
    }
}

void SearchName::cutDirectory(size_t length) {
    char* const text = text_.get();
    base_ = text;
    for (size_t i = length; i-- > 1;) {
        if (text[i] != '/') continue;
        if (separatorCount_++ != 0) continue;
        text[i] = '\0';
        base_ = text + i + 1;
        directory_ = text;
    }
}

void SearchName::joinExtension() {
    if (extension_ == nullptr) return;
    extension_[-1] = '.';
    extension_ = nullptr;
    baseLength_ = std::strlen(base_);
}
