#include "shell/words.h"

namespace {

constexpr std::string_view kBlanks = " \t\n\r";
constexpr std::string_view kSparedInQuotes = "$`\"\\";

}  // namespace

Words SplitWords(std::string_view line) {
    Words result;
    AddWords(line, result);
    return result;
}

void AddWords(std::string_view line, Words& result) {
    result.endsInBackslash = false;
    bool& inWord = result.isLastOpen;
    for (size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (result.quote == '\0' && kBlanks.find(c) != std::string_view::npos) {
            inWord = false;
            continue;
        }
        if (c == '\\' && result.quote != '\'' && at + 1 == line.size()) {
            result.endsInBackslash = true;
            return;
        }
        if (!inWord) {
            result.isRemark = c == '#';
            if (result.isRemark) return;
            inWord = true;
            result.words.emplace_back();
        }
        std::string& word = result.words.back();
        if (c == '\\' && result.quote != '\'') {
            if (result.quote == '\0' ||
                kSparedInQuotes.find(line[at + 1]) != std::string_view::npos) {
                word += line[++at];
            } else {
                word += c;
            }
        } else if (result.quote != '\0' ? c == result.quote : c == '\'' || c == '"') {
            result.quote = result.quote == '\0' ? c : '\0';
        } else {
            word += c;
        }
    }
}

std::string Quoted(std::string_view text, char quote) {
    constexpr std::string_view kSpecial = " \t\"'\\#$`&|;<>()*?[]!{}";
    std::string quoted;
    for (const char c : text) {
        if (quote == '\'') {
            quoted += c == '\'' ? "'\\''" : std::string(1, c);
            continue;
        }
        if ((quote == '"' ? kSparedInQuotes : kSpecial).find(c) != std::string_view::npos) {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted;
}
