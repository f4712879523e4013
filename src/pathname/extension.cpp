#include <vpath/pathname.h>

#include "pathname/text.h"

int vpFindFileExt(const char* name) {
    const std::string_view text = TextOf(name);
    const size_t found = text.find_last_of("./");
    return found == text.npos || text[found] == '/' ? -1 : static_cast<int>(found);
}

char* vpChangeFileExtension(const char* name, char* dst, const char* newExt) {
    if (dst == nullptr) return nullptr;
    const std::string_view text = TextOf(name);
    const int dot = vpFindFileExt(name);
    const size_t kept = dot < 0 ? text.size() : static_cast<size_t>(dot);
    WriteText(dst, text.substr(0, kept));
    WriteText(dst + kept, TextOf(newExt));
    return dot < 0 ? dst : dst + kept;
}

char* vpGetBaseFileName(const char* name, char* dst) {
    if (dst == nullptr) return nullptr;
    const std::string_view text = TextOf(name);
    const size_t dot = text.rfind('.');
    return WriteText(dst, dot == 0 ? text : text.substr(0, dot));
}
