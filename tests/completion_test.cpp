// What the prompt of `vpath shell` inserts for a line that ends at the cursor.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "shell/completion.h"
#include "shell/words.h"

namespace {

struct Row {
    const char* line;
    std::vector<std::string> words;  // that there are
    const char* insertion;
    size_t candidates = 0;
};

TEST(Completion, ContinuesWhatIsBegun) {
    const Row rows[] = {
        {"wh", {"which", "why-not"}, "", 2},
        {"whi", {"which", "why-not"}, "ch "},
        {"which", {"which"}, " "},
        {"ls ", {"alpha", "alps"}, "alp"},
        {"ls alp", {"alp", "alps"}, "", 2},
        {"ls no", {"alp"}, ""},
        {"cd a", {"a/"}, "/"},
        {"cd a/", {"a/"}, "", 1},
        {"ls a", {"a b'c\"d\\e#$f"}, "\\ b\\'c\\\"d\\\\e\\#\\$f "},
        {"ls 'a", {"a b'c\"d"}, " b'\\''c\"d' "},
        {"ls \"a", {"a b'c\"d\\e"}, " b'c\\\"d\\\\e\" "},
        {"ls a\\ ", {"a b", "a c"}, "", 2},
        {"ls 'a 'b", {"a bc"}, "c "},
        {"ls ''", {"x"}, "x "},
        {"# a", {"x"}, ""},
        {"ls a\\", {"a b"}, ""},
        // Both begin with the first byte of another character.
        {"ls ", {"\u00e4a", "\u00f6a"}, "", 2},
        {"ls ", {"x\u00e4a", "x\u00e4b"}, "x\u00e4"},
    };
    for (const Row& row : rows) {
        const Completion completion =
            Complete(row.line, [&](const std::vector<std::string>&, const std::string& begun) {
                std::vector<std::string> found = row.words;
                std::erase_if(found, [&](const auto& word) { return !word.starts_with(begun); });
                return found;
            });
        EXPECT_EQ(completion.insertion, row.insertion) << row.line;
        EXPECT_EQ(completion.candidates.size(), row.candidates) << row.line;
        if (completion.insertion.empty()) continue;
        const std::string word = SplitWords(row.line + completion.insertion).words.back();
        EXPECT_TRUE(std::any_of(row.words.begin(), row.words.end(),
                                [&](const auto& other) { return other.starts_with(word); }))
            << row.line << " gives " << word;
    }
}

}  // namespace
