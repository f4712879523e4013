#include "output/output.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include <CLI/CLI.hpp>

#include "output/console.h"
#include "output/record_text.h"

namespace {

bool UsesColor(OutputOptions::Color color) {
    if (color != OutputOptions::kAuto) return color == OutputOptions::kAlways;
    const char* refused = std::getenv("NO_COLOR");
    return IsTerminal(STDOUT_FILENO) && (refused == nullptr || *refused == '\0');
}

struct ColorWord {
    const char* word;
    OutputOptions::Color color;
};
constexpr ColorWord kColorWords[] = {{"auto", OutputOptions::kAuto},
                                     {"always", OutputOptions::kAlways},
                                     {"never", OutputOptions::kNever}};

}  // namespace

std::vector<std::string> ColorWords() {
    std::vector<std::string> words;
    for (const ColorWord& color : kColorWords) words.emplace_back(color.word);
    return words;
}

void AddOutputOptions(CLI::App& app, OutputOptions& options) {
    app.add_flag("--json", options.json, "answer in JSON");
    app.add_option_function<std::string>(
           "--color",
           [&options](const std::string& when) {
               for (const ColorWord& color : kColorWords) {
                   if (when != color.word) continue;
                   options.color = color.color;
                   return;
               }
               throw CLI::ValidationError("--color " + when, "not auto, always or never");
           },
           "auto, always or never")
        ->type_name("WHEN");
}

Output::Output(const OutputOptions& options)
    : json_(options.json),
      onTerminal_(isatty(STDOUT_FILENO) != 0),
      colored_(UsesColor(options.color)) {}

void Output::print(const Record& record) {
    if (!json_) {
        PrintLine(TextOf(record, colored_, onTerminal_));
    } else if (streams_) {
        PrintLine(JsonOf(record));
    } else {
        Print(begun_ ? ",\n  " : "[\n  ");
        Print(JsonOf(record));
    }
    begun_ = true;
    if (streams_) FlushOutput();
}

void Output::miss(const std::string& name, const std::string& problem, const std::string& advice) {
    if (json_) {
        print(Record("miss").field("name", name).field("problem", problem).field("advice", advice));
        return;
    }
    FlushOutput();  // answers and complaints come in the order of the names
    Complain(name + ": " + problem + "; " + advice);
}

void Output::remark(const Record& record) {
    if (json_) {
        print(record);
        return;
    }
    FlushOutput();
    std::fputs((TextOf(record, /*colored=*/false, /*forTerminal=*/false) + "\n").c_str(), stderr);
}

void Output::finish(bool failed) {
    if (json_ && !streams_) {
        if (begun_) {
            Print("\n]\n");
        } else if (!failed) {
            Print("[]\n");
        }
    }
    FlushOutput();
}
