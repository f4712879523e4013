// The command as a shell runs it. Each file tests/command/*.txt is a transcript: the files of a
// tree, then commands that run in it one after another, with all that they answer.
//
//     # A remark.
//     a/foo.v a/private/            files and directories, below $T
//     a/link.v -> foo.v             a link
//     a/Shape.v = class Shape\n     the text of a file
//     $ vpath --path a which foo |
//     >     cat
//     $T/a/foo.v                    its output
//     ! vpath: bar: not found ...   its errors
//     ? 1                           its exit status when that is not 0
//
// Empty lines at the end of an answer separate it from what follows. What a command with --json
// answers must be as the schema says. VPATH_WRITE_TRANSCRIPTS=1 writes the answers of this run into
// the files, to be looked over before they are kept.
#ifdef VPATH_TOOL

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/temp_tree.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VPATH_CLANG_ASAN 1
#endif
#endif

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(VPATH_CLANG_ASAN)
constexpr char kByteCount[] = "0";  // nobody counts the sanitizer's heap
#else
constexpr char kByteCount[] = "[1-9][0-9]*";
#endif

std::string Contents(const std::string& fileName) {
    std::ifstream file(fileName, std::ios::binary);
    EXPECT_TRUE(file) << fileName;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// The lines of an answer, each with `mark` in front. An end without a line feed shows.
std::string Marked(const std::string& mark, const std::string& text) {
    std::string marked;
    for (const std::string& line : Lines(text)) marked += mark + line + "\n";
    return text.empty() || text.back() == '\n' ? marked : marked + "\\ no line feed\n";
}

class CommandTest : public testing::TestWithParam<std::string> {
  protected:
    static void SetUpTestSuite() {
        const std::string tool = VPATH_TOOL;
        const std::string path = tool.substr(0, tool.rfind('/')) + ":" + std::getenv("PATH");
        setenv("PATH", path.c_str(), /*overwrite=*/1);
        setenv("VERSION", VPATH_PROJECT_VERSION, /*overwrite=*/1);
        setenv("BYTES", kByteCount, /*overwrite=*/1);
        setenv("TERM", "xterm", /*overwrite=*/1);
        setenv("SCHEMA", VPATH_SCHEMA, /*overwrite=*/1);
        for (const char* name : {"VPATH", "NO_COLOR"}) unsetenv(name);
    }

    void addToTree(const std::string& line) {
        const size_t text = line.find(" = ");
        if (text != std::string::npos) {
            tree_.add({line.substr(0, text)});
            std::string unescaped = line.substr(text + 3);
            for (const auto& [escape, character] : {std::pair{"\\n", "\n"}, {"\\t", "\t"}}) {
                for (size_t at; (at = unescaped.find(escape)) != std::string::npos;) {
                    unescaped.replace(at, 2, character);
                }
            }
            std::ofstream(tree_.at(line.substr(0, text))) << unescaped;
        } else if (line.find(" -> ") != std::string::npos) {
            tree_.add({line});
        } else {
            std::istringstream names(line);
            tree_.add({std::istream_iterator<std::string>(names), {}});
        }
    }

    // All that the command answers, as it stands in a transcript.
    std::string run(const std::string& command) {
        setenv("T", tree_.root().c_str(), /*overwrite=*/1);
        const std::string line = "cd \"$T\" && { " + command + "\n} > .out 2> .err < /dev/null";
        const int status = std::system(line.c_str());
        if (command.find("--json") != std::string::npos) keepJson(Contents(tree_.at(".out")));
        std::string answer =
            Marked("", Contents(tree_.at(".out"))) + Marked("! ", Contents(tree_.at(".err")));
        const std::string& root = tree_.root();
        for (size_t at = 0; (at = answer.find(root, at)) != std::string::npos;) {
            answer.replace(at, root.size(), "$T");
        }
        const int exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (exitStatus != 0) answer += "? " + std::to_string(exitStatus) + "\n";
        while (answer == "\n" || answer.ends_with("\n\n")) answer.pop_back();
        return answer;
    }

    // Keeps arrays, and lines that are each an object.
    void keepJson(const std::string& output) {
        std::string document;
        for (const std::string& line : Lines(output)) {
            document += line + "\n";
            if (!line.starts_with("{") && !line.ends_with("]")) continue;
            std::string name = ".json" + std::to_string(jsonFiles_.size());
            std::ofstream(tree_.at(name)) << document;
            jsonFiles_.push_back(std::move(name));
            document.clear();
        }
    }

    // What is wrong with them.
    std::string wrongJson() {
        if (jsonFiles_.empty()) return "";
        std::string command = "cd \"$T\" && jsonschema \"$SCHEMA\"";
        for (const std::string& name : jsonFiles_) command += " -i " + name;
        const int status = std::system((command + " > .out 2>&1").c_str());
        return status == 0 ? "" : Contents(tree_.at(".out"));
    }

    TempTree tree_;

  private:
    std::vector<std::string> jsonFiles_;
};

TEST_P(CommandTest, AnswersAsWritten) {
    const std::vector<std::string> lines = Lines(Contents(GetParam()));
    std::string written;  // the transcript with the answers of this run
    int commands = 0;
    for (size_t at = 0; at < lines.size();) {
        const size_t number = at + 1;
        const std::string& line = lines[at++];
        written += line + "\n";
        if (!line.starts_with("$ ")) {
            if (!line.empty() && line[0] != '#') addToTree(line);
            continue;
        }
        std::string command = line.substr(2);
        for (; at < lines.size() && lines[at].starts_with("> "); ++at) {
            command += "\n" + lines[at].substr(2);
            written += lines[at] + "\n";
        }
        std::string expected;
        std::string emptyLines;
        size_t end = at;
        for (; end < lines.size() && lines[end][0] != '#' && !lines[end].starts_with("$ "); ++end) {
            emptyLines += "\n";
            if (lines[end].empty()) continue;
            expected += emptyLines.substr(1) + lines[end] + "\n";
            emptyLines.clear();
            at = end + 1;
        }
        const std::string answer = run(command);
        EXPECT_EQ(answer, expected) << GetParam() << ":" << number << ": " << command;
        written += answer;
        ++commands;
    }
    EXPECT_GT(commands, 0);
    EXPECT_EQ(wrongJson(), "");
    if (std::getenv("VPATH_WRITE_TRANSCRIPTS") != nullptr) {
        std::ofstream(GetParam()) << written;
    }
}

std::vector<std::string> Transcripts() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VPATH_TRANSCRIPT_DIR)) {
        names.push_back(entry.path());
    }
    std::sort(names.begin(), names.end());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Vpath, CommandTest, testing::ValuesIn(Transcripts()), [](const auto& row) {
    return std::filesystem::path(row.param).stem().string();
});

}  // namespace

#endif  // VPATH_TOOL
