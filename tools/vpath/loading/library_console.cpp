#include "loading/library_console.h"

#include <cstdarg>
#include <cstdio>

#include <hostkit/hostkit.h>

#include "output/console.h"

namespace {

std::string* captured = nullptr;
std::string unfinishedLine;

void ComplainOfLines(std::string_view text) {
    unfinishedLine += text;
    size_t begin = 0;
    for (size_t end; (end = unfinishedLine.find('\n', begin)) != std::string::npos;) {
        Complain(std::string_view(unfinishedLine).substr(begin, end - begin));
        begin = end + 1;
    }
    unfinishedLine.erase(0, begin);
}

}  // namespace

ConsoleCapture::ConsoleCapture() { captured = &text_; }

ConsoleCapture::~ConsoleCapture() { captured = nullptr; }

int hkPrintf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length > 0) {
        std::string text(static_cast<size_t>(length) + 1, '\0');
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
        if (captured != nullptr) {
            *captured += text;
        } else {
            ComplainOfLines(text);
        }
    }
    va_end(again);
    return length;
}
