// Records as text and as JSON.
#pragma once

#include <string>

#include "output/record.h"

// The columns with tabs between them, or the record's own text, without a final line feed. Names
// stand as they are, whatever bytes they hold, but control characters in columns do as \n, \t or
// \x1b when `forTerminal`.
std::string TextOf(const Record& record, bool colored, bool forTerminal);

// One line without its line feed: UTF-8 and no control characters. Texts that are not UTF-8 stand
// as {"base64": "..."}.
std::string JsonOf(const Record& record);
