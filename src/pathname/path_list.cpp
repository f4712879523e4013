#include "pathname/path_list.h"

#include <cstring>

#include "base/reporting.h"
#include "pathname/normalize.h"

const char* NextPathListEntry(const char* list) {
    if (list == nullptr) return nullptr;
    const size_t length = std::strcspn(list, ":;");
    if (length > kLongestDirName) {
        // Not the error channel: its text would hold the whole list, however long.
        ReportWarning("Directory name too long: %s", list);
        return nullptr;
    }
    const char* end = list + length;
    return *end == '\0' ? end : end + 1;
}
