// vpath shell: a prompt at which the path stays loaded.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "loading/path_names.h"
#include "output/console.h"
#include "output/interruption.h"
#include "shell/line_reader.h"
#include "shell/session.h"
#include "shell/session_words.h"
#include "shell/words.h"

namespace {

struct Line {
    std::string text;
    Words words;
    std::string problem;  // why it cannot be run; empty: it can
};

// A line with those in which it goes on.
LineReader::Result ReadCommand(LineReader& reader, Line& line) {
    LineReader::Result result = reader.read("vpath> ", line.text);
    if (result == LineReader::Result::kLine) AddWords(line.text, line.words);
    while (result == LineReader::Result::kLine &&
           (line.words.quote != '\0' || line.words.endsInBackslash)) {
        std::string more;
        result = reader.read("> ", more);
        if (line.words.endsInBackslash) {
            line.text.pop_back();
        } else if (result == LineReader::Result::kLine) {
            more.insert(0, 1, '\n');
        }
        line.text += more;
        AddWords(more, line.words);
        if (result != LineReader::Result::kEnd) continue;
        if (line.words.quote != '\0') {
            line.problem = std::string("a ") + line.words.quote + " without its end";
        }
        result = LineReader::Result::kLine;
        break;
    }
    if (line.text.find('\0') != std::string::npos) line.problem = "NUL byte in a line";
    return result;
}

// What is read, run, and said of it; until it ends.
ExitStatus RunLines(Session& session, LineReader& reader, SessionWords& known) {
    ExitStatus worst = kExitFound;
    while (!session.isOver()) {
        std::clearerr(stdin);  // of what a command read to the end of the terminal's input
        Line line;
        const LineReader::Result result = ReadCommand(reader, line);
        if (result == LineReader::Result::kEnd) break;
        if (result == LineReader::Result::kInterrupted) continue;
        reader.remember(line.text);
        ExitStatus status = kExitFailure;
        if (line.problem.empty()) {
            status = session.run(line.words.words);
            known.forget();
        } else {
            Complain(line.problem);
        }
        if (IsInterrupted()) {
            ForgetInterrupt();
            PrintLine("");  // behind the ^C that the terminal shows
        }
        FlushOutput();
        worst = std::max(worst, status);
    }
    return worst;
}

ExitStatus RunShell(Context& context) {
    context.output().stream();
    std::string& root = context.options.root;
    if (!root.empty()) root = FullDirName(root).value_or(root);  // lines are run elsewhere
    Session session(context);
    SessionWords known(session);
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO)) {
        return RunLines(session, *MakePipeReader(), known);
    }
    NoteInterrupts();
    const auto reader =
        MakeTerminalReader([&](const std::vector<std::string>& before, const std::string& begun) {
            return known.find(before, begun);
        });
    RunLines(session, *reader, known);
    return kExitFound;
}

}  // namespace

Command AddShellCommand(CLI::App& app) {
    CLI::App* shell = app.add_subcommand("shell", "A prompt for all of these");
    shell->fallthrough();
    shell->footer(
        "Loads the path once and runs the lines that are entered: the other commands but\n"
        "watch, cache and report, --ext, --json and --color with them, and these:\n"
        "  cd DIR  add LIST  remove DIR  replace LIST  freeze DIR  refresh [DIR]\n"
        "  events on|off  help [COMMAND]  quit\n"
        "Words are quoted as in a shell; '#' begins a remark. Tab completes; Ctrl-C ends\n"
        "a line, Ctrl-D the shell. The history is in vpath/history of $XDG_STATE_HOME or\n"
        "~/.local/state. --json prints a record a line.\n"
        "Reads a pipe without a prompt: wrong lines do not end it, and the exit status is\n"
        "that of the worst answer; at a terminal it is 0.\n"
        "Example: what a new directory would take over\n"
        "  printf '%s\\n' 'which foo' 'add -f /w/new' 'which foo' | vpath shell");
    return {shell, RunShell};
}
