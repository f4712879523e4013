// vpath why-not: why a file does not answer to a name.
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "commands/verdicts.h"
#include "loading/path_names.h"
#include "options/name_arguments.h"

namespace {

struct WhyNotOptions {
    std::string file;
    std::string name;
    bool verify = false;
    FromOptions from;
};

// The directory to add for the files of a directory: special ones come with those that hold them.
std::string DirToAdd(std::string dirName) {
    for (size_t slash; (slash = dirName.rfind('/')) != std::string::npos && slash > 0;) {
        const std::string last = dirName.substr(slash + 1);
        const bool isMarked = last.size() > 1 && (last[0] == '@' || last[0] == '+');
        if (last != "private" && !isMarked) break;
        dirName.resize(slash);
    }
    return dirName;
}

Verdict VerdictOn(const std::string& name, const Candidate& candidate, Judge& judge) {
    std::error_code failed;
    if (vpGetDirType(candidate.dir) == vpDirTypeNone) {
        return {"not on the path", "add " + DirToAdd(DirOfFile(candidate.file)) + " with --path"};
    }
    if (judge.isKnown(candidate)) return judge.verdict(name, candidate);
    if (std::filesystem::is_directory(candidate.file, failed)) {
        return {"a directory", "name a file"};
    }
    return {"not listed", "names that begin with a dot are left out; give it another"};
}

ExitStatus RunWhyNot(const WhyNotOptions& options, Context& context) {
    CheckNameArguments({options.file}, "FILE", "a file");
    CheckNameArguments({options.name}, "NAME", "a file");
    const vpPath path = context.loaded().path;
    const vpDir from = StartDirectory(path, options.from);

    const std::string file = FullFileName(options.file.c_str());
    std::error_code failed;
    if (std::filesystem::symlink_status(file, failed).type() ==
        std::filesystem::file_type::not_found) {
        context.output().miss(options.file, "no such file", "name one that exists");
        return kExitNotFound;
    }
    Judge judge(path, from, options.verify ? vpReadCheckVerify : vpReadCheckSkip,
                context.options.extensionArray());
    const Verdict verdict =
        VerdictOn(options.name, {file, FindDir(path, DirOfFile(options.file))}, judge);
    context.output().print(CandidateRecord(options.name, file, verdict));
    return verdict.wins() ? kExitFound : kExitNotFound;
}

}  // namespace

Command AddWhyNotCommand(CLI::App& app) {
    const auto options = std::make_shared<WhyNotOptions>();
    CLI::App* whyNot = app.add_subcommand("why-not", "Why a file is not a name's");
    whyNot->fallthrough();
    whyNot->add_option("FILE", options->file, "the file that should answer")
        ->required()
        ->option_text(" ");
    whyNot->add_option("NAME", options->name, "the name, as 'vpath which' takes it")
        ->required()
        ->option_text(" ");
    whyNot->add_flag("--verify", options->verify, "pass over files that cannot be read");
    AddFromOptions(*whyNot, options->from);
    whyNot->footer(
        "Prints a verdict on the file, its full name and what would make it win, tabs\n"
        "between them, as 'vpath which --explain NAME' does of all candidates.\n"
        "Exit status: 0 when the file \"wins\", 1 when it does not.\n"
        "Example: why code in /w/lib does not see /w/tools/foo.v\n"
        "  vpath --path /w/lib:/w/tools why-not --from /w/lib /w/tools/foo.v foo");
    return {whyNot, [options](Context& context) { return RunWhyNot(*options, context); }};
}
