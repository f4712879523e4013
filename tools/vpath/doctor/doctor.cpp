// vpath doctor: whether the directories of the path tell that they have changed.
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <vpath/path.h>
#include <CLI/CLI.hpp>

#include "command.h"
#include "doctor/directory_probe.h"
#include "loading/path_names.h"
#include "loading/toolbox_cache.h"
#include "options/name_arguments.h"

namespace {

const char* WordFor(Health health) {
    switch (health) {
        case Health::kOk:
            return "ok";
        case Health::kSlow:
            return "slow";
        case Health::kStale:
            return "stale";
        case Health::kUnknown:
            break;
    }
    return "unknown";
}

Record RecordOf(const std::string& dirName, const Finding& finding) {
    Record record("probe");
    record
        .column("health", WordFor(finding.health),
                finding.health == Health::kOk ? Style::kPlain : Style::kNote)
        .column("probe", finding.probe)
        .column("directory", dirName, Style::kDirectory)
        .column("finding", finding.text);
    if (finding.remedy.empty()) {
        record.field("remedy", nullptr).faint();
    } else {
        record.column("remedy", finding.remedy);
    }
    return record;
}

struct Subject {
    std::string name;  // full
    vpDir dir;         // the null directory for one that is not of the path
};

std::vector<Subject> DirsOfPath(const vpPath& path) {
    std::vector<Subject> subjects;
    vpDir dir = vpGetNullDir(path);
    while (vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone) {
        subjects.push_back({FullNameOf(dir), dir});
    }
    return subjects;
}

std::string ExistingDir(const std::string& name) {
    struct stat status;
    std::string dirName = FullDirName(name).value_or(name);
    if (stat(dirName.c_str(), &status) != 0) {
        throw CommandError(name + ": " + std::strerror(errno) + "; name a directory that exists");
    }
    if (!S_ISDIR(status.st_mode)) {
        throw CommandError(name + ": not a directory; name one that is");
    }
    return dirName;
}

// What lies in how the path was made, whatever the directory does.
std::optional<Finding> FindingOfPath(const Subject& subject, const Toolbox& toolbox) {
    if (vpInToolboxCacheMode() && !toolbox.nameIn(subject.name).empty()) {
        return Finding{
            "cache", Health::kStale, "the cache file may answer for it, unread",
            "compare it with 'vpath cache check', make it again with 'vpath cache write'"};
    }
    if (vpIsFrozen(subject.dir)) {
        return Finding{"frozen", Health::kStale, "nobody looks for changes in it",
                       "'freeze --off' in 'vpath shell' ends that"};
    }
    return std::nullopt;
}

ExitStatus RunDoctor(const std::vector<std::string>& names, Context& context) {
    CheckNameArguments(names, "DIR", "a directory");
    // Before the path goes to its current directory.
    const Toolbox toolbox =
        context.options.root.empty() ? Toolbox() : ToolboxOf(context.options.root);
    const vpPath path = context.loaded().path;
    std::vector<Subject> subjects;
    subjects.reserve(names.size());
    for (const std::string& name : names) {
        subjects.push_back({ExistingDir(name), FindDir(path, name)});
    }
    if (names.empty()) subjects = DirsOfPath(path);

    const ProbeSystem system = RealProbeSystem();
    ExitStatus status = kExitFound;
    for (const Subject& subject : subjects) {
        auto findings = ProbeDirectory(subject.name, context.options.ignoreCase, system);
        if (const auto ofPath = FindingOfPath(subject, toolbox)) findings.push_back(*ofPath);
        for (const Finding& finding : findings) {
            context.output().print(RecordOf(subject.name, finding));
            if (finding.health == Health::kStale) status = kExitNotFound;
        }
    }
    return status;
}

}  // namespace

Command AddDoctorCommand(CLI::App& app) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* doctor = app.add_subcommand("doctor", "What keeps changes unseen");
    doctor->fallthrough();
    AddNameArguments(*doctor, "DIR", *names, "instead of the directories of the path")
        ->required(false);
    doctor->footer(
        "Makes a hidden file in each directory that it may write in, removes it at once,\n"
        "and prints for each probe: ok, slow, stale or unknown; access, time (moves when\n"
        "a file is made), steps, clock, events (of inotify) or case, also frozen, cache;\n"
        "the directory; what was found; a remedy unless ok. Tabs between them.\n"
        "Exit status: 1 when something would make answers stale.\n"
        "Example: what is wrong with the path of VPATH\n"
        "  vpath doctor | grep -v '^ok'");
    return {doctor, [names](Context& context) { return RunDoctor(*names, context); }};
}
