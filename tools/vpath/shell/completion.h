// What may follow where a line is being entered.
#pragma once

#include <functional>
#include <string>
#include <vector>

// The words that begin with `begun`, given the words before it, sorted, each once. One that ends in
// a '/' goes on.
using CandidateFinder = std::function<std::vector<std::string>(
    const std::vector<std::string>& before, const std::string& begun)>;

struct Completion {
    std::string insertion;                // what all candidates share, as it stands in the line
    std::vector<std::string> candidates;  // when there is nothing to insert
};

// `line` ends where the cursor stands.
Completion Complete(const std::string& line, const CandidateFinder& find);
