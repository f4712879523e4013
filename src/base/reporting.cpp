#include "base/reporting.h"

#include <cstdio>
#include <cstring>

#include "base/memory.h"

namespace {

constexpr size_t kKeptOfLongArgument = 4348;

// Any line with a name that is not longer than names are. It stands on the stack: what is told may
// be that there is no memory.
constexpr size_t kOrdinaryLine = kLongestEchoedName + 256;

template <class... Arguments>
void Send(vpMessageFcn channel, const char* format, Arguments... arguments) {
    char ordinary[kOrdinaryLine];
    const int length = std::snprintf(ordinary, sizeof ordinary, format, arguments...);
    if (length < 0) return;
    const size_t size = static_cast<size_t>(length) + 1;
    if (size <= sizeof ordinary) {
        channel(ordinary);
        return;
    }
    const HkBlock<char> line(static_cast<char*>(hkMalloc(size)));
    if (line == nullptr) {
        ReportOutOfMemory();
        return;
    }
    std::snprintf(line.get(), size, format, arguments...);
    channel(line.get());
}

void Report(vpMessageFcn channel, const char* format, const char* argument) {
    if (channel == nullptr) return;
    if (argument == nullptr) {
        channel(format);
    } else {
        Send(channel, format, argument);
    }
}

void ReportAbout(vpMessageFcn channel, const char* message, const char* name) {
    if (channel != nullptr) Send(channel, "%s: %.*s", message, kLongestEchoedName, name);
}

}  // namespace

vpEnvironmentFcns& MessageFunctions() {
    static vpEnvironmentFcns functions{nullptr, nullptr, nullptr};
    return functions;
}

void ReportError(const char* format, const char* argument) {
    Report(MessageFunctions().error, format, argument);
}

void ReportInfo(const char* format, const char* argument) {
    Report(MessageFunctions().info, format, argument);
}

void ReportWarning(const char* format, const char* argument) {
    vpMessageFcn const channel = MessageFunctions().warning;
    if (channel == nullptr || argument == nullptr || std::strlen(argument) < kLongestEchoedName) {
        Report(channel, format, argument);
        return;
    }
    const HkBlock<char> cut(static_cast<char*>(hkCalloc(kKeptOfLongArgument + sizeof "...", 1)));
    if (cut == nullptr) {
        ReportOutOfMemory();
        return;
    }
    std::memcpy(cut.get(), argument, kKeptOfLongArgument);
    std::memcpy(cut.get() + kKeptOfLongArgument, "...", sizeof "...");
    Report(channel, format, cut.get());
}

void ReportErrorAbout(const char* message, const char* name) {
    ReportAbout(MessageFunctions().error, message, name);
}

void ReportWarningAbout(const char* message, const char* name) {
    ReportAbout(MessageFunctions().warning, message, name);
}
