#include "pathname/folded_name.h"

#include <cstring>

#include "base/memory.h"
#include "pathname/text.h"

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
    if (length_ >= kInPlace) text_ = static_cast<char*>(AllocateOrFail(length_ + 1));
    hkLowerCase(WriteText(text_, name));
    hash_ = hk_hash_string(0, text_);
}
