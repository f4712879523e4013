#include "pathname/tilde.h"

#include <pwd.h>

#include <cstdlib>
#include <cstring>

#include <vpath/pathname.h>

#include "pathname/text.h"

namespace {

constexpr size_t kLongestUserName = 8;

const char* HomeOfUser(std::string_view user, PasswordScratch& scratch) {
    if (user.size() > kLongestUserName) return nullptr;
    char name[kLongestUserName + 1];
    WriteText(name, user);
    passwd entry;
    passwd* found = nullptr;
    if (getpwnam_r(name, &entry, scratch.bytes, sizeof scratch.bytes, &found) != 0) return nullptr;
    return found == nullptr ? nullptr : found->pw_dir;
}

}  // namespace

bool SplitTilde(const char* name, PasswordScratch& scratch, TildeParts* out) {
    *out = {"", name};
    if (*name != '~') return false;
    const char* user = name + 1;
    const size_t userLength = std::strcspn(user, "/");
    const char* home =
        userLength == 0 ? std::getenv("HOME") : HomeOfUser({user, userLength}, scratch);
    if (home == nullptr) return false;
    *out = {home, user + userLength};
    return true;
}

char* vpTildeExpansion(char* dst, char* name) {
    if (dst == nullptr || name == nullptr) return name;
    PasswordScratch scratch;
    TildeParts parts;
    if (!SplitTilde(name, scratch, &parts)) return name;
    const std::string_view home(parts.home);
    WriteText(dst + home.size(), parts.rest);  // first, as `dst` may be `name`
    std::memcpy(dst, home.data(), home.size());
    return dst;
}
