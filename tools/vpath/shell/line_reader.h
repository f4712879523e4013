// Lines as they are entered: at a prompt, with editing, history and completion, or from a pipe.
#pragma once

#include <memory>
#include <string>

#include "shell/completion.h"

class LineReader {
  public:
    enum class Result { kLine, kEnd, kInterrupted };

    LineReader() = default;
    virtual ~LineReader() = default;
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    // The next line of standard input without its line feed; the last one may lack it. Throws
    // CommandError when there is one but it cannot be read.
    virtual Result read(const char* prompt, std::string& line) = 0;

    // Keeps a line for the history.
    virtual void remember(const std::string& line) = 0;
};

std::unique_ptr<LineReader> MakePipeReader();

// To be called after NoteInterrupts; one at a time. Standard input and output are a terminal.
std::unique_ptr<LineReader> MakeTerminalReader(CandidateFinder find);
