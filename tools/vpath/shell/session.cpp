#include "shell/session.h"

#include <algorithm>

#include "command_line.h"
#include "loading/path_names.h"
#include "output/console.h"
#include "output/interruption.h"
#include "shell/session_commands.h"

namespace {

const char* WordFor(vpEventType type) {
    switch (type) {
        case vpEventDirReread:
            return "reread";
        case vpEventReplaceBegin:
            return "replacing";
        case vpEventCWDChangeBegin:
            return "leaving";
        case vpEventDirAdded:
            return "added";
        case vpEventReplaceEnd:
            return "replaced";
        case vpEventCWDChangeEnd:
            return "entered";
        case vpEventPathRemoved:
            break;  // only at the end of all
    }
    return "removed";
}

std::optional<std::string> NameOrNone(const vpDir& dir) {
    if (vpGetDirType(dir) == vpDirTypeNone) return std::nullopt;
    return FullNameOf(dir);
}

// A line that begins with what the shell does not have says so better than the parser.
void CheckCommand(const CommandLine& line, const std::string& word) {
    if (word.starts_with('-') || line.find(word) != nullptr) return;
    if (word == "watch" || word == "cache" || word == "report" || word == "shell") {
        throw CommandError(word + ": not a command of the shell; run 'vpath " + word + "'");
    }
    throw CommandError(word + ": not a command; see 'help'");
}

}  // namespace

Session::Session(Context& context)
    : loaded_(context.loaded()), options_(context.options), outputOptions_(context.outputOptions) {
    // A count of what the cache answered would end its use.
    loaded_.fromCache = false;
}

ExitStatus Session::run(const std::vector<std::string>& words) {
    if (words.empty()) return kExitFound;
    try {
        return runLine(words);
    } catch (const OutputFailed&) {
        throw;
    } catch (const LineInterrupted&) {
        return kExitInterrupted;
    } catch (const std::exception& error) {
        if (IsInterrupted()) return kExitInterrupted;  // which may be what made a read fail
        FlushOutput();
        Complain(error.what());
        return kExitFailure;
    }
}

ExitStatus Session::runLine(const std::vector<std::string>& words) {
    Context context(loaded_);
    context.options = options_;
    context.options.extensions.clear();
    context.options.anyExtension = true;
    context.options.stats = false;
    context.outputOptions = outputOptions_;
    CommandLine line(context, CommandLine::OfShell());
    line.add(AddSessionCommands(line.app(), *this));
    CheckCommand(line, words.front());
    if (!line.parse(words)) return kExitFound;
    if (context.options.anyExtension) {
        context.options.extensions = options_.extensions;
        context.options.anyExtension = options_.anyExtension;
    }
    if (context.outputOptions.json) context.output().stream();
    const ExitStatus status = line.run();
    tellEvents(context.output());
    return status;
}

void Session::setEvents(bool shown) {
    if (!shown) {
        events_.reset();
    } else if (!events_) {
        events_.emplace(path());
    }
}

void Session::tellEvents(Output& output) {
    if (!events_) return;
    for (const PathEvent& event : events_->take()) {
        output.print(Record("event")
                         .column("event", WordFor(event.type), Style::kNote)
                         .column("directory", NameOrNone(event.dir), Style::kDirectory));
    }
    FlushOutput();
}
