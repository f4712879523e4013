// The three message channels through which every text leaves the library.
#pragma once

#include <vpath/path.h>

// A directory name echoed with a precision is cut after this many characters.
inline constexpr int kLongestEchoedName = 4353;

// The functions in force; a null function silences its channel.
vpEnvironmentFcns& MessageFunctions();

// Each formats `format` with `argument` when there is one (exactly one %s or %.*s, see below) and
// hands the finished line to its channel. Nothing is formatted for a silent channel.
void ReportError(const char* format, const char* argument = nullptr);
void ReportInfo(const char* format, const char* argument = nullptr);

// As above, but an argument of kLongestEchoedName characters or more is cut: its first 4348
// characters and "..." stand for it, so that a runaway name cannot flood the console.
void ReportWarning(const char* format, const char* argument = nullptr);

// Reports `message` followed by ": " and at most kLongestEchoedName characters of `name`; that
// precision is the only cut.
void ReportErrorAbout(const char* message, const char* name);
void ReportWarningAbout(const char* message, const char* name);
