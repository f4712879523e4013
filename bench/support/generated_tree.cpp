#include "support/generated_tree.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>

namespace {

constexpr const char* kWords[] = {
    "add",    "angle", "apply",  "array",  "axis",  "band",   "bin",   "block",  "bound",  "cell",
    "chart",  "check", "code",   "color",  "copy",  "count",  "curve", "data",   "date",   "delay",
    "draw",   "edge",  "event",  "field",  "file",  "filter", "find",  "fit",    "font",   "format",
    "frame",  "gain",  "get",    "graph",  "grid",  "group",  "index", "input",  "is",     "join",
    "kernel", "label", "layer",  "level",  "limit", "line",   "list",  "load",   "map",    "mask",
    "matrix", "mean",  "merge",  "mode",   "model", "node",   "norm",  "open",   "option", "output",
    "parse",  "phase", "plot",   "point",  "print", "query",  "range", "rank",   "rate",   "read",
    "region", "reset", "sample", "save",   "scale", "scan",   "set",   "shape",  "signal", "size",
    "solve",  "sort",  "split",  "state",  "step",  "stream", "sum",   "table",  "task",   "test",
    "text",   "time",  "trace",  "update", "value", "vector", "view",  "weight", "window", "zero",
};

std::string Folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

// Makes names no two of which are the same, whatever their case.
class NameMaker {
  public:
    explicit NameMaker(size_t atMost)
        : used_(std::bit_ceil(2 * (atMost + std::size(kCommonNames)))) {
        for (const char* name : kCommonNames) isNew(name);
    }

    std::string next() {
        while (true) {
            std::string name = words();
            if (isNew(name)) return name;
            name += std::to_string(random_() % 1000);
            if (isNew(name)) return name;
        }
    }

    std::vector<std::string> take(size_t count) {
        std::vector<std::string> names(count);
        for (std::string& name : names) name = next();
        return names;
    }

    uint64_t random() { return random_(); }

  private:
    // Marks the name as used. One flat block: a set of nodes would leave the heap full of holes,
    // and the loads that are measured would fill them.
    bool isNew(const std::string& name) {
        const uint64_t hash = std::hash<std::string>()(Folded(name)) | 1;
        const size_t mask = used_.size() - 1;
        size_t slot = hash >> 1 & mask;
        for (; used_[slot] != 0; slot = (slot + 1) & mask) {
            if (used_[slot] == hash) return false;
        }
        used_[slot] = hash;
        return true;
    }

    std::string words() {
        static constexpr size_t kLengths[] = {1, 2, 2, 2, 3, 3};
        const size_t count = kLengths[random_() % std::size(kLengths)];
        const bool camel = random_() % 3 == 0;
        std::string name;
        for (size_t i = 0; i < count; ++i) {
            std::string word = kWords[random_() % std::size(kWords)];
            if (camel && i > 0) word[0] = static_cast<char>(word[0] - 'a' + 'A');
            if (!camel && i > 0 && random_() % 2 == 0) name += '_';
            name += word;
        }
        return name;
    }

    std::mt19937_64 random_{20260101};
    std::vector<uint64_t> used_;  // hashes of lower-cased names, open addressing; 0: free
};

std::string DirectoryName(NameMaker& names, const std::string& root, size_t number) {
    const char* const area = kWords[names.random() % std::size(kWords)];
    const char* const topic = kWords[names.random() % std::size(kWords)];
    return "/opt/" + root + "/toolbox/" + area + "/" + topic + "_" + std::to_string(number);
}

}  // namespace

GeneratedTree::GeneratedTree(const TreeShape& shape) {
    const size_t common = std::min(std::size(kCommonNames), shape.filesEach);
    const size_t distinct = (shape.directories + 1) / 2 * (shape.filesEach - common);
    const size_t absent = std::clamp<size_t>(distinct, 1, 65536);
    NameMaker names(distinct + absent);
    baseNames = names.take(distinct);
    absentNames = names.take(absent);
    const auto fileOf = [&names](const std::string& base) {
        return base + (names.random() % 6 == 0 ? ".p" : ".v");
    };
    // The first half of the directories gets each name once, in one order, the second half in
    // another.
    std::vector<std::string> dealt = baseNames;
    size_t next = 0;
    for (size_t number = 0; number < shape.directories; ++number) {
        Directory& directory = directories.emplace_back();
        directory.name = DirectoryName(names, shape.root, number);
        for (size_t i = 0; i < common; ++i) directory.entries.push_back(fileOf(kCommonNames[i]));
        while (directory.entries.size() < shape.filesEach) {
            if (next == dealt.size()) {
                std::shuffle(dealt.begin(), dealt.end(), std::mt19937_64(7));
                next = 0;
            }
            directory.entries.push_back(fileOf(dealt[next++]));
        }
        if (shape.privateDirectories && number % 10 == 0) {
            directory.entries.push_back("private");
            for (size_t i = 0; i < 5; ++i) {
                directory.privateFiles.push_back(
                    fileOf(baseNames[(number * 31 + i * 7) % baseNames.size()]));
            }
        }
    }
    for (Directory& directory : directories) {
        std::sort(directory.entries.begin(), directory.entries.end());
    }
}

std::string GeneratedTree::pathString() const {
    std::string list;
    for (const Directory& directory : directories) {
        if (!list.empty()) list += ':';
        list += directory.name;
    }
    return list;
}

size_t GeneratedTree::fileCount() const {
    size_t count = 0;
    for (const Directory& directory : directories) {
        const size_t isPrivate = directory.privateFiles.empty() ? 0 : 1;
        count += directory.entries.size() - isPrivate + directory.privateFiles.size();
    }
    return count;
}
