// The words that may be entered in a session: its commands and options, directories, and names on
// its path.
#pragma once

#include <string>
#include <vector>

#include "shell/session.h"

class SessionWords {
  public:
    explicit SessionWords(Session& session) : session_(session) {}

    // A CandidateFinder. Cost: what the path holds, once after forget().
    std::vector<std::string> find(const std::vector<std::string>& before, const std::string& begun);

    // The path may hold other names now.
    void forget() { sources_.clear(); }

  private:
    enum Kind { kNames, kClasses, kPathDirs, kCommands, kOptions };
    struct Source {
        Kind kind;
        std::string command;  // of the options
        std::vector<std::string> words;
    };
    const std::vector<std::string>& wordsOf(Kind kind, const std::string& command = "");
    std::vector<std::string> read(Kind kind, const std::string& command) const;
    std::vector<std::string> options(Kind kind, const std::string& command) const;

    Session& session_;
    std::vector<Source> sources_;  // those read since forget()
};
