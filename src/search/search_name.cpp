#include "search/search_name.h"

#include <cstring>
#include <utility>

#include "base/memory.h"
#include "base/reporting.h"
#include "pathname/components.h"
#include "pathname/normalize.h"
#include "pathname/text.h"

bool NormalizeSearchName(const char* name, NormalizedSearchName& normalized) {
    const std::string_view given = TextOf(name);
    if (given.empty()) return true;
    if (IsNormalizedDirName(given)) {
        normalized.text = name;
        normalized.length = given.size();
        return true;
    }
    int length = 0;
    char* text = nullptr;
    const char* const failure = vpNormalizeDirName(name, false, 0, &length, &text);
    normalized.owned.reset(text);
    normalized.length = static_cast<size_t>(length);
    if (length > 0) normalized.text = text;
    if (failure != nullptr) ReportWarningAbout(failure, name);
    return failure == nullptr;
}

SearchName::SearchName(NormalizedSearchName normalized) {
    if (normalized.text == nullptr) return;
    char* const text = takeCopy(normalized);
    cutExtension(text, normalized.length);
    cutDirectory(text);
    if (IsMark(*base_)) mark_ = *base_++;
    baseLength_ = std::strlen(base_);
}

char* SearchName::takeCopy(NormalizedSearchName& normalized) {
    if (normalized.length < sizeof short_) {
        std::memcpy(short_, normalized.text, normalized.length + 1);
        return short_;
    }
    long_ = std::move(normalized.owned);
    if (long_ == nullptr) long_.reset(DuplicateText({normalized.text, normalized.length}));
    return long_.get();
}

// The first character of the whole name is neither the dot of an extension nor a separator.
void SearchName::cutExtension(char* text, size_t length) {
    for (size_t i = length - 1; i >= 1 && text[i] != '/'; --i) {
        if (text[i] != '.') continue;
        text[i] = '\0';
        if (i + 1 < length) extension_ = text + i + 1;
        return;
    }
}

void SearchName::cutDirectory(char* text) {
    base_ = text;
    for (size_t i = std::strlen(text); i-- > 1;) {
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
