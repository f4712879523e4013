// A line as a POSIX shell splits a simple command: words between blanks, '...' as it stands, "..."
// in which a backslash spares $, `, " and \, a backslash elsewhere sparing what follows, a '#' that
// begins a word beginning a remark. Nothing is expanded.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct Words {
    std::vector<std::string> words;
    char quote = '\0';             // the one that the line leaves open
    bool endsInBackslash = false;  // the next line belongs to this one
    bool isRemark = false;         // at its end
    bool isLastOpen = false;       // more of the last word may follow
};

Words SplitWords(std::string_view line);

// Goes on with what the line is followed by; a backslash at its end counts for nothing.
void AddWords(std::string_view line, Words& result);

// The text as it stands in a line, where that quote is open: '\0' for none.
std::string Quoted(std::string_view text, char quote);
