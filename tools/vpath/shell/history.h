// The lines that were entered at the prompt, in a file that outlives the session.
#pragma once

#include <string>
#include <vector>

// $XDG_STATE_HOME/vpath/history or ~/.local/state/vpath/history; empty where neither is known.
std::string HistoryFileName();

// Sessions side by side add to one file. It is for its owner's eyes alone. What cannot be read or
// written is forgotten without a word.
class HistoryFile {
  public:
    explicit HistoryFile(std::string name);

    // The last lines, oldest first.
    std::vector<std::string> read() const;

    // Makes the file, and the directories that lead to it, when it is not there.
    void append(const std::string& line) const;

  private:
    std::string name_;
};
