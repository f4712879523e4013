// How commands answer: as text, or with --json as JSON.
//
// A command states each answer once, as a Record, and asks no further how it is shown:
//
//     context.output().print(Record("method")
//                                .field("class", className)
//                                .column("name", method, Style::kName)
//                                .column("file", file, Style::kFile)
//                                .mark("hidden", hidden));
//
// In text that is a line of columns, in JSON an element of one array. A command that goes on
// answering calls stream() first: every record is then on its way when print() returns, and JSON
// becomes JSON Lines, an object a line. Every type of record has its place in
// share/vpath/schema.json.
#pragma once

#include <string>
#include <vector>

#include "output/record.h"

namespace CLI {
class App;
}

struct OutputOptions {
    enum Color { kAuto, kAlways, kNever };
    bool json = false;
    Color color = kAuto;
};

// Adds --json and --color. They write to `options`, which must outlive the parse.
void AddOutputOptions(CLI::App& app, OutputOptions& options);

// What --color may be.
std::vector<std::string> ColorWords();

// All of it throws OutputClosed or CommandError as console.h says.
class Output {
  public:
    explicit Output(const OutputOptions& options);

    bool isJson() const { return json_; }

    // To be called before the first record.
    void stream() { streams_ = true; }

    void print(const Record& record);

    // Says of something asked for that there is no answer: on standard error in one line, in its
    // turn; in JSON as a record. Whether that is a failure is told by the exit status.
    void miss(const std::string& name, const std::string& problem, const std::string& advice);

    // What is no answer but was asked for beside it: on standard error; in JSON a record too.
    void remark(const Record& record);

    // To be called after the last record. After a failure nothing is started any more, but what
    // was is completed.
    void finish(bool failed = false);

  private:
    const bool json_;
    const bool onTerminal_;
    const bool colored_;
    bool streams_ = false;
    bool begun_ = false;
};
