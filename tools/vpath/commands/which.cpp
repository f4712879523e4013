// vpath which: the files that a name stands for, in order of precedence.
#include <climits>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <unordered_set>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/query.h"
#include "commands/verdicts.h"
#include "loading/path_names.h"
#include "options/extension_array.h"
#include "options/name_arguments.h"
#include "options/stdin_names.h"
#include "output/console.h"

namespace {

struct WhichOptions {
    std::vector<std::string> names;
    bool all = false;
    bool verify = false;
    bool explain = false;
    bool fromStdin = false;
    bool nulSeparated = false;
    FromOptions from;
};

// Why a name was not found, as far as a looser question tells, and what would find it.
std::string Explain(const std::string& name, Query& query, const Context& context) {
    const std::string ofAnyCase = query.firstOfAnyCase(name);
    std::error_code failed;
    if (!ofAnyCase.empty() && std::filesystem::is_directory(ofAnyCase, failed)) {
        return ofAnyCase + " became a directory";
    }
    std::string found;
    if (query.filtersExtensions() && !(found = query.firstOfAnyExtension(name)).empty()) {
        return found + " has another extension; list it in --ext";
    }
    if (!context.options.ignoreCase && !ofAnyCase.empty()) {
        return ofAnyCase + " differs in case; use --ignore-case";
    }
    if (!(found = query.firstPrivate(name)).empty()) {
        return found + " is private; ask --from its directory";
    }
    if (context.options.sources.empty()) {
        return "only the current directory was searched; add others with --path";
    }
    return "add its directory with --path";
}

// Prints the first match, or all; whether there was one.
bool Answer(const std::string& name, bool all, Query& query, Output& output) {
    const Search search = query.search(name);
    char file[kNameRoom];
    // The current directory may be on the path as well; a file is then found twice.
    std::unordered_set<std::string> printed;
    while (vpFindNextFile(search.get(), nullptr, file) != 0) {
        const auto [fullName, isNew] = printed.insert(FullFileName(file));
        if (isNew) {
            output.print(
                Record("match").field("name", name).column("file", *fullName, Style::kFile));
        }
        if (!all) break;
    }
    return !printed.empty();
}

// Prints every candidate with the verdict on it; whether one wins.
bool AnswerInFull(const std::string& name, Judge& judge, Output& output) {
    bool wins = false;
    for (const Candidate& candidate : judge.candidates(name)) {
        const Verdict verdict = judge.verdict(name, candidate);
        wins = wins || verdict.wins();
        output.print(CandidateRecord(name, candidate.file, verdict));
    }
    return wins;
}

// Calls back with each name as it comes.
void ForEachName(const WhichOptions& options, Output& output,
                 const std::function<void(const std::string&)>& call) {
    if (!options.fromStdin) {
        for (const std::string& name : options.names) call(name);
        return;
    }
    output.stream();
    StdinNames names(options.nulSeparated);
    while (const auto name = names.next()) {
        call(*name);
        FlushOutput();
    }
}

void CheckNames(const WhichOptions& options) {
    if (options.names.empty() != options.fromStdin) {
        throw CommandError(options.fromStdin ? "NAME beside --stdin; leave one of them out"
                                             : "NAME is required; run 'vpath --help'");
    }
    CheckNameArguments(options.names, "NAME", "a file");
}

ExitStatus RunWhich(const WhichOptions& options, Context& context) {
    CheckNames(options);
    const vpPath path = context.loaded().path;
    const vpDir from = StartDirectory(path, options.from);
    const vpReadCheck readCheck = options.verify ? vpReadCheckVerify : vpReadCheckSkip;
    Query query(path, from, readCheck, context.options.extensionArray());
    Judge judge(path, from, readCheck, context.options.extensionArray());
    Output& output = context.output();
    ExitStatus status = kExitFound;
    ForEachName(options, output, [&](const std::string& name) {
        if (name.size() > PATH_MAX) {
            output.miss(name, "too long", "no file can have that name");
        } else if (options.explain ? AnswerInFull(name, judge, output)
                                   : Answer(name, options.all, query, output)) {
            return;
        } else {
            output.miss(name, "not found on the path", Explain(name, query, context));
        }
        status = kExitNotFound;
    });
    return status;
}

}  // namespace

Command AddWhichCommand(CLI::App& app) {
    const auto options = std::make_shared<WhichOptions>();
    CLI::App* which = app.add_subcommand("which", "Files that names stand for");
    which->fallthrough();
    which->footer(
        "Example: where foo comes from for code in /w/lib, and what it hides\n"
        "  vpath --path /w/lib:/w/tools which -a --from /w/lib foo");
    AddNameArguments(*which, "NAME", options->names,
                     "file names; '+pkg/name', '@cls/name', 'private/name' too")
        ->required(false);  // RunWhich tells of missing ones
    which->add_flag("-a,--all", options->all, "print all matches, in order of precedence");
    which->add_flag("--verify", options->verify, "pass over files that cannot be read");
    which->add_flag("--explain", options->explain,
                    "print all candidates and what would make each win");
    CLI::Option* fromStdin = which->add_flag("--stdin", options->fromStdin,
                                             "read the names, one a line, and answer each at once");
    which->add_flag("-0,--null", options->nulSeparated, "a NUL ends each of them instead")
        ->needs(fromStdin);
    AddFromOptions(*which, options->from);
    return {which, [options](Context& context) { return RunWhich(*options, context); }};
}
