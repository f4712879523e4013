// vpath cache show: what a cache file holds.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "cachefile/cache_commands.h"
#include "cachefile/cache_file.h"
#include "loading/host_calls.h"

namespace {

// The library's judgement of a file, of which the name of the installation says nothing.
void CheckThatItLoads(const std::string& fileName) {
    InstallHost();
    const vpPath path = vpCreatePath(0, "cached");
    UseCache(path, fileName, fileName, Toolbox());
    RevertFromCache(path);
}

// A line for each directory: its name and how many items lie directly in it.
void PrintDirectories(CacheFile& file, Output& output) {
    std::vector<std::pair<std::string, size_t>> directories;
    std::vector<size_t> open;  // places of those around the next element
    while (auto element = file.next()) {
        if (element->kind == CacheFile::Element::kClosing) {
            open.pop_back();
            continue;
        }
        if (!open.empty()) ++directories[open.back()].second;
        if (element->kind == CacheFile::Element::kOpening) {
            open.push_back(directories.size());
            directories.emplace_back(std::move(element->name), 0);
        }
    }
    for (const auto& [name, items] : directories) {
        output.print(
            Record("cached").column("directory", name, Style::kDirectory).column("items", items));
    }
}

void PrintTotals(CacheFile& file, Output& output) {
    // By the letters of the format.
    struct Count {
        char letter;
        const char* field;
        const char* words;
        size_t number;
    };
    size_t onPath = 0;
    size_t special = 0;
    size_t items = 0;
    Count counts[] = {{'F', "files", "files", 0},
                      {'C', "class_files", "files that define classes", 0},
                      {'N', "other_files", "files that define none", 0},
                      {'d', "subdirectories", "subdirectories", 0},
                      {'U', "unknown", "unknown", 0}};
    while (const auto element = file.next()) {
        if (element->kind == CacheFile::Element::kOpening) {
            ++(element->depth == 0 ? onPath : special);
        } else if (element->kind == CacheFile::Element::kItem) {
            ++items;
            for (Count& count : counts) count.number += element->letter == count.letter ? 1 : 0;
        }
    }
    const std::string date(file.date());
    Record record("cache");
    record.field("date", date);
    std::string text = "date\t" + date;
    const auto add = [&](const char* field, const char* words, size_t number) {
        record.field(field, number);
        text.append("\n").append(words).append("\t").append(std::to_string(number));
    };
    add("directories", "directories on the path", onPath);
    add("special_directories", "special directories", special);
    for (const Count& count : counts) add(count.field, count.words, count.number);
    add("total", "total", onPath + special + items);
    output.print(record.text(text));
}

ExitStatus RunShow(const std::string& fileName, bool lists, Output& output) {
    CheckThatItLoads(fileName);
    CacheFile file(fileName);
    if (lists) {
        PrintDirectories(file, output);
    } else {
        PrintTotals(file, output);
    }
    return kExitFound;
}

}  // namespace

Command AddCacheShowCommand(CLI::App& cache) {
    struct Options {
        std::string fileName;
        bool lists = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* show = cache.add_subcommand("show", "Say what the file holds");
    show->fallthrough();
    AddCacheFileArgument(*show, options->fileName);
    show->add_flag("-l,--list", options->lists, "list the directories instead");
    show->footer(
        "Prints the date of the file, the directories and the items of each kind that it\n"
        "tells of, and their total; a tab before each number. With -l: the name of each\n"
        "directory beneath the toolbox folder and the number of items in it.\n"
        "Example: the five directories that hold most\n"
        "  vpath cache show -l /w/inst.cache | sort -k 2 -n -r | head -n 5");
    return {show, [options](Context& context) {
                return RunShow(options->fileName, options->lists, context.output());
            }};
}
