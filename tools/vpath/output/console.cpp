#include "output/console.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "output/exit_status.h"
#include "output/interruption.h"
#include "output/progress.h"

namespace {

void CheckOutput(bool written) {
    if (written) return;
    if (errno == EPIPE) throw OutputClosed();
    throw OutputFailed(std::string("cannot write the output: ") + std::strerror(errno));
}

}  // namespace

void Print(std::string_view text) {
    EndIfInterrupted();
    CheckOutput(std::fwrite(text.data(), 1, text.size(), stdout) == text.size());
}

void PrintLine(std::string_view line) {
    Print(line);
    Print("\n");
}

void FlushOutput() { CheckOutput(std::fflush(stdout) == 0); }

std::string OnOneLine(std::string_view text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            line += "\\n";
        } else if (c == '\t') {
            line += "\\t";
        } else if (byte < 0x20 || byte == 0x7f) {
            constexpr char kDigits[] = "0123456789abcdef";
            line += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
        } else {
            line += c;
        }
    }
    return line;
}

bool IsTerminal(int descriptor) {
    const char* kind = std::getenv("TERM");
    return isatty(descriptor) != 0 && kind != nullptr && std::strcmp(kind, "dumb") != 0;
}

void Complain(std::string_view text) {
    Progress::eraseShown();
    // In one piece: the lines of commands that run side by side do not mix.
    const std::string line = "vpath: " + OnOneLine(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}
