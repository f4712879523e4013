#include "options/stdin_names.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "output/exit_status.h"

std::optional<std::string> StdinNames::next() {
    std::string name;
    for (;;) {
        errno = 0;
        const int c = std::getchar();
        if (c == EOF && std::ferror(stdin) != 0) {
            throw CommandError(std::string("--stdin: cannot read: ") + std::strerror(errno));
        }
        if (c != EOF && c != end_) {
            if (c == '\0') throw CommandError("--stdin: NUL byte in a line; give -0 too");
            name += static_cast<char>(c);
        } else if (!name.empty()) {
            return name;
        } else if (c == EOF) {
            return std::nullopt;
        }
    }
}
