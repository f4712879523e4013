#include "shell/completion.h"

#include <algorithm>

#include "shell/words.h"

namespace {

// Of sorted words, what all begin with; characters are not cut.
std::string SharedBeginning(const std::vector<std::string>& sorted) {
    const std::string& first = sorted.front();
    const std::string& last = sorted.back();
    const auto differ = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
    std::string shared(first.begin(), differ);
    const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    if (differ == first.end() || !isInside(*differ)) return shared;
    while (!shared.empty() && isInside(shared.back())) shared.pop_back();
    if (!shared.empty()) shared.pop_back();
    return shared;
}

}  // namespace

Completion Complete(const std::string& line, const CandidateFinder& find) {
    Words words = SplitWords(line);
    if (words.isRemark || words.endsInBackslash) return {};
    std::string begun;
    if (words.isLastOpen) {
        begun = words.words.back();
        words.words.pop_back();
    }
    std::vector<std::string> candidates = find(words.words, begun);
    if (candidates.empty()) return {};
    const std::string shared = SharedBeginning(candidates);
    std::string insertion;
    if (shared.size() > begun.size()) {
        insertion = Quoted(std::string_view(shared).substr(begun.size()), words.quote);
    }
    if (candidates.size() == 1 && !shared.ends_with('/')) {
        if (words.quote != '\0') insertion += words.quote;
        insertion += ' ';
    }
    if (insertion.empty()) return {"", std::move(candidates)};
    return {std::move(insertion), {}};
}
