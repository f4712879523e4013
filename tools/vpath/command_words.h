// The commands and options as data, read off their definitions: completions and the manual page are
// made from it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

struct ValueWord {
    // What a shell offers in its place.
    enum Kind { kNothing, kFile, kDirectory, kDirectoryList, kWords };

    std::string name;  // "FILE"; empty: there is none
    Kind kind = kNothing;
    std::vector<std::string> words;
};

struct OptionWords {
    std::string shortName;  // "-a" or empty
    std::string longName;   // "--all" or empty
    std::string about;
    ValueWord value;
    bool isRequired;
};

struct ArgumentWord {
    ValueWord value;
    std::string about;
    bool isRequired;
    bool isMany;
};

struct CommandWords {
    std::vector<std::string> path;  // {"cache", "write"}; empty: what goes with all commands
    std::string about;
    std::vector<OptionWords> options;
    std::vector<ArgumentWord> arguments;
    std::vector<std::string> commands;  // the last words of those directly in it
};

// `app` and all commands below it, each before those in it. Options of no group are hidden.
std::vector<CommandWords> CommandWordsOf(const CLI::App& app);
