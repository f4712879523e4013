#include "shell/session_words.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string_view>

#include <vpath/search.h>

#include "command_line.h"
#include "commands/names_on_path.h"
#include "loading/inner_dirs.h"
#include "loading/path_names.h"
#include "shell/session_commands.h"

namespace {

using WordList = std::vector<std::string>;

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// Of sorted words those that begin with `begun`.
WordList Beginning(const WordList& words, const std::string& begun) {
    WordList found;
    for (auto at = std::lower_bound(words.begin(), words.end(), begun);
         at != words.end() && at->starts_with(begun); ++at) {
        found.push_back(*at);
    }
    return found;
}

// Names on the disk, directories with a '/' behind them.
WordList OnDisk(const std::string& begun, bool withFiles) {
    const size_t slash = begun.rfind('/') + 1;  // 0 when there is none
    const std::string written = begun.substr(0, slash);
    const std::string_view last = std::string_view(begun).substr(slash);
    std::string dirName = written.empty() ? "." : written;
    const char* const home = std::getenv("HOME");
    if (dirName.starts_with("~/") && home != nullptr) dirName.replace(0, 1, home);

    WordList found;
    std::error_code error;
    for (std::filesystem::directory_iterator at(dirName, error), end; !error && at != end;
         at.increment(error)) {
        const std::string name = at->path().filename();
        if (!name.starts_with(last) || (name[0] == '.' && last.empty())) continue;
        std::error_code unknown;
        const bool isDirectory = at->is_directory(unknown);
        if (isDirectory || withFiles) found.push_back(written + name + (isDirectory ? "/" : ""));
    }
    std::sort(found.begin(), found.end());
    return found;
}

// Of a list of directories, the last.
WordList InList(const std::string& begun) {
    const size_t element = begun.find_last_of(":;") + 1;  // 0 when there is one
    WordList found = OnDisk(begun.substr(element), /*withFiles=*/false);
    for (std::string& word : found) word.insert(0, begun, 0, element);
    return found;
}

}  // namespace

WordList SessionWords::find(const WordList& before, const std::string& begun) {
    std::string name;
    for (size_t at = 0; at < before.size() && name.empty(); ++at) {
        const bool isValue = at > 0 && IsOneOf(before[at - 1], {"--ext", "--color"});
        if (!isValue && !before[at].starts_with('-')) name = before[at];
    }
    const bool takesOptions = std::find(before.begin(), before.end(), "--") == before.end();
    if (begun.starts_with('-') && takesOptions) return Beginning(wordsOf(kOptions, name), begun);
    const std::string last = before.empty() ? "" : before.back();
    if (last == "--ext") return {};
    if (last == "--color") return Beginning({"always", "auto", "never"}, begun);
    if (name.empty()) return Beginning(wordsOf(kCommands), begun);

    if (last == "--from-file") return OnDisk(begun, /*withFiles=*/true);
    if (IsOneOf(name, {"cd", "doctor"})) return OnDisk(begun, /*withFiles=*/false);
    if (IsOneOf(name, {"add", "replace", "diff"})) return InList(begun);
    if (last == "--from" || IsOneOf(name, {"ls", "remove", "freeze", "refresh"})) {
        const WordList found = Beginning(wordsOf(kPathDirs), begun);
        return found.empty() ? OnDisk(begun, /*withFiles=*/false) : found;
    }
    if (name == "why-not" && last == name) return OnDisk(begun, /*withFiles=*/true);
    if (IsOneOf(name, {"class", "methods"})) return Beginning(wordsOf(kClasses), begun);
    if (IsOneOf(name, {"which", "shadows", "why-not"})) return Beginning(wordsOf(kNames), begun);
    if (name == "help") return Beginning(wordsOf(kCommands), begun);
    if (name == "events") return Beginning({"off", "on"}, begun);
    return {};
}

const WordList& SessionWords::wordsOf(Kind kind, const std::string& command) {
    for (const Source& source : sources_) {
        if (source.kind == kind && source.command == command) return source.words;
    }
    WordList words = read(kind, command);
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    return sources_.emplace_back(Source{kind, command, std::move(words)}).words;
}

WordList SessionWords::read(Kind kind, const std::string& command) const {
    WordList words;
    const PathOptions& options = session_.options();
    const vpDir none = vpGetNullDir(session_.path());
    switch (kind) {
        case kNames:
            for (const NameOnPath& name :
                 NamesOnPath(session_.path(), options.extensionArray(), options.ignoreCase)) {
                words.push_back(name.name);
            }
            break;
        case kClasses:
            for (vpDir dir = none; vpGetDirType(dir = NextDirOrPackage(dir)) != vpDirTypeNone;) {
                for (vpDir at = dir;
                     vpGetDirType(at = vpGetMethodDirs(dir, at)) != vpDirTypeNone;) {
                    words.push_back(DottedName(at));
                }
            }
            break;
        case kPathDirs:
            for (vpDir dir = none; vpGetDirType(dir = vpGetNextPathDir(dir)) != vpDirTypeNone;) {
                words.push_back(FullNameOf(dir));
            }
            break;
        case kCommands:
        case kOptions:
            return this->options(kind, command);
    }
    return words;
}

// The options of a command, or the commands.
WordList SessionWords::options(Kind kind, const std::string& command) const {
    Context context;
    CommandLine line(context, CommandLine::OfShell());
    line.add(AddSessionCommands(line.app(), session_));
    WordList words;
    if (kind == kCommands) {
        for (const Command& at : line.commands()) words.push_back(at.app->get_name());
        return words;
    }
    for (const CLI::App* app : {static_cast<const CLI::App*>(&line.app()), line.find(command)}) {
        if (app == nullptr) continue;
        for (const CLI::Option* option : app->get_options()) {
            for (const std::string& name : option->get_lnames()) words.push_back("--" + name);
        }
    }
    return words;
}
