// Everything that the command writes: answers on standard output, everything else on standard
// error.
#pragma once

#include <initializer_list>
#include <string_view>

// Thrown when the reader of standard output has gone away; the command then ends quietly.
struct OutputClosed {};

// Write to standard output. The text is written as it is, whatever bytes it holds. Throw
// OutputClosed, or CommandError when the output cannot be written for another reason.
void Print(std::string_view text);
void PrintLine(std::string_view line);
void PrintColumns(std::initializer_list<std::string_view> columns);  // a line, tabs between them
void FlushOutput();

// "vpath: " and the text, as exactly one line on standard error: control characters, which file
// names may hold, are shown as \n, \t or \x1b.
void Complain(std::string_view text);
