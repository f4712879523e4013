// Everything that the command writes: answers on standard output, everything else on standard
// error.
#pragma once

#include <string>
#include <string_view>

#include "output/exit_status.h"

// Thrown when the reader of standard output has gone away; the command then ends quietly.
struct OutputClosed {};

// The output cannot be written for another reason: nothing that goes on after errors goes on.
struct OutputFailed : CommandError {
    using CommandError::CommandError;
};

// Write to standard output. The text is written as it is, whatever bytes it holds. Throw
// OutputClosed or OutputFailed; and LineInterrupted where interrupts are noted.
void Print(std::string_view text);
void PrintLine(std::string_view line);
void FlushOutput();

// Control characters, which file names may hold, as \n, \t or \x1b; everything else as it is.
std::string OnOneLine(std::string_view text);

// Whether that is a terminal that knows control sequences.
bool IsTerminal(int descriptor);

// "vpath: " and the text, as exactly one line on standard error: see OnOneLine.
void Complain(std::string_view text);
